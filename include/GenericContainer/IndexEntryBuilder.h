#pragma once
// Builds the index entry of one content package as the worker walks its elements: slice offsets,
// position tables, and for a long-GOP element the temporal and key frame offsets and flags.

#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Templates/AutoPtr.h"
#include "Templates/Rational.h"

namespace Vellum
{
namespace MXFIO
{
class IndexTableGenerator;
}

namespace IndexTables
{
class IndexEntry;
}

namespace GenericContainer
{
class IndexEntryBuilder
{
public:
    VELLUM_CLASS_ALLOCATION

    IndexEntryBuilder();
    ~IndexEntryBuilder();

    // The generator that takes the entries; entries are made only for a Generic Container one.
    void indexTableGenerator(MXFIO::IndexTableGenerator * generator);
    void prepareNewEntry(uint64 streamOffset);
    void processIndexEntryTemporalOffset(uint64 position, bool usesPosTable,
                                         Templates::Rational<int64> const & temporalOffset,
                                         Templates::Rational<int64> const & processed,
                                         Templates::Rational<int64> const & target, Templates::Rational<int> const & rate);
    // A variable element ends a slice: its offset goes into the entry and `sliceOffset` restarts.
    void processAnalyzerIndexEntrySliceOffset(bool isVariable, unsigned int fill, unsigned int & sliceOffset);
    void processAnalyzerIndexEntry(uint64 position, bool temporalDependencies, unsigned char flags,
                                   signed char temporalReference);
    void appendIndexEntry();

    // The entry in the making; null before the first prepareNewEntry or without a generator.
    IndexTables::IndexEntry const * currentEntry() const;

private:
    IndexEntryBuilder(IndexEntryBuilder const &) = delete;
    IndexEntryBuilder & operator=(IndexEntryBuilder const &) = delete;

    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace GenericContainer
} // namespace Vellum
