#pragma once
// An index generator that a worker feeds: the layout once, then one entry per content package.

#include "GenericContainer/IndexSegmentInfo.h"
#include "MXFIO/IndexTableGenerator.h"

namespace Vellum
{
namespace IndexTables
{
class IndexEntry;
}

namespace GenericContainer
{
class GenericContainerIndexTableGenerator : public MXFIO::IndexTableGenerator
{
public:
    virtual void setupIndexSegments(IndexSegmentInfo const & info) = 0;
    // `position` content packages are made, `streamOffset` bytes written.
    virtual void currentContentInfo(uint64 position, uint64 streamOffset) = 0;
    // What each entry must carry.
    virtual unsigned char posTableCount() const = 0;
    virtual unsigned char sliceCount() const = 0;
    virtual void writeIndexEntry(IndexTables::IndexEntry const & entry) = 0;
};
} // namespace GenericContainer
} // namespace Vellum
