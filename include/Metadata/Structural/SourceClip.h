#pragma once
// A stretch of a track of another package.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/StructuralComponent.h"
#include "Types/Integers.h"
#include "Types/UMID.h"

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
// Described by the set SourceClip.
class SourceClip : public StructuralComponent
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty set of key StructuralMetadataKeys::sourceClip(); `metaMetadataSet` must describe that key.
    SourceClip(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);
    ~SourceClip() override;

    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;
    void accept(Visitors::MetadataSetVisitor & visitor) const override;

    // StructuralMetadataULs::sourcePackageID(): null when empty.
    void sourcePackageID(Types::UMID32 const * value);
    Types::UMID32 const * sourcePackageID() const;
    // StructuralMetadataULs::sourceTrackID(): null when empty.
    void sourceTrackID(Types::UInt32 const * value);
    Types::UInt32 const * sourceTrackID() const;
    // StructuralMetadataULs::startPosition(): null when empty.
    void startPosition(Types::Position const * value);
    Types::Position const * startPosition() const;

protected:
    SourceClip(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);

private:
    SourceClip(SourceClip const &) = delete;
    SourceClip & operator=(SourceClip const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
