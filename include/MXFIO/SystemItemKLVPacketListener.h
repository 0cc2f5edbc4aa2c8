#pragma once
// Receives the system items of the content packages of a container, for a host that wants them
// (time code, metadata of the content package) while it reads the essence.

#include "KLV/Packet.h"
#include "Platform/MallocAlloc.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace MXFIO
{
class SystemItemKLVPacketListener
{
public:
    VELLUM_CLASS_ALLOCATION

    virtual ~SystemItemKLVPacketListener() {}
    // Whether the listener takes the packet of this key (a system item key, usually).
    virtual bool wantsPacket(KLV::Key const & key) = 0;
    // The packet, as read from the file; its value has not been read yet.
    virtual void handlePacket(Templates::auto_ptr<KLV::Packet> packet) = 0;
};
} // namespace MXFIO
} // namespace Vellum
