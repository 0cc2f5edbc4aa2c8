#pragma once
// Answers which index table segment covers an edit unit of one essence container. The providers
// differ by how they come by the segments; all keep what they found in a cache.

#include "IndexTables/IndexTableSegment.h"
#include "Platform/MallocAlloc.h"
#include "Platform/Synchronization.h"
#include "Platform/Types.h"
#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"
#include "Templates/SharedPtr.h"

namespace Vellum
{
namespace MXFIO
{
class Partition;
class Reader;
class Reader2;

typedef Templates::SharedPtr<IndexTables::IndexTableSegment> IndexTableSegmentPtr;

class IndexTableProvider
{
public:
    VELLUM_CLASS_ALLOCATION

    IndexTableProvider() = default;
    virtual ~IndexTableProvider() {}
    IndexTableProvider(IndexTableProvider const &) = delete;
    IndexTableProvider & operator=(IndexTableProvider const &) = delete;
    // The segment covering the edit unit; empty when none is known.
    virtual IndexTableSegmentPtr segment(int64 editUnit) = 0;
    virtual void addSegment(IndexTableSegmentPtr segment) = 0;
    // True when the provider knows the whole table and the edit unit lies beyond its end, so that a
    // seeker must not estimate.
    virtual bool beyondTable(int64 editUnit) const { (void)editUnit; return false; }

protected:
    virtual IndexTableSegmentPtr fetchSegment(int64 editUnit) = 0;
};

class IndexTableCache : public IndexTableProvider
{
protected:
    IndexTableSegmentPtr fetchSegment(int64) override { return IndexTableSegmentPtr(); }
};

// Keeps every segment given to it, by start position.
class IndexTableCompleteCache : public IndexTableCache
{
public:
    IndexTableCompleteCache();
    ~IndexTableCompleteCache() override;
    IndexTableSegmentPtr segment(int64 editUnit) override;
    void addSegment(IndexTableSegmentPtr segment) override;
    bool beyondTable(int64 editUnit) const override;
    // The number of edit units the cached segments cover from 0 (start plus duration of the last).
    int64 coveredDuration() const;
    bool empty() const;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};

class IndexTableProviderBase : public IndexTableProvider
{
public:
    // Takes the cache; a null makes an IndexTableCompleteCache.
    explicit IndexTableProviderBase(Templates::auto_ptr<IndexTableCache> cache = Templates::auto_ptr<IndexTableCache>());
    ~IndexTableProviderBase() override;
    IndexTableProviderBase(IndexTableProviderBase const &) = delete;
    IndexTableProviderBase & operator=(IndexTableProviderBase const &) = delete;
    IndexTableSegmentPtr segment(int64 editUnit) override;
    void addSegment(IndexTableSegmentPtr segment) override;

protected:
    IndexTableCache & cache();
    IndexTableCache const & cache() const;
    // Reads and caches the segments of a partition; gives the one covering editUnit (none for a
    // negative one).
    IndexTableSegmentPtr parsePartition(Partition & partition, int64 editUnit);
    // The same, and tells whether the partition held a segment and the start of its first one.
    IndexTableSegmentPtr parsePartition(Partition & partition, int64 editUnit, bool & anySegment, int64 & firstStart);

private:
    Templates::auto_ptr<IndexTableCache> cache_;
};

class IndexTableNullProvider : public IndexTableProviderBase
{
protected:
    IndexTableSegmentPtr fetchSegment(int64) override { return IndexTableSegmentPtr(); }
};

// Parses every index partition of the index SID at construction.
class IndexTableFullFileParseProvider : public IndexTableProviderBase
{
public:
    IndexTableFullFileParseProvider(Reader & reader, unsigned int indexSID);
    bool beyondTable(int64 editUnit) const override;

protected:
    IndexTableSegmentPtr fetchSegment(int64) override { return IndexTableSegmentPtr(); }
};

class IndexTableParseOnRequestProvider : public IndexTableProviderBase
{
public:
    IndexTableParseOnRequestProvider(Reader & reader, unsigned int indexSID);
    bool beyondTable(int64 editUnit) const override;

protected:
    IndexTableSegmentPtr fetchSegment(int64 editUnit) override;

private:
    Reader & reader_;
    unsigned int indexSID_;
    Partition * current_;
    bool noMore_;
};

// Knows the partitions from the RIP and guesses which one holds an edit unit from an average
// count of edit units for each partition (not 0).
class IndexTablePositionEstimateProvider : public IndexTableProviderBase
{
public:
    IndexTablePositionEstimateProvider(Reader2 & reader, unsigned int indexSID, uint64 editUnitsPerPartition);
    ~IndexTablePositionEstimateProvider() override;

protected:
    IndexTableSegmentPtr fetchSegment(int64 editUnit) override;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};

// For a file still being written: searches the partitions the reader sees now, under a lock.
class IndexTableStreamingProvider : public IndexTableProviderBase
{
public:
    IndexTableStreamingProvider(Reader & reader, unsigned int indexSID);
    ~IndexTableStreamingProvider() override;

protected:
    IndexTableSegmentPtr fetchSegment(int64 editUnit) override;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace MXFIO
} // namespace Vellum
