#pragma once
// Answers which partition of a body SID holds a stream offset of its essence container. The
// providers differ by how much they know of the file in advance.

#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"

namespace Vellum
{
namespace MXFIO
{
class Partition;
class Reader;
class Reader2;

class PartitionProvider
{
public:
    VELLUM_CLASS_ALLOCATION

    PartitionProvider() = default;
    virtual ~PartitionProvider() {}
    PartitionProvider(PartitionProvider const &) = delete;
    PartitionProvider & operator=(PartitionProvider const &) = delete;
    // The partition whose essence holds the stream offset; editUnit is a hint (negative when
    // unknown). Null when no partition holds it.
    virtual Partition * partition(uint64 streamOffset, int64 editUnit) = 0;
};

// Walks the chain of partitions; knows no table.
class BasicPartitionProvider : public PartitionProvider
{
public:
    // With a Reader2, fromLastLoaded chooses the walk back from the last partition loaded rather
    // than from the footer.
    BasicPartitionProvider(Reader & reader, unsigned int bodySID, bool fromLastLoaded = false);
    Partition * partition(uint64 streamOffset, int64 editUnit) override;

private:
    Reader & reader_;
    unsigned int bodySID_;
    bool fromLastLoaded_;
};

// Knows the partitions of the body SID from the RIP.
class BaseRandomPartitionProvider : public PartitionProvider
{
public:
    BaseRandomPartitionProvider(Reader2 & reader, unsigned int bodySID);
    ~BaseRandomPartitionProvider() override;
    Partition * partition(uint64 streamOffset, int64 editUnit) override;
    // The offsets of the partitions of the body SID, in file order.
    Templates::vector<uint64> const & partitionOffsets() const;

protected:
    virtual uint64 guessIndex(uint64 streamOffset, int64 editUnit) = 0;
    virtual void partitionRead(Partition & partition) = 0;
    // The bytes of essence of the partition at table index i.
    uint64 essenceSize(Partition & partition, uint64 index);
    Reader2 & reader();
    unsigned int bodySID() const;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};

class EstimatePartitionProvider : public BaseRandomPartitionProvider
{
public:
    EstimatePartitionProvider(Reader2 & reader, unsigned int bodySID);
    ~EstimatePartitionProvider() override;

protected:
    uint64 guessIndex(uint64 streamOffset, int64 editUnit) override;
    void partitionRead(Partition & partition) override;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};

class FixedEditUnitCountPartitionProvider : public BaseRandomPartitionProvider
{
public:
    FixedEditUnitCountPartitionProvider(Reader2 & reader, unsigned int bodySID, unsigned int editUnitsPerPartition);

protected:
    uint64 guessIndex(uint64 streamOffset, int64 editUnit) override;
    void partitionRead(Partition &) override {}

private:
    unsigned int editUnitsPerPartition_;
};

// For a file still being written: the partitions the reader sees now, by BodyOffset.
class StreamingPartitionProvider : public PartitionProvider
{
public:
    StreamingPartitionProvider(Reader & reader, unsigned int bodySID);
    ~StreamingPartitionProvider() override;
    Partition * partition(uint64 streamOffset, int64 editUnit) override;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace MXFIO
} // namespace Vellum
