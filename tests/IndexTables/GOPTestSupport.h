#pragma once
// Long-GOP index entries for the GOP tests: made up streams, segments over them, and the answers
// that a segment gives for each edit unit, so that one segment and its split halves can be
// compared.

#include <memory>
#include <vector>

#include "IndexTables/IndexTableSegmentWithGOPInfo.h"
#include "IndexTables/IndexTestSupport.h"

namespace IndexTest
{
// One index entry of a stream, in stored order.
struct StoredEntry
{
    int temporalOffset;
    int keyFrameOffset;
    unsigned flags;
};

// Entry flags as MPEG-2 writers set them.
unsigned const I_FIRST = 0xC0;
unsigned const I_OPEN = 0x40;
unsigned const P_FLAGS = 0x22;
unsigned const B_FLAGS = 0x33;

// An MPEG-2 style stream of `frames` pictures: an I picture every `gop` pictures, a P picture
// every `distance`, B pictures between. Pictures are stored anchor first, then the B pictures
// displayed before it. With `open`, the B pictures displayed in front of an I picture are stored
// behind it and refer to the GOP before; otherwise the picture in front of an I is a P picture.
inline std::vector<StoredEntry> mpegStream(int frames, int gop, int distance, bool open)
{
    std::vector<char> type(static_cast<std::size_t>(frames), 'B');
    for (int d = 0; d < frames; ++d)
    {
        if (d % gop == 0)
            type[d] = 'I';
        else if (d % distance == 0 || d == frames - 1 || (!open && (d + 1) % gop == 0))
            type[d] = 'P';
    }
    // Stored order: each anchor, then the B pictures displayed between the previous anchor and it.
    std::vector<int> displayOf;
    int previousAnchor = 0;
    displayOf.push_back(0);
    for (int d = 1; d < frames; ++d)
    {
        if (type[d] == 'B')
            continue;
        displayOf.push_back(d);
        for (int b = previousAnchor + 1; b < d; ++b)
            displayOf.push_back(b);
        previousAnchor = d;
    }
    std::vector<int> storedOf(static_cast<std::size_t>(frames));
    for (int s = 0; s < frames; ++s)
        storedOf[displayOf[s]] = s;

    std::vector<StoredEntry> entries(static_cast<std::size_t>(frames));
    int lastKey = -1;
    int keyBefore = -1;
    for (int s = 0; s < frames; ++s)
    {
        int d = displayOf[s];
        StoredEntry & e = entries[s];
        if (type[d] == 'I')
        {
            keyBefore = lastKey;
            lastKey = s;
            e.flags = s == 0 ? I_FIRST : (open ? I_OPEN : I_FIRST);
            e.keyFrameOffset = 0;
        }
        else
        {
            e.flags = type[d] == 'P' ? P_FLAGS : B_FLAGS;
            // A B picture displayed in front of the latest I refers to the GOP before it.
            bool reachesBack = type[d] == 'B' && d < displayOf[lastKey] && keyBefore >= 0;
            e.keyFrameOffset = -(s - (reachesBack ? keyBefore : lastKey));
        }
    }
    // Temporal offsets are indexed by display position.
    for (int d = 0; d < frames; ++d)
        entries[d].temporalOffset = storedOf[d] - d;
    return entries;
}

inline Bytes gopSegmentPacket(std::vector<StoredEntry> const & entries, int from, int to, long long start,
                              long long duration)
{
    Bytes list;
    for (int i = from; i < to; ++i)
        list = cat(list, indexEntryBytes(entries[i].temporalOffset, entries[i].keyFrameOffset, entries[i].flags,
                                         1000ull * i));
    Bytes v = cat(leadingItems(start, duration), cat(item(0x3F06, be(2, 4)), item(0x3F07, be(1, 4))));
    v = cat(v, item(0x3F0A, arrayBytes(static_cast<unsigned>(to - from), 11, list)));
    return packet(currentKey(), v);
}

// A segment over entries [from, to), starting at `from`.
inline std::unique_ptr<Vellum::IndexTables::IndexTableSegmentWithGOPInfo>
gopSegment(std::vector<StoredEntry> const & entries, int from, int to)
{
    return parse<Vellum::IndexTables::IndexTableSegmentWithGOPInfo>(gopSegmentPacket(entries, from, to, from, to - from));
}

// What a segment answers for one stored edit unit. GOP numbers count per segment; the difference
// between the display order GOP and the stored order GOP does not.
struct Answer
{
    int gopPosition;
    int displayPosition;
    int displayGopShift;
    int gopSize;
    bool closed;

    bool operator==(Answer const & o) const
    {
        return gopPosition == o.gopPosition && displayPosition == o.displayPosition &&
               (displayPosition < 0 || displayGopShift == o.displayGopShift) && gopSize == o.gopSize &&
               closed == o.closed;
    }
};

inline std::ostream & operator<<(std::ostream & out, Answer const & a)
{
    return out << "{position " << a.gopPosition << ", display " << a.displayPosition << " shift "
               << a.displayGopShift << ", size " << a.gopSize << (a.closed ? " closed" : " open") << "}";
}

inline std::vector<Answer> answers(Vellum::IndexTables::IndexTableSegmentWithGOPInfo const & segment)
{
    std::vector<Answer> out;
    for (unsigned i = 0; i < segment.indexEntryCount(); ++i)
    {
        Vellum::IndexTables::GOPInfo const & info = segment.gopInfo(i);
        Vellum::IndexTables::GOPStructuralInfo gop = segment.gopIndex2SizeMap().at(info.gopNumber);
        out.push_back(Answer{info.gopPosition, info.displayOrderGopPosition,
                             info.displayOrderGopNumber - info.gopNumber, gop.size, gop.closed});
    }
    return out;
}
} // namespace IndexTest
