#pragma once
// Small helpers shared by the tests of the reading layers: the standard dictionary, the message of
// an expected exception, big-endian fields and a plain walk over the KLV packets of bytes.

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "DataIO/Memory/MemoryDataSink.h"
#include "DataIO/Memory/MemoryDataSource.h"
#include "Exceptions/Exceptions.h"
#include "MetaMetadata/StandardDictionary.h"
#include "Utils/Text.h"

namespace VellumTest
{
typedef std::vector<unsigned char> Bytes;

// The standard dictionary, with the structural sets registered.
Vellum::Templates::SharedPtr<Vellum::MetaMetadata::Dictionary> dictionary();

// The message of the exception of class E that `f` throws; "no exception", or "other exception: "
// and the text of one of another class.
template <class E>
std::string messageOf(std::function<void()> const & f)
{
    try
    {
        f();
    }
    catch (E const & e)
    {
        return Vellum::Utils::narrow(e.message()).c_str();
    }
    catch (Vellum::Exceptions::BaseException const & e)
    {
        return std::string("other exception: ") + e.whatUtf8().c_str();
    }
    return "no exception";
}

// What a call threw: the class's error code (0 for none, -1 for a foreign exception), its message,
// and for an invalid length the bytes it had read.
struct Thrown
{
    int code;
    std::string message;
    Bytes data;
};
Thrown thrownBy(std::function<void()> const & call);

// A source over its own copy of `bytes`.
inline Vellum::Templates::SharedPtr<Vellum::DataIO::DataSource> memorySource(Bytes const & bytes)
{
    return Vellum::Templates::SharedPtr<Vellum::DataIO::DataSource>(
        new Vellum::DataIO::Memory::MemoryDataSource(bytes.data(), bytes.size()));
}

inline Bytes cat(Bytes a, Bytes const & b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

// `value` big-endian in `size` bytes.
inline Bytes be(unsigned long long value, unsigned size)
{
    Bytes out(size);
    for (unsigned i = size; i != 0; --i, value >>= 8)
        out[i - 1] = static_cast<unsigned char>(value & 0xFF);
    return out;
}

// A whole packet: key, a BER length of `berLength` bytes (1 for the short form), value.
inline Bytes klvPacket(Bytes const & key, Bytes const & value, unsigned berLength)
{
    Bytes out(key);
    if (berLength == 1)
        out.push_back(static_cast<unsigned char>(value.size()));
    else
        out = cat(cat(out, {static_cast<unsigned char>(0x80 | (berLength - 1))}), be(value.size(), berLength - 1));
    return cat(out, value);
}

// The bytes that an object's serialize() writes.
template <class T>
Bytes written(T const & object)
{
    Vellum::DataIO::Memory::MemoryDataSink sink;
    object.serialize(sink);
    return sink.serializedSize() == 0 ? Bytes() : Bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
}

inline void putBE(Bytes & out, unsigned long long value, unsigned size)
{
    for (unsigned i = size; i != 0; --i)
        out.push_back(static_cast<unsigned char>((value >> (8 * (i - 1))) & 0xFF));
}

inline void patchBE(Bytes & out, size_t at, unsigned long long value, unsigned size)
{
    for (unsigned i = size; i != 0; --i, value >>= 8)
        out[at + i - 1] = static_cast<unsigned char>(value & 0xFF);
}

// One KLV packet as a walk over the bytes finds it, trusting nothing but the lengths.
struct KlvItem
{
    size_t offset;
    size_t valueOffset;
    unsigned long long length;
    unsigned char key[16];
    unsigned int trackNumber() const
    {
        return (unsigned int)key[12] << 24 | (unsigned int)key[13] << 16 | (unsigned int)key[14] << 8 | key[15];
    }
    // Partition packs: 0x02 header, 0x03 body, 0x04 footer; 0 for any other packet.
    int partitionKind() const;
    bool essenceOrSystem() const
    {
        return key[8] == 0x0D && key[9] == 0x01 && key[10] == 0x03 && key[11] == 0x01 &&
               (key[4] == 0x01 || key[4] == 0x02);
    }
};
std::vector<KlvItem> klvWalk(Bytes const & file, size_t from = 0);
// Offsets of the partition packs of one kind among the packets of a file.
std::vector<size_t> partitionsOfKind(Bytes const & file, int kind);
} // namespace VellumTest
