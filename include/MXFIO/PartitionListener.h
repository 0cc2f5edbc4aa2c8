#pragma once
// Told by a partition while it loads its header metadata: the Primer, the new metadata object,
// and every packet of the metadata region that is not a set.
#include "Platform/MallocAlloc.h"

namespace Vellum
{
namespace KLV
{
class Packet;
}
namespace Packs
{
class PrimerPack;
}
namespace Metadata
{
class PartitionMetadata;
}

namespace MXFIO
{
class PartitionListener
{
public:
    VELLUM_CLASS_ALLOCATION
    virtual ~PartitionListener() {}
    virtual void primerPackRead(Packs::PrimerPack * primer) = 0;
    virtual void metadataCreated(Metadata::PartitionMetadata * metadata) = 0;
    virtual void unknownPacketRead(KLV::Packet * packet) = 0;
};
} // namespace MXFIO
} // namespace Vellum
