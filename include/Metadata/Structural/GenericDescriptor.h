#pragma once
// What every essence descriptor has: locators and sub-descriptors.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/TrackableMetadataSet.h"

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
class Locator;
class SubDescriptor;

// Described by the set EssenceDescriptor.
class GenericDescriptor : public TrackableMetadataSet
{
public:
    VELLUM_CLASS_ALLOCATION
    ~GenericDescriptor() override;

    // StructuralMetadataULs::locators(): the members in order.
    unsigned int locatorsCount() const;
    Locator * locator(unsigned int index) const;
    void appendLocator(Locator * target);
    void addLocator(unsigned int index, Locator * target);
    void removeLocator(unsigned int index);
    // StructuralMetadataULs::subDescriptors(): the members in order.
    unsigned int subDescriptorsCount() const;
    SubDescriptor * subDescriptor(unsigned int index) const;
    void appendSubDescriptor(SubDescriptor * target);
    void addSubDescriptor(unsigned int index, SubDescriptor * target);
    void removeSubDescriptor(unsigned int index);

protected:
    GenericDescriptor(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);

private:
    GenericDescriptor(GenericDescriptor const &) = delete;
    GenericDescriptor & operator=(GenericDescriptor const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
