#pragma once
// The frame-wrapping builder of a Generic Container: gathers analyzers and the padding and time
// code options, and at commit settles keys, track numbers, element sizes and the order of a
// content package.

#include "GenericContainer/EssenceAnalyzer.h"
#include "GenericContainer/Source.h"
#include "Metadata/PartitionMetadata.h"
#include "Platform/MallocAlloc.h"
#include "Templates/AutoPtr.h"
#include "Templates/Rational.h"
#include "Templates/SharedPtr.h"
#include "Types/UniversalLabel.h"

namespace Vellum
{
namespace Metadata
{
namespace Structural
{
class SourcePackage;
}
}

namespace GenericContainer
{
namespace Multiplexer
{
class Mux
{
public:
    VELLUM_CLASS_ALLOCATION

    enum PaddingKind
    {
        Element = 0,
        Item = 1,
        EditUnit = 2
    };

    // The most analyzers of one kind, less one.
    enum
    {
        MAXIMUM_ITEM_COUNT = 127
    };

    // A Source Package is created in `metadata` at commit.
    Mux(Templates::SharedPtr<Metadata::PartitionMetadata> metadata, Types::UniversalLabel const & essenceContainer,
        Templates::Rational<int> const & rate);
    // The package exists: nothing is created or described.
    Mux(Metadata::Structural::SourcePackage * package, Types::UniversalLabel const & essenceContainer,
        Templates::Rational<int> const & rate);
    ~Mux();

    void addAnalyzer(Templates::SharedPtr<EssenceAnalyzer> analyzer, bool padToKag,
                     Templates::Rational<int64> const & temporalOffset);
    // An element number of 128 or more lets the multiplexer choose.
    void addAnalyzer(Templates::SharedPtr<EssenceAnalyzer> analyzer, bool padToKag,
                     Templates::Rational<int64> const & temporalOffset, unsigned char elementNumber);
    Templates::auto_ptr<Source> commit();

    // The KAG becomes the least common multiple of this and the KAG so far; 0 makes it 0.
    void kagSize(unsigned int size);
    // False when the ID is in use.
    bool nextBaseTrackID(unsigned int id);
    unsigned int nextBaseTrackID() const;

    void paddToElement();
    void paddToItem(int system, int compound, int picture, int sound, int data);
    void paddToEditUnit(unsigned int size);
    PaddingKind paddingType();

    void indexFillPackets(bool value);
    void multiplexAllEssence(bool value);
    void defaultStartTimecode(bool force, unsigned char hours, unsigned char minutes, unsigned char seconds,
                              unsigned char frames);
    void suppressTimecodeDiscontinuities(bool value);
    void generateTimecodeTrack(bool value);
    void useAnalyzerInputOrderToSortContainer(bool value);
    bool useAnalyzerInputOrderToSortContainer() const;

private:
    Mux(Mux const &) = delete;
    Mux & operator=(Mux const &) = delete;

    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace Multiplexer
} // namespace GenericContainer
} // namespace Vellum
