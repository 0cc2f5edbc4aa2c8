#pragma once
// What both builders share: the header metadata they make, its Preface, Content Storage and one
// Identification, the date, and the operational pattern label with the three numbers that make
// its bytes 12 to 14.

#include "KLV/Key.h"
#include "MetaMetadata/Dictionary.h"
#include "Metadata/PartitionMetadata.h"
#include "Metadata/Structural/StructuralClasses.h"
#include "Metadata/Structural/StructuralVisitors.h"
#include "Templates/SharedPtr.h"
#include "Types/Timestamp.h"
#include "Types/UniversalLabel.h"

namespace Vellum
{
namespace MetaMetadata
{
class Dictionary;
}
namespace Types
{
class ProductVersion;
class UUID;
} // namespace Types

namespace OPBuilders
{
struct BasicOPBuilder_impl
{
    VELLUM_CLASS_ALLOCATION

    BasicOPBuilder_impl(Templates::SharedPtr<MetaMetadata::Dictionary> dictionary, unsigned short const * companyName,
                        unsigned short const * productName, unsigned short const * versionString,
                        Types::UUID const & productUID, Types::ProductVersion const * productVersion,
                        Types::Timestamp const * date, bool external, bool nonStream);
    virtual ~BasicOPBuilder_impl();
    virtual Types::UniversalLabel const & currentOP() const;

    // A new set of the builder's metadata, stamped with the one Identification's generation.
    template <class T>
    T * create(KLV::Key const & key)
    {
        T * set = Metadata::Structural::metadataSetAs<T>(metadata->createMetadataSet(key));
        stamp(set);
        return set;
    }
    void stamp(Metadata::Structural::TrackableMetadataSet * set)
    {
        if (identification != 0)
            set->generation(identification);
    }
    // The Identification itself carries no generation.
    void stamp(Metadata::MetadataSet *) {}

    void raiseItemComplexity(int value);
    void raisePackageComplexity(int value);
    void qualifierBit(int bit, bool on);
    // Rewrites bytes 12 to 14 of the label from the three numbers.
    void rewriteLabel();
    // The Preface's essence containers, again from the file descriptors of the source packages.
    void rebuildEssenceContainers();

    Templates::SharedPtr<Metadata::PartitionMetadata> metadata;
    Metadata::Structural::Preface * preface;
    Metadata::Structural::ContentStorage * contentStorage;
    Types::Timestamp date;
    Metadata::Structural::Identification * identification;
    Types::UniversalLabel label;
    int itemComplexity;
    int packageComplexity;
    int qualifier;
    bool external;

private:
    BasicOPBuilder_impl(BasicOPBuilder_impl const &) = delete;
    BasicOPBuilder_impl & operator=(BasicOPBuilder_impl const &) = delete;
};
} // namespace OPBuilders
} // namespace Vellum
