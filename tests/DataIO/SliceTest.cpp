#include <gtest/gtest.h>

#include "DataIO/EmptyBlock.h"
#include "DataIO/Slice.h"
#include "DataIO/SliceTestHelpers.h"
#include "Platform/FixedSizeAllocator.h"

using namespace Vellum;
using namespace Vellum::DataIO;
using Vellum::DataIO::Testing::CountingBlockFactory;
using Vellum::DataIO::Testing::bytesOf;
using Vellum::DataIO::Testing::counting;

TEST(SliceTest, ReferencesFollowCopiesAssignmentsAndDestruction)
{
    CountingBlockFactory factory;
    {
        BlockHolder holder = factory.make(counting(16));
        Testing::CountingBlock * block = static_cast<Testing::CountingBlock *>(holder.block());
        Slice a(block, 2, 5);
        EXPECT_EQ(2, block->references());
        EXPECT_EQ(block->data() + 2, a.begin());
        EXPECT_EQ(block->data() + 7, a.end());
        EXPECT_EQ((std::vector<unsigned char>{2, 3, 4, 5, 6}), bytesOf(a));

        a.next(&a);
        Slice b(a);
        EXPECT_EQ(3, block->references());
        EXPECT_EQ(nullptr, b.next()); // links are never copied
        EXPECT_EQ(a.begin(), b.begin());

        Slice c;
        c.next(&a);
        c = b;
        EXPECT_EQ(4, block->references());
        EXPECT_EQ(&a, c.next()); // assignment keeps the own links
        c = c;                   // self-assignment keeps the one reference
        EXPECT_EQ(4, block->references());
        c = Slice();
        EXPECT_EQ(3, block->references());
    }
    EXPECT_EQ(0, factory.live);
}

TEST(SliceTest, CropMergeAndSplice)
{
    CountingBlockFactory factory;
    BlockHolder one = factory.make(counting(20));
    BlockHolder other = factory.make(counting(20));

    Slice a(one.block(), 0, 10);
    a.cropBegin(2);
    a.cropEnd(3);
    EXPECT_EQ(2u, a.offset());
    EXPECT_EQ((std::vector<unsigned char>{2, 3, 4, 5, 6}), bytesOf(a));

    // Another block, or a gap, or an overlap: nothing changes.
    EXPECT_FALSE(a.merge(Slice(other.block(), 7, 3)));
    EXPECT_FALSE(a.merge(Slice(one.block(), 8, 3)));
    EXPECT_FALSE(a.merge(Slice(one.block(), 6, 3)));
    EXPECT_EQ(5u, a.size());
    EXPECT_TRUE(a.merge(Slice(one.block(), 7, 3)));
    EXPECT_EQ((std::vector<unsigned char>{2, 3, 4, 5, 6, 7, 8, 9}), bytesOf(a));

    Templates::auto_ptr<Slice> tail = a.splice(a.begin() + 3);
    EXPECT_EQ((std::vector<unsigned char>{2, 3, 4}), bytesOf(a));
    EXPECT_EQ((std::vector<unsigned char>{5, 6, 7, 8, 9}), bytesOf(*tail));
    EXPECT_EQ(one.block(), tail->block());
    EXPECT_EQ(5u, tail->offset());
    // Cut at the end: the tail is empty.
    Templates::auto_ptr<Slice> none = a.splice(a.end());
    EXPECT_EQ(0u, none->size());
    EXPECT_EQ(3u, a.size());
}

TEST(SliceListTest, RingOperations)
{
    CountingBlockFactory factory;
    {
        BlockHolder block = factory.make(counting(30));
        SliceList list;
        EXPECT_TRUE(list.empty());
        EXPECT_EQ(0u, list.size());
        EXPECT_TRUE(list.begin() == list.end());

        list.push_back(new Slice(block.block(), 10, 5));
        list.push_front(new Slice(block.block(), 0, 5));
        SliceList::iterator second = list.begin();
        ++second;
        list.insert(second, new Slice(block.block(), 5, 5));
        EXPECT_EQ(3u, list.size());
        uint64 expected = 0;
        for (SliceList::const_iterator i = list.begin(); i != list.end(); ++i, expected += 5)
            EXPECT_EQ(expected, i->offset());

        SliceList other;
        other.push_back(new Slice(block.block(), 20, 5));
        other.push_back(new Slice(block.block(), 25, 5));
        list.move(list.end(), other);
        EXPECT_TRUE(other.empty());
        EXPECT_EQ(5u, list.size());
        SliceList::iterator last = list.end();
        --last;
        EXPECT_EQ(25u, last->offset());

        Slice * erased = list.erase(list.begin());
        EXPECT_EQ(0u, erased->offset());
        EXPECT_EQ(nullptr, erased->next());
        delete erased;
        EXPECT_EQ(nullptr, list.erase(list.end())); // the sentinel stays
        EXPECT_EQ(4u, list.size());
        EXPECT_EQ(5u, list.begin()->offset());
        list.clear();
        EXPECT_TRUE(list.empty());
        list.push_back(new Slice(block.block(), 0, 1));
        EXPECT_EQ(2, static_cast<Testing::CountingBlock *>(block.block())->references());
    }
    // The list deleted its last slice when it went.
    EXPECT_EQ(0, factory.live);
}
