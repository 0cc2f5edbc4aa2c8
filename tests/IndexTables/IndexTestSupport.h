#pragma once
// Helpers shared by the index table tests: segment packets built byte by byte, reading them back
// through a KLV reader, the bytes a segment writes, and what a call threw.

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "DataIO/Memory/MemoryDataSink.h"
#include "DataIO/Memory/MemoryDataSource.h"
#include "Exceptions/Exceptions.h"
#include "IndexTables/IndexTableSegmentListener.h"
#include "KLV/Packet.h"
#include "KLV/Reader.h"
#include "Support/Mxf.h"
#include "Utils/Text.h"

namespace IndexTest
{
// The error codes the index tests expect.
int const INVALID_LENGTH = Vellum::Exceptions::InvalidLength::ERROR_CODE;
int const INVALID_ELEMENT = Vellum::Exceptions::InvalidElement::ERROR_CODE;
int const INVALID_SEGMENT = Vellum::Exceptions::InvalidIndexSegment::ERROR_CODE;
int const OUT_OF_BOUNDS = Vellum::Exceptions::IndexOutOfBounds::ERROR_CODE;

using VellumTest::Bytes;

inline Bytes currentKey()
{
    return {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01, 0x01, 0x0d, 0x01, 0x02, 0x01, 0x01, 0x10, 0x01, 0x00};
}

inline Bytes secondKey()
{
    return {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01, 0x01, 0x0d, 0x01, 0x02, 0x01, 0x01, 0x10, 0x00, 0x00};
}

using VellumTest::be;
using VellumTest::cat;
using VellumTest::thrownBy;
using VellumTest::Thrown;
using VellumTest::written;

// One item: tag, 2-byte length, value.
inline Bytes item(unsigned tag, Bytes const & value)
{
    return cat(cat(be(tag, 2), be(value.size(), 2)), value);
}

inline Bytes uid()
{
    Bytes b(16);
    for (unsigned i = 0; i < 16; ++i)
        b[i] = static_cast<unsigned char>(0xA0 + i);
    return b;
}

// The items that every segment has, in the order written: instance UID, edit rate 25/1, start,
// duration.
inline Bytes leadingItems(long long start, long long duration)
{
    return cat(cat(cat(item(0x3C0A, uid()), item(0x3F0B, cat(be(25, 4), be(1, 4)))), item(0x3F0C, be(start, 8))),
               item(0x3F0D, be(duration, 8)));
}

inline Bytes packet(Bytes const & key, Bytes const & value, unsigned berLength = 4)
{
    return VellumTest::klvPacket(key, value, berLength);
}

// An index entry on the wire.
inline Bytes indexEntryBytes(int temporalOffset, int keyFrameOffset, unsigned flags, unsigned long long streamOffset,
                             Bytes const & tail = Bytes())
{
    Bytes out = {static_cast<unsigned char>(temporalOffset), static_cast<unsigned char>(keyFrameOffset),
                 static_cast<unsigned char>(flags)};
    return cat(cat(out, be(streamOffset, 8)), tail);
}

// An array value: count, entry size, entries.
inline Bytes arrayBytes(unsigned count, unsigned size, Bytes const & entries)
{
    return cat(cat(be(count, 4), be(size, 4)), entries);
}

// Reads the first packet of `bytes` and makes a T from it.
template <class T>
std::unique_ptr<T> parse(Bytes const & bytes, Vellum::IndexTables::IndexTableSegmentListener * listener = nullptr)
{
    Vellum::DataIO::Memory::MemoryDataSource source(bytes.data(), bytes.size());
    Vellum::KLV::Reader reader(source);
    Vellum::uint64 skipped = 0;
    Vellum::Templates::auto_ptr<Vellum::KLV::Packet> p = reader.nextKLV(skipped, 0);
    return std::unique_ptr<T>(new T(*p, listener));
}

} // namespace IndexTest
