#pragma once
// Builds the header metadata of a file of an operational pattern from 1a to 3c: Preface,
// Identification, Content Storage and Material Packages over the File Source Packages that a
// multiplexer or the host put into the same metadata. The host describes its edit through the
// proxies; update() derives durations, the operational pattern label and the essence container
// list from what it was told.
//
// Usual order: construct; add Source Packages to metadata(); createMaterialPackage; createTrack
// or createTracks; addClip or addSubClip; update(), again after every change and before writing.
// Wrong use (a clip over a track without a sequence or edit rate, tracks of two data
// definitions in one) ends the process with an assertion.

#include "OPBuilders/Proxies.h"
#include "Templates/AutoPtr.h"
#include "Templates/SharedPtr.h"
#include "Utils/SMPTETimeCode.h"

namespace Vellum
{
namespace MetaMetadata
{
class Dictionary;
}
namespace Metadata
{
class PartitionMetadata;
}
namespace Types
{
class ProductVersion;
class Timestamp;
class UMID32;
class UniversalLabel;
class UUID;
} // namespace Types

namespace OPBuilders
{
class GenericOPBuilder
{
public:
    VELLUM_CLASS_ALLOCATION
    // `productVersion` and `date` may be null (no product version; the current date).
    // `external`: the essence is outside this file. `nonStream`: qualifier bit 2.
    GenericOPBuilder(Templates::SharedPtr<MetaMetadata::Dictionary> dictionary, unsigned short const * companyName,
                     unsigned short const * productName, unsigned short const * versionString,
                     Types::UUID const & productUID, Types::ProductVersion const * productVersion,
                     Types::Timestamp const * date, bool external, bool nonStream);
    ~GenericOPBuilder();

    MaterialPackageProxy * createMaterialPackage(Utils::TimeCode const & start, Templates::Rational<int> const & editRate);
    MaterialPackageProxy * createMaterialPackage(Utils::TimeCode const & start, Templates::Rational<int> const & editRate,
                                                 Types::UMID32 const & packageUID);
    void update();
    // The label as it stands now; the Preface takes it at update().
    Types::UniversalLabel const & currentOP() const;
    Templates::SharedPtr<Metadata::PartitionMetadata> metadata() const;
    void externalEssence(bool external);
    // Leaves the multiple wrappings label out of the Preface's essence containers.
    void suppressMultipleWrappingsUL(bool suppress);

    struct Impl;

private:
    GenericOPBuilder(GenericOPBuilder const &) = delete;
    GenericOPBuilder & operator=(GenericOPBuilder const &) = delete;

    Templates::auto_ptr<Impl> impl_;
};
} // namespace OPBuilders
} // namespace Vellum
