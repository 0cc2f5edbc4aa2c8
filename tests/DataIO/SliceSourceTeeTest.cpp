#include <gtest/gtest.h>

#include "DataIO/BufferSliceSource.h"
#include "DataIO/SliceSourceTee.h"
#include "DataIO/SliceTestHelpers.h"

using namespace Vellum;
using namespace Vellum::DataIO;
using Vellum::DataIO::Testing::CountingBlockFactory;
using Vellum::DataIO::Testing::PieceSource;
using Vellum::DataIO::Testing::bytesOf;
using Vellum::DataIO::Testing::counting;
using Vellum::DataIO::Testing::cut;

TEST(SliceSourceTeeTest, TheSinkSeesReadAndSkippedBytes)
{
    CountingBlockFactory factory;
    {
        BufferSliceSource seen;
        SliceSourceTee tee(Templates::SharedPtr<SliceSource>(new PieceSource(factory, cut(counting(30), {10, 10, 10}))),
                           &seen);
        Templates::auto_ptr<Slice> a = tee.read(4);
        EXPECT_EQ(counting(4), bytesOf(*a));
        EXPECT_EQ(4u, tee.absoluteOffset());
        // The sink shares the block.
        EXPECT_EQ(4u, seen.accessible());
        EXPECT_EQ(1, factory.created);

        EXPECT_EQ(14u, tee.skip(14));
        EXPECT_EQ(18u, tee.absoluteOffset());
        EXPECT_EQ(18u, seen.accessible());
        Templates::auto_ptr<Slice> b = tee.read(100);
        EXPECT_EQ(counting(2, 18), bytesOf(*b));
        EXPECT_EQ(10u, tee.skip(100));
        EXPECT_TRUE(tee.endOfStream());
        EXPECT_EQ(0u, tee.read(5)->size());

        Chain all;
        while (seen.accessible() != 0)
            all.push_back(seen.read(0));
        EXPECT_EQ(counting(30), bytesOf(all));
        EXPECT_EQ(3, factory.created);
    }
    EXPECT_EQ(0, factory.live);
}

TEST(SliceSourceTeeTest, WithoutASinkSkipDoesNotRead)
{
    CountingBlockFactory factory;
    PieceSource * source = new PieceSource(factory, cut(counting(30), {10, 10, 10}));
    SliceSourceTee tee(Templates::SharedPtr<SliceSource>(source), nullptr);
    EXPECT_EQ(25u, tee.skip(25));
    EXPECT_EQ(0, source->reads);
    EXPECT_EQ(counting(5, 25), bytesOf(*tee.read(10)));
}
