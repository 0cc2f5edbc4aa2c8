#pragma once
// Ties an essence container (body SID, index SID) to the source package that describes it.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/TrackableMetadataSet.h"
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
class GenericPackage;

// Described by the set EssenceData.
class EssenceContainerData : public TrackableMetadataSet
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty set of key StructuralMetadataKeys::essenceContainerData(); `metaMetadataSet` must describe that key.
    EssenceContainerData(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);
    ~EssenceContainerData() override;

    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;
    void accept(Visitors::MetadataSetVisitor & visitor) const override;

    // StructuralMetadataULs::bodySID(): null when empty.
    void bodySID(Types::UInt32 const * value);
    Types::UInt32 const * bodySID() const;
    // StructuralMetadataULs::indexSID(): null when empty.
    void indexSID(Types::UInt32 const * value);
    Types::UInt32 const * indexSID() const;
    // StructuralMetadataULs::linkedPackageUID(): null when empty.
    void linkedPackageUID(Types::UMID32 const * value);
    Types::UMID32 const * linkedPackageUID() const;

    // The package whose packageUID is the linkedPackageUID, or null.
    GenericPackage * linkedPackage() const;

private:
    EssenceContainerData(EssenceContainerData const &) = delete;
    EssenceContainerData & operator=(EssenceContainerData const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
