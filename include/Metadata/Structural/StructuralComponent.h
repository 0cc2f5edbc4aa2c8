#pragma once
// What every component of a sequence has: data definition and duration.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/TrackableMetadataSet.h"
#include "Types/Integers.h"
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
// Described by the set Component.
class StructuralComponent : public TrackableMetadataSet
{
public:
    VELLUM_CLASS_ALLOCATION
    ~StructuralComponent() override;

    // StructuralMetadataULs::dataDefinition(): null when empty.
    void dataDefinition(Types::UniversalLabel const * value);
    Types::UniversalLabel const * dataDefinition() const;
    // StructuralMetadataULs::duration(): null when empty.
    void duration(Types::Length const * value);
    Types::Length const * duration() const;

protected:
    StructuralComponent(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);

private:
    StructuralComponent(StructuralComponent const &) = delete;
    StructuralComponent & operator=(StructuralComponent const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
