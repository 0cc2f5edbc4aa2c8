#pragma once
// Holds the packages and the essence container data of the file.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/TrackableMetadataSet.h"
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
class EssenceContainerData;
class GenericPackage;

// Described by the set ContentStorage.
class ContentStorage : public TrackableMetadataSet
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty set of key StructuralMetadataKeys::contentStorage(); `metaMetadataSet` must describe that key.
    ContentStorage(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);
    ~ContentStorage() override;

    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;
    void accept(Visitors::MetadataSetVisitor & visitor) const override;

    // StructuralMetadataULs::essenceContainerData(): the members in order.
    unsigned int essenceContainerDataCount() const;
    EssenceContainerData * essenceContainerData(unsigned int index) const;
    void appendEssenceContainerData(EssenceContainerData * target);
    void removeEssenceContainerData(unsigned int index);
    // StructuralMetadataULs::packages(): the members in order.
    unsigned int packagesCount() const;
    GenericPackage * package(unsigned int index) const;
    void appendPackage(GenericPackage * target);
    void removePackage(unsigned int index);

    // The package whose packageUID is `packageUID`, or null.
    GenericPackage * package(Types::UMID32 const & packageUID) const;
    // The Essence Container Data whose linkedPackageUID is `linkedPackageUID`, or null.
    EssenceContainerData * essenceContainerData(Types::UMID32 const & linkedPackageUID) const;

private:
    ContentStorage(ContentStorage const &) = delete;
    ContentStorage & operator=(ContentStorage const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
