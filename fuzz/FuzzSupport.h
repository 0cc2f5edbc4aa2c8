#pragma once
// What the fuzz targets share: a guard that lets only the library's own exceptions pass quietly
// (anything else escapes and libFuzzer reports it), and a packet over the whole input.

#include "DataIO/Memory/MemoryDataSource.h"
#include "Exceptions/Exceptions.h"
#include "KLV/Key.h"
#include "KLV/Packet.h"

#include <cstddef>
#include <cstdint>

namespace VellumFuzz
{
template <typename Step>
bool guarded(Step step)
{
    try
    {
        step();
        return true;
    }
    catch (Vellum::Exceptions::BaseException const &)
    {
        return false;
    }
}

// A packet with `key` whose value is the whole input, as if the key and a 4-byte length stood
// in front of it.
struct PacketOverInput
{
    Vellum::DataIO::Memory::MemoryDataSource source;
    Vellum::KLV::Packet packet;

    PacketOverInput(Vellum::KLV::Key const & key, uint8_t const * data, size_t size)
        : source(data, size), packet(key, 4, size, source, 0)
    {
    }
};
} // namespace VellumFuzz
