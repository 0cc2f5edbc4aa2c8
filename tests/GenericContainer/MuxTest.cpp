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
} // namespace
} // namespace VellumTest
