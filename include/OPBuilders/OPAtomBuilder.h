#pragma once
// The header metadata of one OP-Atom file (one Material Package over one top level File Source
// Package), and the aggregator that ties several such files into one clip: all of them get the
// same Material Package identity, and each lists the essence tracks of all the others.

#include "OPBuilders/Proxies.h"
#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"
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
namespace Structural
{
class SourcePackage;
}
} // namespace Metadata
namespace Types
{
class ProductVersion;
class Timestamp;
class UniversalLabel;
class UUID;
} // namespace Types

namespace OPBuilders
{
class OPAtomBuilder
{
public:
    VELLUM_CLASS_ALLOCATION
    OPAtomBuilder(Templates::SharedPtr<MetaMetadata::Dictionary> dictionary, unsigned short const * companyName,
                  unsigned short const * productName, unsigned short const * versionString,
                  Types::UUID const & productUID, Types::ProductVersion const * productVersion,
                  Types::Timestamp const * date);
    ~OPAtomBuilder();

    // A second call replaces the proxy of the first, which is destroyed.
    MaterialPackageProxy * createMaterialPackage(Utils::TimeCode const & start, Templates::Rational<int> const & editRate);
    // Makes `package` the Preface's primary package.
    void topLevelFilePackage(Metadata::Structural::SourcePackage const & package);
    void update();
    Types::UniversalLabel const & currentOP() const;
    Templates::SharedPtr<Metadata::PartitionMetadata> metadata() const;

    struct Impl;

private:
    OPAtomBuilder(OPAtomBuilder const &) = delete;
    OPAtomBuilder & operator=(OPAtomBuilder const &) = delete;
    friend class OPAtomAggregator;

    Templates::auto_ptr<Impl> impl_;
};

class OPAtomAggregator
{
public:
    VELLUM_CLASS_ALLOCATION
    OPAtomAggregator();
    ~OPAtomAggregator();

    // The builder stays the caller's; null is ignored.
    void addOPAtomBuilder(OPAtomBuilder * builder);
    // Gives every file the first one's Material Package identity, numbers the essence tracks
    // 1, 2, ... in the order the builders were added (time code tracks first, as 0), and adds to
    // each Material Package a copy of the essence tracks of the others. Needs two builders.
    void commit();

private:
    OPAtomAggregator(OPAtomAggregator const &) = delete;
    OPAtomAggregator & operator=(OPAtomAggregator const &) = delete;

    Templates::vector<OPAtomBuilder *> builders_;
};
} // namespace OPBuilders
} // namespace Vellum
