#pragma once
// The structural components of a track, one after the other.
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
class StructuralComponent;

// Described by the set Sequence.
class Sequence : public TrackableMetadataSet
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty set of key StructuralMetadataKeys::sequence(); `metaMetadataSet` must describe that key.
    Sequence(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);
    ~Sequence() override;

    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;
    void accept(Visitors::MetadataSetVisitor & visitor) const override;

    // StructuralMetadataULs::dataDefinition(): null when empty.
    void dataDefinition(Types::UniversalLabel const * value);
    Types::UniversalLabel const * dataDefinition() const;
    // StructuralMetadataULs::duration(): null when empty.
    void duration(Types::Length const * value);
    Types::Length const * duration() const;
    // StructuralMetadataULs::structuralComponents(): the members in order.
    unsigned int structuralComponentsCount() const;
    StructuralComponent * structuralComponent(unsigned int index) const;
    void appendStructuralComponent(StructuralComponent * target);
    void addStructuralComponent(unsigned int index, StructuralComponent * target);
    void removeStructuralComponent(unsigned int index);

private:
    Sequence(Sequence const &) = delete;
    Sequence & operator=(Sequence const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
