#include "DataIO/BufferAlignDataSource.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "DataIO/File/FileDataSource.h"
#include "Support/ScratchDirectory.h"
#include "DataIO/Memory/MemoryDataSource.h"
#include "Exceptions/Exceptions.h"
#include "Utils/Text.h"

using namespace Vellum;
using DataIO::BufferAlignDataSource;
using DataIO::Memory::MemoryDataSource;
using TestSupport::patternBytes;

namespace
{
uint64 const ALL = ~uint64(0);

// A source over bytes in memory that logs every call and, when asked, reports each read or seek
// that does not start at a multiple of the alignment, and each read whose length is not a
// multiple of it unless it runs to the end.
class CheckingSource : public DataIO::RandomAccessDataSource
{
public:
    struct Read
    {
        uint64 offset;
        uint64 size;
        unsigned char const * into;
    };

    CheckingSource(std::vector<unsigned char> const & bytes, unsigned align, bool checkAlignment)
        : bytes_(bytes), align_(align), check_(checkAlignment)
    {
    }

    uint64 absoluteOffset() const override { return position_; }
    bool endOfStream() const override { return remaining() == 0; }
    uint64 read(unsigned char * buffer, uint64 size) override
    {
        reads.push_back(Read{position_, size, buffer});
        if (check_ && position_ % align_ != 0)
            note("read at " + std::to_string(position_));
        if (check_ && size % align_ != 0 && position_ + size < bytes_.size())
            note("read of " + std::to_string(size) + " at " + std::to_string(position_));
        uint64 left = position_ < bytes_.size() ? bytes_.size() - position_ : 0;
        uint64 n = std::min(size, left);
        if (n != 0)
            std::memcpy(buffer, bytes_.data() + position_, size_t(n));
        position_ += n;
        return n;
    }
    uint64 skip(uint64) override
    {
        note("skip called");
        return 0;
    }
    // A source may claim more than it holds, as a file does that was cut short by someone else.
    uint64 remaining() const override
    {
        uint64 left = position_ < bytes_.size() ? bytes_.size() - position_ : 0;
        return left + claimedBeyondEnd;
    }
    void discard() override { note("discard called"); }
    uint64 seek(uint64 position) override
    {
        seeks.push_back(position);
        if (check_ && position % align_ != 0)
            note("seek to " + std::to_string(position));
        position_ = std::min<uint64>(position, bytes_.size() + claimedBeyondEnd);
        return position_;
    }

    std::string problems() const { return problems_.str(); }
    size_t calls() const { return reads.size() + seeks.size(); }

    std::vector<Read> reads;
    std::vector<uint64> seeks;
    uint64 claimedBeyondEnd = 0;

private:
    void note(std::string const & what)
    {
        if (++problemCount_ <= 5)
            problems_ << what << "; ";
    }

    std::vector<unsigned char> bytes_;
    unsigned align_;
    bool check_;
    uint64 position_ = 0;
    unsigned problemCount_ = 0;
    std::ostringstream problems_;
};

std::string constructionFailure(unsigned alignment, unsigned bufferSize)
{
    std::vector<unsigned char> bytes(16);
    MemoryDataSource below(bytes.data(), bytes.size());
    try
    {
        BufferAlignDataSource source(below, alignment, bufferSize);
    }
    catch (Exceptions::InvalidValue const & e)
    {
        return std::string(Utils::narrow(e.message()).c_str());
    }
    return "";
}

// Runs one random sequence of reads, skips, seeks and discards on a BufferAlignDataSource and on
// a plain memory source over the same bytes, comparing every answer.
void compareRandomRun(unsigned align, unsigned bufferSize, size_t dataSize, std::mt19937 & random)
{
    std::ostringstream where;
    where << "align " << align << ", buffer " << bufferSize << ", data " << dataSize;
    SCOPED_TRACE(where.str());

    std::vector<unsigned char> bytes = patternBytes(dataSize, unsigned(dataSize));
    bool aligned = bufferSize % align == 0;
    CheckingSource below(bytes, align, aligned);
    BufferAlignDataSource source(below, align, bufferSize);
    MemoryDataSource plain(bytes.data(), bytes.size());

    uint64 span = dataSize + 2 * align + 2;
    uint64 large = 4 * uint64(bufferSize) + 3 * align + 5;
    auto pick = [&](uint64 limit) { return std::uniform_int_distribution<uint64>(0, limit)(random); };
    auto length = [&]() -> uint64 {
        switch (pick(6))
        {
        case 0:
            return 0;
        case 5:
        {
            // Up to an aligned offset, where buffers begin and end.
            uint64 here = plain.absoluteOffset();
            return (align - here % align) % align + align * pick(bufferSize / align + 1);
        }
        case 1:
            return 1 + pick(align);
        case 2:
            return pick(bufferSize + 1);
        case 3:
            return bufferSize + pick(align + 1);
        default:
            return pick(large);
        }
    };

    std::vector<unsigned char> expected(size_t(large + 8)), got(size_t(large + 8));
    for (int step = 0; step < 250; ++step)
    {
        std::string op;
        switch (pick(9))
        {
        case 0:
        case 1:
        case 2:
        case 3:
        {
            uint64 n = length();
            op = "read " + std::to_string(n);
            std::fill(got.begin(), got.end(), 0xA5);
            std::fill(expected.begin(), expected.end(), 0xA5);
            uint64 r = source.read(got.data(), n);
            ASSERT_EQ(plain.read(expected.data(), n), r) << op << " at step " << step;
            ASSERT_TRUE(std::equal(expected.begin(), expected.end(), got.begin())) << op << " at step " << step;
            break;
        }
        case 4:
        {
            uint64 n = pick(7) == 0 ? ALL : length();
            op = "skip " + std::to_string(n);
            ASSERT_EQ(plain.skip(n), source.skip(n)) << op << " at step " << step;
            break;
        }
        case 5:
        case 6:
        case 7:
        {
            uint64 here = plain.absoluteOffset();
            uint64 target = 0;
            switch (pick(5))
            {
            case 0: // near where we are, either side
                target = here + pick(2 * align + 2);
                target = target > align + 1 ? target - align - 1 : 0;
                break;
            case 1: // an aligned offset
                target = (pick(span) / align) * align;
                break;
            case 2:
                target = pick(7) == 0 ? ALL : dataSize + pick(align);
                break;
            default:
                target = pick(span);
                break;
            }
            op = "seek " + std::to_string(target);
            ASSERT_EQ(plain.seek(target), source.seek(target)) << op << " at step " << step;
            break;
        }
        default:
            op = "discard";
            plain.discard();
            source.discard();
            break;
        }
        ASSERT_EQ(plain.absoluteOffset(), source.absoluteOffset()) << "after " << op << " at step " << step;
        ASSERT_EQ(plain.remaining(), source.remaining()) << "after " << op << " at step " << step;
        ASSERT_EQ(plain.endOfStream(), source.endOfStream()) << "after " << op << " at step " << step;
    }
    EXPECT_EQ("", below.problems());
}
} // namespace

TEST(BufferAlignDataSourceTest, ConstructorChecksInOrder)
{
    EXPECT_EQ("align_ > 0: Alignment must be higher than zero", constructionFailure(0, 0));
    EXPECT_EQ("align_ > 0: Alignment must be higher than zero", constructionFailure(0, 4096));
    EXPECT_EQ("align_ == 1: Alignment must be one if no buffer.", constructionFailure(2, 0));
    EXPECT_EQ("align_ - 1 <= bufferSize: Alignment size must be smaller than buffer size.",
              constructionFailure(8, 6));
    EXPECT_EQ("align_ - 1 <= bufferSize: Alignment size must be smaller than buffer size.",
              constructionFailure(4096, 512));
    // Accepted: one more than the buffer, equal, and no multiple.
    EXPECT_EQ("", constructionFailure(1, 0));
    EXPECT_EQ("", constructionFailure(7, 6));
    EXPECT_EQ("", constructionFailure(8, 8));
    EXPECT_EQ("", constructionFailure(4, 10));

    std::vector<unsigned char> bytes(4);
    MemoryDataSource below(bytes.data(), bytes.size());
    try
    {
        BufferAlignDataSource source(below, 0, 16);
        FAIL() << "took an alignment of zero";
    }
    catch (Exceptions::BaseException const & e)
    {
        EXPECT_EQ(16, e.errorCode());
        EXPECT_NE(std::string::npos, e.whatUtf8().find("DataIO/BufferAlignDataSource.cpp:")) << e.whatUtf8();
    }
}

TEST(BufferAlignDataSourceTest, LargeReadsGoStraightToTheCaller)
{
    std::vector<unsigned char> bytes = patternBytes(40);
    CheckingSource below(bytes, 4, true);
    BufferAlignDataSource source(below, 4, 8);

    std::vector<unsigned char> got(200, 0);
    ASSERT_EQ(30u, source.read(got.data(), 30));
    ASSERT_EQ(2u, below.reads.size());
    // Whole alignments straight into the caller's buffer, the rest through the internal one.
    EXPECT_EQ(0u, below.reads[0].offset);
    EXPECT_EQ(28u, below.reads[0].size);
    EXPECT_EQ(got.data(), below.reads[0].into);
    EXPECT_EQ(28u, below.reads[1].offset);
    EXPECT_EQ(8u, below.reads[1].size);

    // The buffer's six bytes first, then straight again up to the end.
    ASSERT_EQ(10u, source.read(got.data() + 30, 100));
    ASSERT_EQ(3u, below.reads.size());
    EXPECT_EQ(36u, below.reads[2].offset);
    EXPECT_EQ(92u, below.reads[2].size);
    EXPECT_EQ(got.data() + 36, below.reads[2].into);
    EXPECT_TRUE(std::equal(bytes.begin(), bytes.end(), got.begin()));
    EXPECT_TRUE(source.endOfStream());

    // A read exactly the buffer's size goes through the buffer.
    source.seek(0);
    ASSERT_EQ(8u, source.read(got.data(), 8));
    EXPECT_NE(got.data(), below.reads.back().into);
    EXPECT_EQ("", below.problems());
}

TEST(BufferAlignDataSourceTest, SourceClaimingMoreThanItHoldsDoesNotHang)
{
    std::vector<unsigned char> bytes = patternBytes(20);
    CheckingSource below(bytes, 4, false);
    below.claimedBeyondEnd = 100;
    BufferAlignDataSource source(below, 4, 8);

    std::vector<unsigned char> got(1000);
    EXPECT_EQ(20u, source.read(got.data(), 1000));
    EXPECT_TRUE(std::equal(bytes.begin(), bytes.end(), got.begin()));
    EXPECT_EQ(0u, source.read(got.data(), 4));
    EXPECT_EQ(0u, source.read(got.data(), 1000));
}

TEST(BufferAlignDataSourceTest, MatchesAPlainSourceForRandomOperations)
{
    std::mt19937 random(20240611u);
    struct Layout
    {
        unsigned align;
        unsigned bufferSize;
    };
    std::vector<Layout> layouts = {{1, 0}, {1, 1}, {1, 7}};
    for (unsigned align : {2u, 3u, 4u, 7u, 8u, 16u, 64u, 512u})
    {
        for (unsigned factor : {1u, 2u, 3u, 5u})
            layouts.push_back({align, align * factor});
        // Sizes that are no multiple of the alignment still deliver the right bytes.
        layouts.push_back({align, align + align / 2 + 1});
    }
    for (Layout const & layout : layouts)
    {
        unsigned a = layout.align;
        unsigned s = layout.bufferSize;
        for (size_t dataSize : {size_t(0), size_t(1), size_t(a - 1), size_t(a), size_t(s), size_t(s + 1),
                                size_t(3 * s + a / 2 + 1), size_t(7 * s + 3 * a)})
        {
            compareRandomRun(a, s, dataSize, random);
            if (::testing::Test::HasFatalFailure())
                return;
        }
    }
}
