#include "IndexPrint.h"

#include <cinttypes>
#include <cstdio>
#include <string>

namespace VellumTool
{
namespace
{
char const * const INDENT = "            ";

// The named flag bits, and the others as a number.
std::string flagWords(Vellum::IndexTables::IndexEntry const & entry)
{
    std::string words;
    auto add = [&](char const * word) {
        if (!words.empty())
            words += ", ";
        words += word;
    };
    if (entry.randomAccess())
        add("random access");
    if (entry.sequenceHeader())
        add("sequence header");
    if (entry.forwardPrediction())
        add("forward prediction");
    if (entry.backwardPrediction())
        add("backward prediction");
    unsigned other = entry.flags() & 0x0F;
    if (other != 0)
    {
        char text[16];
        std::snprintf(text, sizeof text, "other 0x%02x", other);
        add(text);
    }
    return words.empty() ? "none" : words;
}

std::string optional(Vellum::Types::UInt32 const * value)
{
    return value == nullptr ? "absent" : std::to_string(value->value());
}

std::string optional(Vellum::Types::UInt8 const * value)
{
    return value == nullptr ? "absent" : std::to_string(unsigned(value->value()));
}
} // namespace

void printIndexSegment(Vellum::IndexTables::IndexTableSegment const & segment, bool entries)
{
    std::printf("%sindex SID %s  body SID %u  edit rate %d/%d  start %" PRId64 "  duration %" PRId64 "\n", INDENT,
                optional(segment.indexSID()).c_str(), segment.bodySID().value(), segment.indexEditRate().numerator(),
                segment.indexEditRate().denominator(), segment.indexStartPosition().value(),
                segment.indexDuration().value());
    std::printf("%sedit unit byte count %s  slice count %s  position table count %s\n", INDENT,
                optional(segment.editUnitByteCount()).c_str(), optional(segment.sliceCount()).c_str(),
                optional(segment.posTableCount()).c_str());
    std::printf("%sdelta entries %u  index entries %u\n", INDENT, segment.deltaEntryCount(), segment.indexEntryCount());
    for (unsigned i = 0; i < segment.deltaEntryCount(); ++i)
    {
        Vellum::IndexTables::DeltaEntry const & delta = segment.deltaEntry(i);
        std::printf("%s  delta %u: position table index %d  slice %u  element delta %u\n", INDENT, i,
                    delta.posTableIndex(), delta.slice(), delta.elementDelta());
    }
    for (auto const & unknown : segment.unknownElements())
        std::printf("%s  unknown item %04x: %u bytes\n", INDENT, unknown.tag.value(), unknown.value->size());
    if (!entries)
        return;
    for (unsigned i = 0; i < segment.indexEntryCount(); ++i)
    {
        Vellum::IndexTables::IndexEntry const & entry = segment.indexEntry(i);
        std::printf("%s  entry %u: flags 0x%02x (%s)  temporal offset %d  key frame offset %d  stream offset %" PRIu64,
                    INDENT, i, entry.flags(), flagWords(entry).c_str(), entry.temporalOffset(), entry.keyFrameOffset(),
                    entry.streamOffset());
        if (entry.sliceOffsetCount() != 0)
        {
            std::printf("  slice offsets");
            for (unsigned s = 0; s < entry.sliceOffsetCount(); ++s)
                std::printf(" %u", entry.sliceOffset(static_cast<unsigned char>(s)));
        }
        if (entry.posTableCount() != 0)
        {
            std::printf("  position table");
            for (unsigned p = 0; p < entry.posTableCount(); ++p)
            {
                Vellum::Templates::Rational<int> r = entry.posTable(static_cast<unsigned char>(p));
                std::printf(" %d/%d", r.numerator(), r.denominator());
            }
        }
        std::printf("\n");
    }
}
} // namespace VellumTool
