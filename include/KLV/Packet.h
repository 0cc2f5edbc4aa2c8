#pragma once
// One KLV packet as a reader found it: the key, the length and its coding, and the value, which
// still lies unread in the source.

#include "DataIO/DataSource.h"
#include "KLV/Key.h"
#include "KLV/Value.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace KLV
{
class Packet
{
public:
    VELLUM_CLASS_ALLOCATION
    // The value starts where `source` stands now.
    Packet(Key const & key, unsigned char berLength, uint64 length, DataIO::DataSource & source,
           uint64 keyAbsoluteOffset);
    // Destroying the value leaves the source behind the packet.
    ~Packet();
    Packet(Packet const &) = delete;
    Packet & operator=(Packet const &) = delete;

    Key const & key() const;
    // Replaces the key, as when track numbers are rewritten.
    void key(Key const & key);
    // Bytes of the length field as it was found.
    unsigned char berLength() const;
    uint64 length() const;
    Value & value();
    Value const & value() const;
    uint64 keyAbsoluteOffset() const;
    // 16 + berLength() + length().
    uint64 klvLength() const;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace KLV
} // namespace Vellum
