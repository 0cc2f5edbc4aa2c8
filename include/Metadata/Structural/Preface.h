#pragma once
// The root of the header metadata: content storage, identifications, operational pattern and essence containers.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/TrackableMetadataSet.h"
#include "Types/Integers.h"
#include "Types/Timestamp.h"
#include "Types/UniversalLabel.h"
#include "Types/VersionType.h"

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
class ContentStorage;
class GenericPackage;
class Identification;

// Described by the set Preface.
class Preface : public TrackableMetadataSet
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty set of key StructuralMetadataKeys::preface(); `metaMetadataSet` must describe that key.
    Preface(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);
    ~Preface() override;

    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;
    void accept(Visitors::MetadataSetVisitor & visitor) const override;

    // StructuralMetadataULs::contentStorage(): the set referred to, or null.
    void contentStorage(ContentStorage const * target);
    ContentStorage * contentStorage() const;
    // StructuralMetadataULs::dmSchemes(): the members in order.
    unsigned int dmSchemesCount() const;
    Types::UniversalLabel const * dmScheme(unsigned int index) const;
    void appendDMScheme(Types::UniversalLabel const & value);
    void removeDMScheme(unsigned int index);
    // StructuralMetadataULs::essenceContainers(): the members in order.
    unsigned int essenceContainersCount() const;
    Types::UniversalLabel const * essenceContainer(unsigned int index) const;
    void appendEssenceContainer(Types::UniversalLabel const & value);
    void removeEssenceContainer(unsigned int index);
    // StructuralMetadataULs::identificationList(): the members in order.
    unsigned int identificationsCount() const;
    Identification * identification(unsigned int index) const;
    void appendIdentification(Identification * target);
    void addIdentification(unsigned int index, Identification * target);
    void removeIdentification(unsigned int index);
    // StructuralMetadataULs::lastModifiedDate(): null when empty.
    void lastModifiedDate(Types::Timestamp const * value);
    Types::Timestamp const * lastModifiedDate() const;
    // StructuralMetadataULs::objectModelVersion(): null when empty.
    void objectModelVersion(Types::UInt32 const * value);
    Types::UInt32 const * objectModelVersion() const;
    // StructuralMetadataULs::operationalPattern(): null when empty.
    void operationalPattern(Types::UniversalLabel const * value);
    Types::UniversalLabel const * operationalPattern() const;
    // StructuralMetadataULs::primaryPackage(): the set referred to, or null.
    void primaryPackage(GenericPackage const * target);
    GenericPackage * primaryPackage() const;
    // StructuralMetadataULs::version(): null when empty.
    void version(Types::VersionType const * value);
    Types::VersionType const * version() const;

private:
    Preface(Preface const &) = delete;
    Preface & operator=(Preface const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
