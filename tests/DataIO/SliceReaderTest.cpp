#include <gtest/gtest.h>

#include "Support/Mxf.h"

#include "DataIO/SliceReader.h"
#include "DataIO/SliceTestHelpers.h"
#include "Exceptions/Exceptions.h"
#include "Utils/Text.h"

using namespace Vellum;
using namespace Vellum::DataIO;
using Vellum::DataIO::Testing::CountingBlockFactory;
using Vellum::DataIO::Testing::PieceSource;
using Vellum::DataIO::Testing::bytesOf;
using Vellum::DataIO::Testing::counting;
using Vellum::DataIO::Testing::cut;

namespace
{
struct Fixture
{
    Fixture(std::vector<unsigned char> const & bytes, std::vector<size_t> const & sizes)
        : source(new PieceSource(factory, cut(bytes, sizes))),
          reader(Templates::SharedPtr<SliceSource>(source))
    {
    }
    CountingBlockFactory factory;
    PieceSource * source;
    SliceReader reader;
};
} // namespace

TEST(SliceReaderTest, ReadAcrossThreeSlicesJoinsThemAndCachesTheTail)
{
    {
        Fixture f(counting(15), {4, 5, 6});
        Templates::auto_ptr<Slice> joined = f.reader.read(12);
        EXPECT_EQ(12u, joined->size());
        EXPECT_EQ(12u, joined->block()->size());
        EXPECT_EQ(counting(12), bytesOf(*joined));
        EXPECT_EQ(4, f.factory.created); // three pieces and the joined block
        EXPECT_EQ(3u, f.reader.cachedSize());
        EXPECT_EQ(12u, f.reader.absoluteOffset());
        EXPECT_FALSE(f.reader.endOfStream());

        // The tail comes from the cache, on the third piece's block, without a copy.
        Templates::auto_ptr<Slice> tail = f.reader.read(3);
        EXPECT_EQ(counting(3, 12), bytesOf(*tail));
        EXPECT_EQ(3u, tail->offset());
        EXPECT_EQ(4, f.factory.created);
        EXPECT_EQ(0u, f.reader.cachedSize());
        EXPECT_TRUE(f.reader.endOfStream());
        EXPECT_EQ(15u, f.reader.absoluteOffset());
        // Only the blocks still referenced live.
        EXPECT_EQ(2, f.factory.live);
        joined.reset();
        tail.reset();
        EXPECT_EQ(0, f.factory.live);
    }
}

TEST(SliceReaderTest, ReadPastTheEndThrowsAndKeepsTheBytes)
{
    Fixture f(counting(9), {3, 3, 3});
    try
    {
        f.reader.read(10);
        FAIL() << "no exception";
    }
    catch (Exceptions::NotEnoughData const & e)
    {
        EXPECT_EQ("Not enough data to read from the source", Utils::narrow(e.message()));
        EXPECT_EQ(30, e.errorCode());
        EXPECT_NE(std::string::npos, e.whatUtf8().find("DataIO/SliceReader.cpp"));
    }
    // Everything taken is back in the cache, in order, as the source's own slices; no block was
    // made for bytes that are not there, however many were asked for.
    EXPECT_EQ(9u, f.reader.cachedSize());
    EXPECT_THROW(f.reader.read(uint64(1) << 50), Exceptions::NotEnoughData);
    EXPECT_EQ(3, f.factory.created);
    EXPECT_EQ(9u, f.reader.cachedSize());
    EXPECT_EQ(0u, f.reader.absoluteOffset());
    EXPECT_FALSE(f.reader.endOfStream());
    Chain all;
    f.reader.read(100, all);
    EXPECT_EQ(counting(9), bytesOf(all));
    EXPECT_EQ(3u, all.slice_count());
    EXPECT_TRUE(f.reader.endOfStream());

    // At the end: read(0) is an empty slice, anything more the condition's failure.
    EXPECT_EQ(0u, f.reader.read(0)->size());
    EXPECT_EQ(VellumTest::messageOf<Exceptions::NotEnoughData>([&] { f.reader.read(1); }), "!this -> eof (): Not enough data to read from the source");
}

TEST(SliceReaderTest, NextSliceGivesOneContiguousPiece)
{
    Fixture f(counting(10), {6, 4});
    Templates::auto_ptr<Slice> a = f.reader.nextSlice(4);
    EXPECT_EQ(counting(4), bytesOf(*a));
    EXPECT_EQ(2u, f.reader.cachedSize());
    // Shorter than asked: the rest of the cached head, not a join.
    Templates::auto_ptr<Slice> b = f.reader.nextSlice(4);
    EXPECT_EQ(counting(2, 4), bytesOf(*b));
    EXPECT_EQ(a->block(), b->block());
    EXPECT_EQ(0u, f.reader.nextSlice(0)->size());
    Templates::auto_ptr<Slice> c = f.reader.nextSlice(100);
    EXPECT_EQ(counting(4, 6), bytesOf(*c));
    EXPECT_EQ(0u, f.reader.nextSlice(100)->size());
    EXPECT_EQ(2, f.factory.created);
}

TEST(SliceReaderTest, NextSliceAligned)
{
    // A piece of the asked size, or a multiple, is given as it is.
    {
        Fixture f(counting(20), {7, 13});
        EXPECT_EQ(counting(6), bytesOf(*f.reader.nextSliceAligned(6, 4)));
        f.reader.skip(6);
        EXPECT_EQ(counting(8, 12), bytesOf(*f.reader.nextSliceAligned(100, 4)));
    }
    // A longer piece is cut at its last multiple; the tail stays for the next call.
    {
        Fixture f(counting(20), {11, 9});
        Templates::auto_ptr<Slice> s = f.reader.nextSliceAligned(100, 4);
        EXPECT_EQ(counting(8), bytesOf(*s));
        EXPECT_EQ(3u, f.reader.cachedSize());
        EXPECT_EQ(1, f.factory.created);
        // A piece no longer than the alignment is joined across the seam.
        Templates::auto_ptr<Slice> joined = f.reader.nextSliceAligned(100, 4);
        EXPECT_EQ(counting(4, 8), bytesOf(*joined));
        EXPECT_EQ(4u, joined->block()->size());
        EXPECT_EQ(3, f.factory.created); // two pieces and the joined block
        EXPECT_EQ(8u, f.reader.cachedSize());
        EXPECT_EQ(12u, f.reader.absoluteOffset());
    }
    // Alignment 0 or 1 never cuts.
    {
        Fixture f(counting(10), {3, 7});
        EXPECT_EQ(3u, f.reader.nextSliceAligned(100, 0)->size());
        EXPECT_EQ(7u, f.reader.nextSliceAligned(100, 1)->size());
    }
}

TEST(SliceReaderTest, ReadAlignedGivesExactlyTheBytesAskedFor)
{
    Fixture f(counting(12), {5, 7});
    EXPECT_EQ(counting(8), bytesOf(*f.reader.readAligned(8)));
    EXPECT_EQ(counting(4, 8), bytesOf(*f.reader.readAligned(4)));
    EXPECT_THROW(f.reader.readAligned(4), Exceptions::NotEnoughData);
}

TEST(SliceReaderTest, UngetPutsBytesInFront)
{
    Fixture f(counting(10), {10});
    Templates::auto_ptr<Slice> head = f.reader.read(4);
    EXPECT_EQ(6u, f.reader.cachedSize());
    f.reader.unget(Templates::auto_ptr<Slice>(new Slice));
    f.reader.unget(Templates::auto_ptr<Slice>());
    EXPECT_EQ(6u, f.reader.cachedSize());
    f.reader.unget(std::move(head));
    EXPECT_EQ(10u, f.reader.cachedSize());
    EXPECT_EQ(0u, f.reader.absoluteOffset());

    Chain front;
    CountingBlockFactory other;
    BlockHolder extra = other.make({0xAA, 0xBB});
    front.push_back(Templates::auto_ptr<Slice>(new Slice(extra.block(), 0, 1)));
    front.push_back(Templates::auto_ptr<Slice>(new Slice(extra.block(), 1, 1)));
    f.reader.unget(front);
    EXPECT_TRUE(front.empty());
    std::vector<unsigned char> expected = {0xAA, 0xBB};
    std::vector<unsigned char> rest = counting(10);
    expected.insert(expected.end(), rest.begin(), rest.end());
    EXPECT_EQ(expected, bytesOf(*f.reader.read(12)));
}

TEST(SliceReaderTest, SkipDropsCachedBytesThenAsksTheSource)
{
    Fixture f(counting(30), {10, 10, 10});
    Templates::auto_ptr<Slice> s = f.reader.nextSlice(2);
    EXPECT_EQ(8u, f.reader.cachedSize());
    f.reader.unget(std::move(s));
    EXPECT_EQ(3u, f.reader.skip(3)); // crops the cached head
    EXPECT_EQ(3u, f.reader.absoluteOffset());
    EXPECT_EQ(7u, f.reader.cachedSize());
    EXPECT_EQ(12u, f.reader.skip(12)); // the cache and 5 bytes of the source
    EXPECT_EQ(15u, f.reader.absoluteOffset());
    EXPECT_EQ(0u, f.reader.cachedSize());
    EXPECT_EQ(counting(3, 15), bytesOf(*f.reader.read(3)));
    EXPECT_EQ(12u, f.reader.skip(100)); // no further than the end
    EXPECT_TRUE(f.reader.endOfStream());
    EXPECT_EQ(0u, f.reader.skip(1));
}

TEST(SliceReaderTest, ReadIntoAChainDoesNotCopy)
{
    Fixture f(counting(20), {3, 8, 9});
    Chain out;
    f.reader.read(15, out);
    EXPECT_EQ(3, f.factory.created);
    EXPECT_EQ(3u, out.slice_count());
    EXPECT_EQ(counting(15), bytesOf(out));
    EXPECT_EQ(5u, f.reader.cachedSize());
    f.reader.read(10, out); // the source ends first
    EXPECT_EQ(counting(20), bytesOf(out));
    EXPECT_TRUE(f.reader.endOfStream());
}
