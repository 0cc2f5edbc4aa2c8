#pragma once
// The Reader with the footer and the last partition: found through the header's pointer, the
// Random Index Pack, or a scan backwards from the end of the file.
#include "MXFIO/Reader.h"

namespace Vellum
{
namespace MXFIO
{
class Reader2 : public Reader
{
public:
    VELLUM_CLASS_ALLOCATION
    Reader2(DataIO::RandomAccessDataSource & source, Templates::SharedPtr<MetaMetadata::Dictionary> dictionary,
            uint64 keySearchLimit);
    ~Reader2() override;

    Partition * lastPartition();
    Partition * lastPartition(uint64 size);
    Partition * footerPartition();
    Partition * partitionAtOffset(uint64 offset);
    Partition * backwardFirstPartitionWithFinalMetadata();
    bool loadRipFromFooter();

protected:
    Partition * lastPartitionFromRIP();
    Partition * lastPartitionFromHeaderFooterOffset();
    Partition * searchLastPartition(bool footerOnly);
    Partition * searchLastPartition(uint64 size);

private:
    Partition * footer_;
};
} // namespace MXFIO
} // namespace Vellum
