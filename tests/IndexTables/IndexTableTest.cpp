#include <gtest/gtest.h>

#include <map>
#include <random>

#include "IndexTables/IndexTable.h"
#include "IndexTables/IndexTestSupport.h"

using namespace Vellum;
using namespace Vellum::IndexTables;
using namespace IndexTest;

namespace
{
Templates::auto_ptr<IndexTableSegment> segment(int64 start, int64 duration, unsigned bodySID = 1, int indexSID = 5)
{
    Templates::auto_ptr<IndexTableSegment> s(new IndexTableSegment);
    s->indexStartPosition(start);
    s->indexDuration(duration);
    s->bodySID(bodySID);
    if (indexSID >= 0)
        s->indexSID(static_cast<unsigned>(indexSID));
    return s;
}

int64 startOf(IndexTableSegment const * s) { return s == nullptr ? -999 : s->indexStartPosition().value(); }

// The rule as it reads: the last segment at or before the edit unit, then backward to the second
// segment for one that covers it or is open, then the first.
int64 referenceFind(std::map<int64, int64> const & table, int64 e)
{
    auto it = table.upper_bound(e);
    if (it == table.begin())
        return -999;
    --it;
    for (; it != table.begin(); --it)
    {
        int64 s = it->first, d = it->second;
        if (e >= s && (e < s + d || d == 0))
            return s;
        if (e < s && d == 0)
            return s;
    }
    int64 s = table.begin()->first, d = table.begin()->second;
    if (e >= s && e < s + d)
        return s;
    return d != 0 ? -999 : s;
}
} // namespace

TEST(IndexTable, AddChecksTheStreamIdentifiers)
{
    IndexTable table(5, 1);
    EXPECT_EQ(5u, table.indexSID());
    EXPECT_EQ(1u, table.bodySID());
    EXPECT_EQ(0u, table.size());
    EXPECT_EQ(nullptr, table.find(0));

    Thrown t = thrownBy([&] { table.add(segment(0, 10, 2), true); });
    EXPECT_EQ(Exceptions::InvalidID::ERROR_CODE, t.code);
    EXPECT_EQ("Trying to load a IndexTable segment into a IndexTable with different bodySIDs", t.message);
    t = thrownBy([&] { table.add(segment(0, 10, 1, 6), true); });
    EXPECT_EQ(Exceptions::InvalidID::ERROR_CODE, t.code);
    EXPECT_EQ("Trying to load a IndexTable segment into a IndexTable with different indexSIDs", t.message);
    EXPECT_EQ(0u, table.size());

    // A segment without IndexSID is welcome.
    table.add(segment(0, 10, 1, -1), false);
    EXPECT_EQ(1u, table.size());
}

TEST(IndexTable, FindsBySpanAndOpenSegments)
{
    IndexTable table(5, 1);
    table.add(segment(20, 0), false); // still open
    table.add(segment(0, 10), false);
    table.add(segment(10, 10), false);
    EXPECT_EQ(3u, table.size());
    std::vector<int64> order;
    for (IndexTable::SegmentIterator it = table.segmentIteratorBegin(); it != table.segmentIteratorEnd(); ++it)
        order.push_back(it->first);
    EXPECT_EQ(std::vector<int64>({0, 10, 20}), order);

    EXPECT_EQ(-999, startOf(table.find(-1)));
    EXPECT_EQ(0, startOf(table.find(0)));
    EXPECT_EQ(0, startOf(table.find(9)));
    EXPECT_EQ(10, startOf(table.find(10)));
    EXPECT_EQ(10, startOf(table.find(19)));
    // An open segment answers for everything at or behind its start.
    EXPECT_EQ(20, startOf(table.find(20)));
    EXPECT_EQ(20, startOf(table.find(1000000)));

    // Closed segments only: a gap and the end answer null.
    IndexTable closed(5, 1);
    closed.add(segment(0, 10), false);
    closed.add(segment(15, 5), false);
    EXPECT_EQ(-999, startOf(closed.find(12)));
    EXPECT_EQ(15, startOf(closed.find(19)));
    EXPECT_EQ(-999, startOf(closed.find(20)));

    // An open segment in front of closed ones also answers for what lies behind them.
    IndexTable front(5, 1);
    front.add(segment(0, 0), false);
    front.add(segment(10, 10), false);
    EXPECT_EQ(0, startOf(front.find(5)));
    EXPECT_EQ(10, startOf(front.find(15)));
    EXPECT_EQ(0, startOf(front.find(25)));

    // A long segment that covers later ones.
    IndexTable overlapping(5, 1);
    overlapping.add(segment(0, 100), false);
    overlapping.add(segment(10, 10), false);
    EXPECT_EQ(10, startOf(overlapping.find(15)));
    EXPECT_EQ(0, startOf(overlapping.find(50)));
    EXPECT_EQ(-999, startOf(overlapping.find(100)));
}

TEST(IndexTable, ReplacingOrKeepingASegmentAtTheSameStart)
{
    IndexTable table(5, 1);
    table.add(segment(0, 0), false);
    IndexTableSegment * first = table.segmentIteratorBegin()->second.get();

    // Without replacing, the segment held stays.
    table.add(segment(0, 10), false);
    EXPECT_EQ(1u, table.size());
    EXPECT_EQ(first, table.find(50));

    // Replacing: the completed segment takes the place of the open one.
    Templates::auto_ptr<IndexTableSegment> complete = segment(0, 10);
    IndexTableSegment * completed = complete.get();
    table.add(std::move(complete), true);
    EXPECT_EQ(1u, table.size());
    EXPECT_EQ(completed, table.find(5));
    EXPECT_EQ(nullptr, table.find(50));

    table.add(segment(10, 0), true);
    EXPECT_EQ(10, startOf(table.find(50)));
    table.add(segment(10, 10), true);
    EXPECT_EQ(nullptr, table.find(50));
    EXPECT_EQ(10, startOf(table.find(19)));
}

TEST(IndexTable, AgreesWithTheRuleOnRandomTables)
{
    std::mt19937 random(7);
    for (int round = 0; round < 300; ++round)
    {
        IndexTable table(5, 1);
        std::map<int64, int64> reference;
        int count = 1 + static_cast<int>(random() % 8);
        bool overlaps = round % 3 == 0;
        int64 start = static_cast<int64>(random() % 5);
        for (int i = 0; i < count; ++i)
        {
            int64 duration = random() % 4 == 0 ? 0 : 1 + static_cast<int64>(random() % 6);
            if (overlaps && random() % 3 == 0)
                duration += 10;
            bool replace = random() % 2 == 0;
            // Now and then a second segment at a start already taken.
            int64 at = i > 0 && random() % 5 == 0 ? reference.begin()->first : start;
            table.add(segment(at, duration), replace);
            if (replace || reference.find(at) == reference.end())
                reference[at] = duration;
            start += 1 + static_cast<int64>(random() % 6);
        }
        ASSERT_EQ(reference.size(), table.size());
        for (int64 e = -2; e < start + 20; ++e)
            ASSERT_EQ(referenceFind(reference, e), startOf(table.find(e))) << "round " << round << " unit " << e;
    }
}
