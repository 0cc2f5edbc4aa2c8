#include "DataIO/SyncWordFinder.h"

#include <cstring>

namespace Vellum
{
namespace DataIO
{
namespace
{
// The size of the pieces taken from the reader.
uint64 const PIECE_SIZE = 0x10000;

inline uint32 load(unsigned char const * at)
{
    return uint32(at[0]) | (uint32(at[1]) << 8) | (uint32(at[2]) << 16) | (uint32(at[3]) << 24);
}
} // namespace

SyncWordFinder::SyncWordFinder(SliceReader & reader, unsigned int syncWord, unsigned int mask)
    : reader_(reader), mask_(mask), syncWord_(syncWord)
{
    std::memset(carry_, 0, sizeof carry_);
}

bool SyncWordFinder::check(unsigned char const * at) const
{
    return (load(at) & mask_) == syncWord_;
}

unsigned char const * SyncWordFinder::findWindow(unsigned char const * from, unsigned char const * to) const
{
    if (to - from < SYNC_WORD_SIZE)
        return to;
    unsigned length = to - from < WINDOW_SIZE ? unsigned(to - from) : unsigned(WINDOW_SIZE);
    uint64 window = 0;
    for (unsigned i = 0; i < length; ++i)
        window |= uint64(from[i]) << (8 * i);
    unsigned positions = length - (SYNC_WORD_SIZE - 1);
    uint64 const mask = mask_;
    uint64 const word = syncWord_;
    // At most five positions; each one shifts the window by a byte.
    switch (positions)
    {
    case 5:
        if ((window & mask) == word)
            return from;
        window >>= 8;
        ++from;
        [[fallthrough]];
    case 4:
        if ((window & mask) == word)
            return from;
        window >>= 8;
        ++from;
        [[fallthrough]];
    case 3:
        if ((window & mask) == word)
            return from;
        window >>= 8;
        ++from;
        [[fallthrough]];
    case 2:
        if ((window & mask) == word)
            return from;
        window >>= 8;
        ++from;
        [[fallthrough]];
    default:
        if ((window & mask) == word)
            return from;
    }
    return to;
}

unsigned char const * SyncWordFinder::scan(unsigned char const * from, unsigned char const * last) const
{
    if ((mask_ & 0xFFu) == 0xFFu)
    {
        // The first byte of the word is fixed: let memchr run to each candidate.
        int const first = int(syncWord_ & 0xFFu);
        while (from <= last)
        {
            void const * hit = std::memchr(from, first, size_t(last - from) + 1);
            if (hit == nullptr)
                return nullptr;
            from = static_cast<unsigned char const *>(hit);
            if (check(from))
                return from;
            ++from;
        }
        return nullptr;
    }
    // Windows overlap by three bytes, so that every position is tested once.
    unsigned char const * stop = last + SYNC_WORD_SIZE;
    for (;;)
    {
        unsigned char const * to = stop - from > WINDOW_SIZE ? from + WINDOW_SIZE : stop;
        unsigned char const * hit = findWindow(from, to);
        if (hit != to)
            return hit;
        if (to == stop)
            return nullptr;
        from = to - (SYNC_WORD_SIZE - 1);
    }
}

void SyncWordFinder::split(Chain & taken, uint64 cut, Chain & skipped)
{
    taken.chopBegin(cut, skipped);
    reader_.unget(taken);
}

bool SyncWordFinder::find(uint64 limit)
{
    SyncResult result;
    return search(limit, result, false);
}

bool SyncWordFinder::find(uint64 limit, SyncResult & result)
{
    return search(limit, result, true);
}

bool SyncWordFinder::search(uint64 limit, SyncResult & result, bool keepSkipped)
{
    result.found = false;
    if (reader_.endOfStream())
        return false;

    // Positions are counted from where the search starts. Bytes taken from the reader wait in
    // `taken` until they are known to lie before the word (then they go to `skipped`) or the
    // search ends (then the rest goes back to the reader).
    Chain taken;
    uint64 flushed = 0; // bytes moved from `taken` to `skipped`
    uint64 total = 0;   // bytes taken, flushed ones included
    uint64 next = 0;    // the next position to test; bytes [next, total) are in carry_
    Chain & skipped = result.skipped;
    try
    {
        for (;;)
        {
            if (next > limit)
            {
                split(taken, limit - flushed, skipped);
                return false;
            }
            if (reader_.endOfStream())
            {
                // At the end everything up to the limit is consumed.
                split(taken, (total < limit ? total : limit) - flushed, skipped);
                return false;
            }
            Templates::auto_ptr<Slice> piece = reader_.nextSlice(PIECE_SIZE);
            if (piece->size() == 0)
            {
                // A source that merely has nothing yet: the untested bytes stay for a later search.
                split(taken, next - flushed, skipped);
                return false;
            }
            unsigned char const * bytes = piece->begin();
            uint64 const start = total;
            uint64 const size = piece->size();
            taken.push_back(std::move(piece));
            total += size;

            // Positions that begin before this piece, tested in a window joined across the seam.
            uint64 carried = start - next;
            if (carried != 0)
            {
                uint64 joined = size < WINDOW_SIZE - carried ? size : WINDOW_SIZE - carried;
                std::memcpy(carry_ + carried, bytes, size_t(joined));
                uint64 length = carried + joined;
                uint64 i = 0;
                for (; i < carried && i + SYNC_WORD_SIZE <= length && next <= limit; ++i, ++next)
                {
                    if (check(carry_ + i))
                    {
                        result.found = true;
                        result.syncWord = load(carry_ + i);
                        split(taken, next - flushed, skipped);
                        return true;
                    }
                }
                if (next > limit)
                    continue;
                if (next < start)
                {
                    // This piece is too short to complete the window: carry on with it.
                    std::memmove(carry_, carry_ + i, size_t(length - i));
                    continue;
                }
            }

            // Positions within this piece.
            if (total - next >= SYNC_WORD_SIZE)
            {
                uint64 last = total - SYNC_WORD_SIZE;
                if (last > limit)
                    last = limit;
                unsigned char const * hit = scan(bytes + (next - start), bytes + (last - start));
                if (hit != nullptr)
                {
                    uint64 at = start + uint64(hit - bytes);
                    result.found = true;
                    result.syncWord = load(hit);
                    split(taken, at - flushed, skipped);
                    return true;
                }
                next = last + 1;
                if (next > limit)
                    continue;
            }

            // The last bytes may begin a word that ends in the next piece.
            std::memcpy(carry_, bytes + (next - start), size_t(total - next));

            // What lies before the next position is settled: hand it on.
            taken.chopBegin(next - flushed, skipped);
            flushed = next;
            if (!keepSkipped)
                skipped.clear();
        }
    }
    catch (...)
    {
        reader_.unget(taken);
        throw;
    }
}
} // namespace DataIO
} // namespace Vellum
