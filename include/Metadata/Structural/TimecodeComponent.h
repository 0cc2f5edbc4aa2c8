#pragma once
// Continuous time code: its start, its frame rate and drop frame.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/StructuralComponent.h"
#include "Types/Boolean.h"
#include "Types/Integers.h"

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
// Described by the set Timecode.
class TimecodeComponent : public StructuralComponent
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty set of key StructuralMetadataKeys::timecodeComponent(); `metaMetadataSet` must describe that key.
    TimecodeComponent(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);
    ~TimecodeComponent() override;

    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;
    void accept(Visitors::MetadataSetVisitor & visitor) const override;

    // StructuralMetadataULs::dropFrame(): null when empty.
    void dropFrame(Types::Boolean const * value);
    Types::Boolean const * dropFrame() const;
    // StructuralMetadataULs::roundedTimecodeBase(): null when empty.
    void roundedTimecodeBase(Types::UInt16 const * value);
    Types::UInt16 const * roundedTimecodeBase() const;
    // StructuralMetadataULs::startTimecode(): null when empty.
    void startTimecode(Types::Position const * value);
    Types::Position const * startTimecode() const;

private:
    TimecodeComponent(TimecodeComponent const &) = delete;
    TimecodeComponent & operator=(TimecodeComponent const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
