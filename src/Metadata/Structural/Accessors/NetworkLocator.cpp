// The constructors, visits and accessors of NetworkLocator.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/NetworkLocator.h"

#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/StructuralMetadataULs.h"
#include "Metadata/MetadataSetVisitor.h"
#include "Metadata/Structural/Accessors.h"

namespace Vellum
{
namespace Metadata
{
namespace Structural
{
NetworkLocator::NetworkLocator(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : Locator(StructuralMetadataKeys::networkLocator(), metaMetadataSet, owner)
{
}

NetworkLocator::~NetworkLocator() {}

void NetworkLocator::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }
void NetworkLocator::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }

void NetworkLocator::urlString(Types::UTF16String const * value) { Accessors::setValue<Types::UTF16String>(*this, StructuralMetadataULs::urlString(), value); }
Types::UTF16String const * NetworkLocator::urlString() const { return Accessors::value<Types::UTF16String>(*this, StructuralMetadataULs::urlString()); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
