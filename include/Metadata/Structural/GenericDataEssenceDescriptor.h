#pragma once
// Describes data essence and its coding.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/FileDescriptor.h"
#include "Types/UniversalLabel.h"

namespace Vellum
{
namespace MetaMetadata
{
class MetaMetadataSet;
} // namespace MetaMetadata

namespace Metadata
{
class MetadataSetOwner;

namespace Visitors
{
class MetadataSetVisitor;
class NonConstMetadataSetVisitor;
} // namespace Visitors

namespace Structural
{
// Described by the set DataEssenceDescriptor.
class GenericDataEssenceDescriptor : public FileDescriptor
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty set of key StructuralMetadataKeys::genericDataEssenceDescriptor(); `metaMetadataSet` must describe that key.
    GenericDataEssenceDescriptor(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);
    ~GenericDataEssenceDescriptor() override;

    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;
    void accept(Visitors::MetadataSetVisitor & visitor) const override;

    // StructuralMetadataULs::dataEssenceCoding(): null when empty.
    void dataEssenceCoding(Types::UniversalLabel const * value);
    Types::UniversalLabel const * dataEssenceCoding() const;

protected:
    GenericDataEssenceDescriptor(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);

private:
    GenericDataEssenceDescriptor(GenericDataEssenceDescriptor const &) = delete;
    GenericDataEssenceDescriptor & operator=(GenericDataEssenceDescriptor const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
