#pragma once
// Discovers the partitions of a file over a random access source and keeps one Partition for
// each partition met. Nothing is read until a walk is asked for.
#include "DataIO/DataSource.h"
#include "KLV/Reader.h"
#include "MetaMetadata/Dictionary.h"
#include "MXFIO/Partition.h"
#include "Packs/RandomIndexPack.h"
#include "Templates/AutoPtr.h"
#include "Templates/SharedPtr.h"

namespace Vellum
{
namespace KLV
{
class Value;
}

namespace MXFIO
{
class Reader
{
public:
    VELLUM_CLASS_ALLOCATION
    Reader(DataIO::RandomAccessDataSource & source, Templates::SharedPtr<MetaMetadata::Dictionary> dictionary,
           uint64 keySearchLimit);
    virtual ~Reader();
    Reader(Reader const &) = delete;
    Reader & operator=(Reader const &) = delete;

    DataIO::RandomAccessDataSource & source();
    KLV::Reader & klvReader();
    Templates::SharedPtr<MetaMetadata::Dictionary> dictionary() const;
    Templates::SharedPtr<Packs::RandomIndexPack> rip() const;

    Partition * headerPartition();
    Partition * firstPartitionWithFinalMetadata();
    Partition * nextPartition(Partition * current);
    Partition * previousPartition(Partition * current);
    Partition * nextPartition(Partition * current, unsigned int bodySID);
    Partition * previousPartition(Partition * current, unsigned int bodySID);
    Partition * nextIndexPartition(Partition * current, unsigned int indexSID);
    Partition * previousIndexPartition(Partition * current, unsigned int indexSID);
    Partition * nextCompletePartition(Partition * current);
    Partition * nextClosedPartition(Partition * current);
    Partition * lastLoadedPartition();

    bool loadRIP();
    KLV::Value * runIn();

protected:
    Partition * find(uint64 offset);
    void positionSource(Partition * partition);
    Partition * readPartition(uint64 limit, bool unlimited, uint64 & bytesSkipped, bool & essenceSeen);
    bool loadRIP(Templates::auto_ptr<Packs::RandomIndexPack> rip);
    uint64 runInLength() const;

private:
    friend class Partition;
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace MXFIO
} // namespace Vellum
