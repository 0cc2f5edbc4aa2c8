// The KLV stream of a frame multiplexer, read back with the library's own reader.

#include <gtest/gtest.h>

#include "GenericContainer/Multiplexer/Mux.h"
#include "Metadata/Structural/MultipleDescriptor.h"
#include "Metadata/Structural/PackageHelpers.h"
#include "Metadata/Structural/Sequence.h"
#include "Metadata/Structural/SourcePackage.h"
#include "Metadata/Structural/StructuralVisitors.h"
#include "Metadata/Structural/TimelineTrack.h"
#include "Support/ContainerDrain.h"
#include "Support/MemoryAnalyzer.h"
#include "Types/Integers.h"
#include "Utils/Text.h"

namespace VellumTest
{
namespace
{
using namespace Vellum;
namespace S = Metadata::Structural;
using Templates::Rational;
using Templates::SharedPtr;

KLV::Key keyOf(char const * dotted) { return KLV::Key(Utils::wide(dotted).c_str(), Types::Dotted); }

template <class A>
SharedPtr<A> analyzer(MemoryStream const & stream)
{
    return SharedPtr<A>(new A(stream));
}

MemoryStream withKey(MemoryStream stream, unsigned char itemType, unsigned char elementType)
{
    stream.itemType = itemType;
    stream.elementType = elementType;
    return stream;
}

MemoryStream variableStream(std::vector<unsigned int> const & sizes)
{
    MemoryStream stream;
    stream.frames = makeFrames(sizes);
    return stream;
}

std::vector<unsigned char> bytesOf(DataIO::BlockHolder const & frame)
{
    return std::vector<unsigned char>(frame->data(), frame->data() + frame->size());
}

// Picture, two sounds and a data element, added out of order: each package holds them in item
// order, with the keys and track numbers of their items, and the bytes of the analyzers' frames.
TEST(Mux, PackagesHoldElementsInItemOrderWithTheirKeysAndTheFramesBytes)
{
    MemoryStream const picture = withKey(constantStream(3, 1000), 0x15, 0x05);
    MemoryStream const sound1 = withKey(variableStream({300, 301, 302}), 0x16, 0x01);
    MemoryStream const sound2 = withKey(variableStream({10, 11, 12}), 0x16, 0x01);
    MemoryStream const data = withKey(variableStream({5, 1, 7}), 0x17, 0x03);
    SharedPtr<Metadata::PartitionMetadata> metadata = newHeaderMetadata();
    GC::Multiplexer::Mux mux(metadata, testContainerLabel(), Rational<int>(25, 1));
    mux.defaultStartTimecode(false, 10, 0, 0, 0);
    mux.addAnalyzer(analyzer<MemorySound>(sound1), false, Rational<int64>(0, 1));
    mux.addAnalyzer(analyzer<MemoryPicture>(picture), false, Rational<int64>(0, 1));
    mux.addAnalyzer(analyzer<MemorySound>(sound2), false, Rational<int64>(0, 1));
    mux.addAnalyzer(analyzer<MemoryData>(data), false, Rational<int64>(0, 1));
    Templates::auto_ptr<GC::Source> source = mux.commit();
    EXPECT_FALSE(source->isCBE());
    DrainedSource drained = drainSource(*source, [&] { source->finalize(); });

    std::vector<KlvRecord> const records = readKlv(drained.bytes);
    ASSERT_EQ(12u, records.size());
    struct Expected
    {
        char const * key;
        unsigned int trackId;
        MemoryStream const * stream;
    };
    Expected const order[] = {{"06.0e.2b.34.01.02.01.01.0d.01.03.01.15.01.05.00", 512, &picture},
                              {"06.0e.2b.34.01.02.01.01.0d.01.03.01.16.02.01.00", 256, &sound1},
                              {"06.0e.2b.34.01.02.01.01.0d.01.03.01.16.02.01.01", 768, &sound2},
                              {"06.0e.2b.34.01.02.01.01.0d.01.03.01.17.01.03.02", 1024, &data}};
    for (std::size_t i = 0; i < records.size(); ++i)
    {
        Expected const & e = order[i % 4];
        EXPECT_EQ(keyOf(e.key), records[i].key) << i;
        EXPECT_EQ(4, records[i].berLength);
        EXPECT_EQ(bytesOf(e.stream->frames[i / 4]), records[i].value) << i;
        EXPECT_EQ(1u, drained.blocks.count(e.stream->frames[i / 4].block())) << "frame bytes were copied";
        // The track of the element carries bytes 12 to 15 of its key as its number.
        S::Track * track = source->sourcePackage().track(Types::UInt32(e.trackId));
        ASSERT_NE(nullptr, track);
        unsigned char const * k = records[i].key.rawBuffer();
        EXPECT_EQ(uint32(k[12]) << 24 | uint32(k[13]) << 16 | uint32(k[14]) << 8 | k[15], track->trackNumber()->value());
        EXPECT_EQ(3, track->sequence()->duration()->value());
    }
    EXPECT_EQ(Rational<int64>(1, 25), drained.durations.front());
    S::MultipleDescriptor const * multiple =
        S::metadataSetAs<S::MultipleDescriptor>(source->sourcePackage().descriptor());
    ASSERT_NE(nullptr, multiple);
    EXPECT_EQ(4u, multiple->subDescriptorUIDsCount());
    // The timecode track starts at the default time code and ends with the essence.
    S::TimelineTrack const * timecode = S::getTimecodeTrack(source->sourcePackage());
    ASSERT_NE(nullptr, timecode);
    EXPECT_EQ(3, timecode->sequence()->duration()->value());
    EXPECT_EQ(int64(10 * 3600 * 25), S::startTimecode(source->sourcePackage()).toFrameCounter());
}

// Sound of 48 kHz in packages of a frame: each package takes exactly one unit of the cadence.
TEST(Mux, SoundSamplesPerPackageFollowTheCadence)
{
    struct Case
    {
        Rational<int> rate;
        std::vector<unsigned int> samples;
    };
    Case const cases[] = {{Rational<int>(25, 1), {1920, 1920, 1920, 1920, 1920}},
                          {Rational<int>(30000, 1001), {1602, 1601, 1602, 1601, 1602, 1602, 1601, 1602, 1601, 1602}}};
    for (Case const & c : cases)
    {
        MemoryStream sound = withKey(MemoryStream(), 0x16, 0x01);
        sound.editRate = c.rate;
        std::vector<unsigned int> sizes;
        for (unsigned int n : c.samples)
        {
            sizes.push_back(n * 4);
            sound.durations.push_back(Rational<int>(int(n), 48000));
        }
        sound.frames = makeFrames(sizes);
        GC::Multiplexer::Mux mux(newHeaderMetadata(), testContainerLabel(), c.rate);
        mux.addAnalyzer(analyzer<MemorySound>(sound), false, Rational<int64>(0, 1));
        Templates::auto_ptr<GC::Source> source = mux.commit();
        std::vector<KlvRecord> const records = readKlv(drainSource(*source).bytes);
        ASSERT_EQ(c.samples.size(), records.size());
        // One element alone is described by its own descriptor.
        EXPECT_EQ(nullptr, S::metadataSetAs<S::MultipleDescriptor>(source->sourcePackage().descriptor()));
        for (std::size_t i = 0; i < records.size(); ++i)
            EXPECT_EQ(c.samples[i] * 4, records[i].value.size()) << c.rate.denominator() << " package " << i;
    }
}

// With a KAG, every element of variable size ends on the grid, filled behind; constant elements
// padded to the KAG likewise.
TEST(Mux, ElementsEndOnTheKagWhenOneIsSet)
{
    MemoryStream const picture = withKey(variableStream({1000, 1, 491, 492, 493, 3000}), 0x15, 0x05);
    MemoryStream const sound = withKey(constantStream(6, 1920 * 4), 0x16, 0x01);
    GC::Multiplexer::Mux mux(newHeaderMetadata(), testContainerLabel(), Rational<int>(25, 1));
    mux.kagSize(512);
    mux.addAnalyzer(analyzer<MemoryPicture>(picture), true, Rational<int64>(0, 1));
    mux.addAnalyzer(analyzer<MemorySound>(sound), true, Rational<int64>(0, 1));
    Templates::auto_ptr<GC::Source> source = mux.commit();
    EXPECT_EQ(512u, source->kagSize());
    DrainedSource const drained = drainSource(*source);
    EXPECT_EQ(0u, drained.bytes.size() % 512);
    std::vector<KlvRecord> const records = readKlv(drained.bytes);
    std::vector<KlvRecord> const elements = withoutFill(records);
    ASSERT_EQ(12u, elements.size());
    for (std::size_t i = 0; i < elements.size(); ++i)
    {
        EXPECT_EQ(0u, elements[i].offset % 512) << i;
        EXPECT_EQ(bytesOf((i % 2 == 0 ? picture : sound).frames[i / 2]), elements[i].value) << i;
    }
    // Each fill item stands right behind an element, with a KL of 20 bytes or more to fill.
    for (KlvRecord const & r : records)
    {
        if (isFillKey(r.key))
        {
            EXPECT_EQ(4, r.berLength);
        }
    }
}

// Byte 15 of the element keys: the count of data elements before, plus 2; 1 for S436M VBI lines
// and ANC packets; an explicit number as given.
TEST(Mux, ElementNumbersOfDataElements)
{
    GC::Multiplexer::Mux mux(newHeaderMetadata(), testContainerLabel(), Rational<int>(25, 1));
    mux.addAnalyzer(analyzer<MemoryData>(withKey(variableStream({1}), 0x17, 0x03)), false, Rational<int64>(0, 1));
    mux.addAnalyzer(analyzer<MemoryData>(withKey(variableStream({1}), 0x17, 0x03)), false, Rational<int64>(0, 1));
    mux.addAnalyzer(analyzer<MemoryData>(withKey(variableStream({1}), 0x17, 0x01)), false, Rational<int64>(0, 1));
    mux.addAnalyzer(analyzer<MemoryData>(withKey(variableStream({1}), 0x17, 0x03)), false, Rational<int64>(0, 1), 127);
    Templates::auto_ptr<GC::Source> source = mux.commit();
    std::vector<KlvRecord> const records = readKlv(drainSource(*source).bytes);
    ASSERT_EQ(4u, records.size());
    unsigned char const expected[] = {2, 3, 1, 127};
    for (std::size_t i = 0; i < 4; ++i)
    {
        EXPECT_EQ(4, records[i].key[13]) << i;
        EXPECT_EQ(expected[i], records[i].key[15]) << i;
    }
}

// Streams at other rates than the package, streams that end early, and streams that end first
// while all essence is multiplexed: the value length of the second element in each package.
TEST(Mux, StreamsAtOtherRatesAndStreamsThatEnd)
{
    struct Case
    {
        char const * name;
        Rational<int> rate;
        std::vector<unsigned int> sizes;
        bool claimsMore;
        bool allEssence;
        // -1 where the package has no second element.
        std::vector<int> secondElement;
    };
    Case const cases[] = {
        {"twice the rate", Rational<int>(50, 1), {10, 11, 12, 13, 14, 15, 16, 17, 18, 19}, false, false, {21, 25, 29, 33, 37}},
        {"half the rate", Rational<int>(25, 2), {10, 11, 12}, false, false, {10, -1, 11, -1, 12}},
        {"ends early", Rational<int>(25, 1), {10, 11, 12}, true, false, {10, 11, 12}},
        {"ends first, all essence", Rational<int>(25, 1), {10, 11, 12}, false, true, {10, 11, 12, 0, 0}},
    };
    for (Case const & c : cases)
    {
        SCOPED_TRACE(c.name);
        MemoryStream sound = withKey(variableStream(c.sizes), 0x16, 0x01);
        sound.editRate = c.rate;
        sound.claimsMore = c.claimsMore;
        GC::Multiplexer::Mux mux(newHeaderMetadata(), testContainerLabel(), Rational<int>(25, 1));
        mux.multiplexAllEssence(c.allEssence);
        mux.addAnalyzer(analyzer<MemoryPicture>(withKey(constantStream(5, 100), 0x15, 0x05)), false,
                        Rational<int64>(0, 1));
        mux.addAnalyzer(analyzer<MemorySound>(sound), false, Rational<int64>(0, 1));
        Templates::auto_ptr<GC::Source> source = mux.commit();
        std::vector<KlvRecord> const records = readKlv(drainSource(*source, [&] { source->finalize(); }).bytes);
        std::vector<int> second;
        for (std::size_t i = 0; i < records.size(); ++i)
        {
            if (records[i].key[12] != 0x15)
                continue;
            bool const present = i + 1 < records.size() && records[i + 1].key[12] == 0x16;
            second.push_back(present ? int(records[i + 1].value.size()) : -1);
        }
        EXPECT_EQ(c.secondElement, second);
        if (!c.claimsMore)
            continue;
        // Every track ends with the last whole package.
        Templates::list<S::TimelineTrack *> tracks;
        S::getAllEssenceTracks(source->sourcePackage(), tracks);
        ASSERT_EQ(2u, tracks.size());
        for (S::TimelineTrack * track : tracks)
            EXPECT_EQ(int64(c.secondElement.size()), track->sequence()->duration()->value());
    }
}
} // namespace
} // namespace VellumTest
