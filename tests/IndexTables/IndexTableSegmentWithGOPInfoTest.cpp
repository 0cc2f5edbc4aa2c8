#include <gtest/gtest.h>

#include "IndexTables/GOPTestSupport.h"
#include "IndexTables/IndexTableSegmentWithGOPInfo.h"

using namespace Vellum;
using namespace Vellum::IndexTables;
using namespace IndexTest;

namespace
{
// A segment over the given entries.
std::unique_ptr<IndexTableSegmentWithGOPInfo> segmentOf(std::vector<StoredEntry> const & entries, long long start = 0)
{
    return parse<IndexTableSegmentWithGOPInfo>(
        gopSegmentPacket(entries, 0, static_cast<int>(entries.size()), start, static_cast<long long>(entries.size())));
}

std::vector<int> sizes(IndexTableSegmentWithGOPInfo const & segment)
{
    std::vector<int> out;
    for (auto const & gop : segment.gopIndex2SizeMap())
        out.push_back(gop.second.size);
    return out;
}
} // namespace

TEST(IndexTableSegmentWithGOPInfo, GopsInStoredOrder)
{
    // I B B P B B I, as stored.
    std::vector<StoredEntry> entries = {{0, 0, I_FIRST}, {0, -1, B_FLAGS}, {0, -2, B_FLAGS}, {0, -3, P_FLAGS},
                                      {0, -4, B_FLAGS}, {0, -5, B_FLAGS}, {0, 0, I_FIRST}};
    std::unique_ptr<IndexTableSegmentWithGOPInfo> segment = segmentOf(entries);
    EXPECT_EQ(0, segment->firstKeyFramePosition());
    ASSERT_EQ(2u, segment->gopIndex2SizeMap().size());
    EXPECT_EQ(6, segment->gopIndex2SizeMap().at(0).size);
    EXPECT_TRUE(segment->gopIndex2SizeMap().at(0).closed);
    EXPECT_EQ(1, segment->gopIndex2SizeMap().at(1).size);
    for (unsigned i = 0; i < 6; ++i)
    {
        EXPECT_EQ(0, segment->gopInfo(i).gopNumber);
        EXPECT_EQ(static_cast<int>(i), segment->gopInfo(i).gopPosition);
        // With temporal offsets of 0 the display order is the stored order.
        EXPECT_EQ(static_cast<int>(i), segment->gopInfo(i).displayOrderGopPosition);
    }
    EXPECT_EQ(1, segment->gopInfo(6).gopNumber);
    EXPECT_EQ(0, segment->gopInfo(6).gopPosition);

    Thrown t = thrownBy([&] { segment->gopInfo(7); });
    EXPECT_EQ(Exceptions::IndexOutOfBounds::ERROR_CODE, t.code);
    EXPECT_EQ("index < gopInfoVector_.size (): The IndexTableSegment is smaller than the given index.", t.message);

    // Pictures in front of the first key frame form GOP 0 and have no position.
    std::vector<StoredEntry> late = {{0, -7, B_FLAGS}, {0, -8, B_FLAGS}, {0, 0, I_OPEN}, {0, -1, P_FLAGS}};
    segment = segmentOf(late);
    EXPECT_EQ(2, segment->firstKeyFramePosition());
    EXPECT_EQ(std::vector<int>({2, 2}), sizes(*segment));
    EXPECT_EQ(-1, segment->gopInfo(0).gopPosition);
    EXPECT_EQ(0, segment->gopInfo(1).gopNumber);
    EXPECT_EQ(1, segment->gopInfo(2).gopNumber);
    EXPECT_EQ(1, segment->gopInfo(3).gopPosition);
}

TEST(IndexTableSegmentWithGOPInfo, WithoutKeyFramesAndWithoutEntries)
{
    std::vector<StoredEntry> entries = {{0, -3, P_FLAGS}, {0, -4, B_FLAGS}, {0, -5, B_FLAGS}};
    std::unique_ptr<IndexTableSegmentWithGOPInfo> segment = segmentOf(entries);
    EXPECT_EQ(-1, segment->firstKeyFramePosition());
    EXPECT_EQ(std::vector<int>({3}), sizes(*segment));
    for (unsigned i = 0; i < 3; ++i)
    {
        EXPECT_EQ(-1, segment->gopInfo(i).gopPosition);
        EXPECT_EQ(-1, segment->gopInfo(i).displayOrderGopPosition);
        EXPECT_EQ(0, segment->gopInfo(i).gopNumber);
    }

    // A constant bit rate segment has no entries and so no GOPs; joining does nothing.
    Bytes cbr = cat(leadingItems(0, 0), cat(item(0x3F05, be(100, 4)), item(0x3F07, be(1, 4))));
    segment = parse<IndexTableSegmentWithGOPInfo>(packet(currentKey(), cbr));
    EXPECT_TRUE(segment->gopIndex2SizeMap().empty());
    EXPECT_EQ(-1, segment->firstKeyFramePosition());
    segment->updateMissingInfo(segment.get(), segment.get());
    EXPECT_EQ(Exceptions::IndexOutOfBounds::ERROR_CODE, thrownBy([&] { segment->gopInfo(0); }).code);
}

TEST(IndexTableSegmentWithGOPInfo, SplitSegmentsAnswerAsOne)
{
    for (bool open : {false, true})
    {
        std::vector<StoredEntry> entries = mpegStream(40, 12, 3, open);
        std::unique_ptr<IndexTableSegmentWithGOPInfo> whole = segmentOf(entries);
        std::vector<Answer> expected = answers(*whole);
        for (int k = 1; k < 40; ++k)
        {
            std::unique_ptr<IndexTableSegmentWithGOPInfo> a = gopSegment(entries, 0, k);
            std::unique_ptr<IndexTableSegmentWithGOPInfo> b = gopSegment(entries, k, 40);
            a->updateMissingInfo(nullptr, b.get());
            b->updateMissingInfo(a.get(), nullptr);
            std::vector<Answer> got = answers(*a);
            std::vector<Answer> second = answers(*b);
            got.insert(got.end(), second.begin(), second.end());
            ASSERT_EQ(expected.size(), got.size());
            for (std::size_t i = 0; i < got.size(); ++i)
                EXPECT_EQ(expected[i], got[i]) << (open ? "open" : "closed") << " split at " << k << ", unit " << i;
        }
    }
}

TEST(IndexTableSegmentWithGOPInfo, ThreeSegmentsJoinedInOrder)
{
    std::vector<StoredEntry> entries = mpegStream(40, 12, 3, true);
    std::vector<Answer> expected = answers(*segmentOf(entries));
    // The middle segment, 13 to 21, has no key frame at all.
    std::unique_ptr<IndexTableSegmentWithGOPInfo> a = gopSegment(entries, 0, 13);
    std::unique_ptr<IndexTableSegmentWithGOPInfo> b = gopSegment(entries, 13, 22);
    std::unique_ptr<IndexTableSegmentWithGOPInfo> c = gopSegment(entries, 22, 40);
    EXPECT_EQ(-1, b->firstKeyFramePosition());

    // Behind a segment that has not learnt its positions, joining is not supported.
    Thrown t = thrownBy([&] { c->updateMissingInfo(b.get(), nullptr); });
    EXPECT_EQ(Exceptions::NotImplemented::ERROR_CODE, t.code);
    EXPECT_EQ("lastInfoFromPrevious.gopPosition >= 0: Not supported: IndexTableSegment duration is smaller than GOP "
              "length.",
              t.message);

    a->updateMissingInfo(nullptr, b.get());
    b->updateMissingInfo(a.get(), c.get());
    c->updateMissingInfo(b.get(), nullptr);
    std::vector<Answer> got = answers(*a);
    for (auto const * s : {b.get(), c.get()})
    {
        std::vector<Answer> more = answers(*s);
        got.insert(got.end(), more.begin(), more.end());
    }
    ASSERT_EQ(expected.size(), got.size());
    for (std::size_t i = 0; i < got.size(); ++i)
        EXPECT_EQ(expected[i], got[i]) << "unit " << i;
    EXPECT_EQ(12, b->gopIndex2SizeMap().at(0).size);
}

TEST(IndexTableSegmentWithGOPInfo, JoinChecks)
{
    std::vector<StoredEntry> entries = mpegStream(24, 12, 3, false);
    std::unique_ptr<IndexTableSegmentWithGOPInfo> a = gopSegment(entries, 0, 12);
    std::unique_ptr<IndexTableSegmentWithGOPInfo> c = gopSegment(entries, 13, 24);
    Thrown t = thrownBy([&] { c->updateMissingInfo(a.get(), nullptr); });
    EXPECT_EQ(Exceptions::InvalidIndexSegment::ERROR_CODE, t.code);
    EXPECT_EQ("previous -> indexStartPosition ().value () + previous -> indexDuration ().value () == "
              "this -> indexStartPosition ().value (): Trying to update non-consecutive "
              "IndexTableSegmentWithGOPInfo's.",
              t.message);
    t = thrownBy([&] { a->updateMissingInfo(nullptr, c.get()); });
    EXPECT_EQ(Exceptions::InvalidIndexSegment::ERROR_CODE, t.code);
    EXPECT_EQ("this -> indexStartPosition ().value () + this -> indexDuration ().value () == "
              "next -> indexStartPosition ().value (): Trying to update non-consecutive "
              "IndexTableSegmentWithGOPInfo's.",
              t.message);

    // A neighbour whose entries fall short of its duration is passed over, adjoining or not.
    std::unique_ptr<IndexTableSegmentWithGOPInfo> partial =
        parse<IndexTableSegmentWithGOPInfo>(gopSegmentPacket(entries, 13, 20, 13, 11));
    a->updateMissingInfo(nullptr, partial.get());
    EXPECT_EQ(12, a->gopIndex2SizeMap().at(0).size);

    // updateMissingIndex for a unit past the records.
    t = thrownBy([&] { a->updateMissingIndex(12, nullptr); });
    EXPECT_EQ(Exceptions::IndexOutOfBounds::ERROR_CODE, t.code);
}
