// The constructors, visits and accessors of GenericDescriptor.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/GenericDescriptor.h"

#include "Metadata/Structural/Locator.h"
#include "Metadata/Structural/SubDescriptor.h"
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
GenericDescriptor::GenericDescriptor(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : TrackableMetadataSet(key, metaMetadataSet, owner)
{
}

GenericDescriptor::~GenericDescriptor() {}

unsigned int GenericDescriptor::locatorsCount() const { return Accessors::memberCount(*this, StructuralMetadataULs::locators()); }
Locator * GenericDescriptor::locator(unsigned int index) const { return Accessors::targetAt<Locator>(*this, StructuralMetadataULs::locators(), index); }
void GenericDescriptor::appendLocator(Locator * target) { Accessors::appendTarget(*this, StructuralMetadataULs::locators(), target); }
void GenericDescriptor::addLocator(unsigned int index, Locator * target) { Accessors::insertTarget(*this, StructuralMetadataULs::locators(), index, target); }
void GenericDescriptor::removeLocator(unsigned int index) { Accessors::removeMember(*this, StructuralMetadataULs::locators(), index); }

unsigned int GenericDescriptor::subDescriptorsCount() const { return Accessors::memberCount(*this, StructuralMetadataULs::subDescriptors()); }
SubDescriptor * GenericDescriptor::subDescriptor(unsigned int index) const { return Accessors::targetAt<SubDescriptor>(*this, StructuralMetadataULs::subDescriptors(), index); }
void GenericDescriptor::appendSubDescriptor(SubDescriptor * target) { Accessors::appendTarget(*this, StructuralMetadataULs::subDescriptors(), target); }
void GenericDescriptor::addSubDescriptor(unsigned int index, SubDescriptor * target) { Accessors::insertTarget(*this, StructuralMetadataULs::subDescriptors(), index, target); }
void GenericDescriptor::removeSubDescriptor(unsigned int index) { Accessors::removeMember(*this, StructuralMetadataULs::subDescriptors(), index); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
