#pragma once
// The layout of a container's content packages as an index generator needs it: one
// IndexEntryData for each element, in content package order.

#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Templates/Containers.h"
#include "Templates/Rational.h"

namespace Vellum
{
namespace GenericContainer
{
class IndexSegmentInfo
{
public:
    VELLUM_CLASS_ALLOCATION

    enum ContentWrapKind
    {
        FrameWrapped = 0,
        ClipWrapped = 1
    };

    struct IndexEntryData
    {
        IndexEntryData()
            : entryByteCount(0), boundedEditUnitSize(0), itemByteCount(0), containsTemporalDependencies(false),
              usesPosTable(false), hasFiller(false), padToItemEnd(false), isCBE(false)
        {
        }
        // 0 for a variable element.
        uint32 entryByteCount;
        uint32 boundedEditUnitSize;
        int32 itemByteCount;
        bool containsTemporalDependencies;
        bool usesPosTable;
        bool hasFiller;
        bool padToItemEnd;
        bool isCBE;
    };

    IndexSegmentInfo(Templates::Rational<int> const & indexRate, unsigned int klLength, unsigned int paddedSize,
                     ContentWrapKind wrapKind, bool extendedTable)
        : indexRate_(indexRate), klLength_(klLength), paddedSize_(paddedSize), wrapKind_(wrapKind),
          extendedTable_(extendedTable)
    {
    }

    Templates::Rational<int> const & indexRate() const { return indexRate_; }
    unsigned int klLength() const { return klLength_; }
    // The padded size of a whole edit unit; 0 when none.
    unsigned int paddedSize() const { return paddedSize_; }
    ContentWrapKind wrapKind() const { return wrapKind_; }
    // The index needs position tables.
    bool extendedTable() const { return extendedTable_; }

    void indexEntryData(IndexEntryData const & data) { entries_.push_back(data); }
    IndexEntryData const & indexEntryData(unsigned int index) const { return entries_[index]; }
    unsigned int indexEntryDataCount() const { return static_cast<unsigned int>(entries_.size()); }

private:
    Templates::Rational<int> indexRate_;
    unsigned int klLength_;
    unsigned int paddedSize_;
    ContentWrapKind wrapKind_;
    bool extendedTable_;
    Templates::vector<IndexEntryData> entries_;
};
} // namespace GenericContainer
} // namespace Vellum
