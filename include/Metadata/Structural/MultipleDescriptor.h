#pragma once
// Describes several essence streams interleaved in one container, one sub-descriptor each.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/FileDescriptor.h"

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
class GenericDescriptor;

// Described by the set MultipleDescriptor.
class MultipleDescriptor : public FileDescriptor
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty set of key StructuralMetadataKeys::multipleDescriptor(); `metaMetadataSet` must describe that key.
    MultipleDescriptor(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);
    ~MultipleDescriptor() override;

    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;
    void accept(Visitors::MetadataSetVisitor & visitor) const override;

    // StructuralMetadataULs::subDescriptorUIDs(): the members in order.
    unsigned int subDescriptorUIDsCount() const;
    GenericDescriptor * subDescriptorUID(unsigned int index) const;
    void appendSubDescriptorUID(GenericDescriptor * target);
    void addSubDescriptorUID(unsigned int index, GenericDescriptor * target);
    void removeSubDescriptorUID(unsigned int index);

private:
    MultipleDescriptor(MultipleDescriptor const &) = delete;
    MultipleDescriptor & operator=(MultipleDescriptor const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
