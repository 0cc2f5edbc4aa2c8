#pragma once
// A KLV packet in the header metadata that cannot be parsed as a local set, kept whole to be
// written back as it was.

#include "KLV/Key.h"
#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace DataIO
{
class DataSink;
} // namespace DataIO

namespace KLV
{
class Packet;
class Value;
} // namespace KLV

namespace Types
{
class Unknown;
} // namespace Types

namespace Metadata
{
class DarkMetadataSet
{
public:
    VELLUM_CLASS_ALLOCATION
    // Reads the whole value of the packet.
    explicit DarkMetadataSet(KLV::Packet & packet);
    // Reads what remains of `value`.
    DarkMetadataSet(KLV::Key const & key, unsigned char berLength, KLV::Value & value);
    ~DarkMetadataSet();

    KLV::Key const & key() const;
    // Width of the BER length field, as found.
    unsigned char berLength() const;
    Types::Unknown const & value() const;
    // Replaces the bytes; a null value stands for none.
    void value(Templates::auto_ptr<Types::Unknown> value);

    // Key, the value's size BER coded in berLength() bytes, the value.
    void serialize(DataIO::DataSink & sink) const;
    uint64 serializedSize() const;

private:
    DarkMetadataSet(DarkMetadataSet const &) = delete;
    DarkMetadataSet & operator=(DarkMetadataSet const &) = delete;

    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace Metadata
} // namespace Vellum
