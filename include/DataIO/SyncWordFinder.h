#pragma once
// Finds a masked 32-bit word (a start code) in the bytes of a SliceReader, across slice seams,
// without copying anything but the few bytes around a seam.

#include "DataIO/Chain.h"
#include "DataIO/SliceReader.h"

namespace Vellum
{
namespace DataIO
{
struct SyncResult
{
    VELLUM_CLASS_ALLOCATION
    SyncResult() : found(false), syncWord(0) {}

    bool found;
    // The four bytes at the hit, unmasked, loaded as a little-endian number.
    uint32 syncWord;
    // The bytes before the word, appended in order.
    Chain skipped;

private:
    SyncResult(SyncResult const &) = delete;
    SyncResult & operator=(SyncResult const &) = delete;
};

class SyncWordFinder
{
public:
    VELLUM_CLASS_ALLOCATION
    enum
    {
        SYNC_WORD_SIZE = 4,
        WINDOW_SIZE = 8
    };

    // A position matches when the four bytes there, loaded as a little-endian number and
    // masked, equal `syncWord`: bytes 00 00 01 are syncWord 0x00010000 with mask 0x00FFFFFF.
    SyncWordFinder(SliceReader & reader, unsigned int syncWord, unsigned int mask);

    // Looks for the word at most `limit` bytes ahead. On a hit the bytes before the word are
    // consumed and the word itself is left in the reader. Otherwise the first `limit` bytes
    // are consumed, or all bytes when the source ends before.
    bool find(uint64 limit);
    // The same, reporting the word and appending the consumed bytes to `result.skipped`.
    bool find(uint64 limit, SyncResult & result);

    // Tests the positions of the window [from, to) of at most WINDOW_SIZE bytes at which all
    // four bytes of a word lie within it. Gives the first hit, or `to`.
    unsigned char const * findWindow(unsigned char const * from, unsigned char const * to) const;

private:
    SyncWordFinder(SyncWordFinder const &) = delete;
    SyncWordFinder & operator=(SyncWordFinder const &) = delete;

    bool check(unsigned char const * at) const;
    // The first hit among the positions [from, last] of one contiguous piece; null for none.
    unsigned char const * scan(unsigned char const * from, unsigned char const * last) const;
    // Ends a search: the first `cut` bytes of `taken` go to `skipped`, the rest back to the reader.
    void split(Chain & taken, uint64 cut, Chain & skipped);
    bool search(uint64 limit, SyncResult & result, bool keepSkipped);

    SliceReader & reader_;
    // The bytes of positions not yet tested at a seam, joined with the start of the next piece.
    unsigned char carry_[WINDOW_SIZE];
    unsigned int mask_;
    unsigned int syncWord_;
};
} // namespace DataIO
} // namespace Vellum
