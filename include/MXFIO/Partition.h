#pragma once
// One partition of a file met by a Reader. It serves its header metadata, its index table
// segments and its body packets on demand. The Reader owns the objects it hands out.
#include "KLV/Packet.h"
#include "MXFIO/AbstractPartition.h"
#include "MXFIO/PartitionListener.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace MXFIO
{
class Reader;

class Partition : public AbstractPartition
{
public:
    VELLUM_CLASS_ALLOCATION
    Partition(Reader & reader, Templates::auto_ptr<Packs::PartitionPack> pack, uint64 partitionOffset,
              uint64 metadataOffset, uint64 keySearchLimit);
    ~Partition() override;

    Templates::SharedPtr<Metadata::PartitionMetadata> metadata() override;
    Packs::PartitionPack const & partitionPack() const override;
    bool partitionEnded() const override;

    void setPartitionListener(Templates::SharedPtr<PartitionListener> listener);

    uint64 partitionAbsoluteOffset() const;
    uint64 metadataAbsoluteOffset() const;
    uint64 indexTableAbsoluteOffset() const;
    uint64 bodyAbsoluteOffset() const;

    // Cursors over the index region and the body. Both give null at the end of their region.
    void rewind();
    Templates::auto_ptr<KLV::Packet> nextIndexTableSegmentsKLV();
    Templates::auto_ptr<KLV::Packet> nextBodyKLV(uint64 keySearchLimit);
    void gotoBodyRelativePosition(uint64 position);

    struct Impl;

private:
    Templates::auto_ptr<Impl> impl_;
};
} // namespace MXFIO
} // namespace Vellum
