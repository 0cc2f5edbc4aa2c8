// Clip wrapping: each stream one KLV packet, its length fixed once the clip has ended.

#include <gtest/gtest.h>

#include "GenericContainer/ClipWrapper/Wrapper.h"
#include "Support/ContainerDrain.h"
#include "Support/MemoryAnalyzer.h"
#include "Utils/Text.h"

namespace VellumTest
{
namespace
{
using namespace Vellum;
using Templates::Rational;
using Templates::SharedPtr;

std::vector<unsigned char> concatenated(MemoryStream const & stream)
{
    std::vector<unsigned char> bytes;
    for (DataIO::BlockHolder const & frame : stream.frames)
        bytes.insert(bytes.end(), frame->data(), frame->data() + frame->size());
    return bytes;
}

MemoryStream clipStream(unsigned char itemType, std::vector<unsigned int> const & sizes)
{
    MemoryStream stream;
    stream.itemType = itemType;
    stream.frames = makeFrames(sizes);
    return stream;
}

// Two streams, lengths unknown in advance, with and without a KAG: each clip is one packet whose
// 8-byte length the updater patches to the bytes written, and a partition may only start behind
// a whole clip.
TEST(ClipWrapper, EachStreamIsOnePacketWhoseLengthTheUpdaterFixes)
{
    MemoryStream const picture = clipStream(0x15, {1000, 1200, 900});
    MemoryStream const sound = clipStream(0x16, {7680, 7680});
    for (unsigned int kag : {1u, 512u})
    {
        SCOPED_TRACE(kag);
        GC::ClipWrapper::Wrapper wrapper(newHeaderMetadata(), testContainerLabel(), Rational<int>(25, 1),
                                         SharedPtr<DataIO::BufferSliceSource>(), 0);
        wrapper.kagSize(kag);
        wrapper.addAnalyzer(SharedPtr<GC::EssenceAnalyzer>(new MemorySound(sound)));
        wrapper.addAnalyzer(SharedPtr<GC::EssenceAnalyzer>(new MemoryPicture(picture)));
        Templates::auto_ptr<GC::Source> source = wrapper.commit();
        DrainedSource const drained = drainSource(*source, [&] { source->finalize(); });
        EXPECT_EQ(2u, drained.updaters);
        EXPECT_EQ(2u, drained.patched);
        EXPECT_EQ((std::vector<bool>{false, false, true, false, true}), drained.boundaries);
        std::vector<KlvRecord> const clips = withoutFill(readKlv(drained.bytes));
        ASSERT_EQ(2u, clips.size());
        EXPECT_EQ(KLV::Key(Utils::wide("06.0e.2b.34.01.02.01.01.0d.01.03.01.15.01.01.00").c_str(), Types::Dotted),
                  clips[0].key);
        EXPECT_EQ(KLV::Key(Utils::wide("06.0e.2b.34.01.02.01.01.0d.01.03.01.16.01.01.00").c_str(), Types::Dotted),
                  clips[1].key);
        EXPECT_EQ(8, clips[0].berLength);
        EXPECT_EQ(concatenated(picture), clips[0].value);
        EXPECT_EQ(concatenated(sound), clips[1].value);
        EXPECT_EQ(0u, clips[1].offset % kag);
        EXPECT_EQ(0u, drained.bytes.size() % kag);
    }
}

// A clip size given in advance makes the key and length final at once.
TEST(ClipWrapper, KnownClipSizeNeedsNoUpdater)
{
    MemoryStream const picture = clipStream(0x15, {100, 200, 300});
    GC::ClipWrapper::Wrapper wrapper(newHeaderMetadata(), testContainerLabel(), Rational<int>(25, 1),
                                     SharedPtr<DataIO::BufferSliceSource>(), 600);
    wrapper.addAnalyzer(SharedPtr<GC::EssenceAnalyzer>(new MemoryPicture(picture)));
    Templates::auto_ptr<GC::Source> source = wrapper.commit();
    DrainedSource const drained = drainSource(*source, [&] { source->finalize(); });
    EXPECT_EQ(0u, drained.updaters);
    std::vector<KlvRecord> const clips = readKlv(drained.bytes);
    ASSERT_EQ(1u, clips.size());
    EXPECT_EQ(concatenated(picture), clips[0].value);
}
} // namespace
} // namespace VellumTest
