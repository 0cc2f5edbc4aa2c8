#pragma once
// Helpers shared by the KLV tests: byte builders, a source that counts its calls, and a way to
// catch an exception's class, message and code.

#include <functional>
#include <string>
#include <vector>

#include "DataIO/Memory/MemoryDataSource.h"
#include "Exceptions/Exceptions.h"
#include "Support/Mxf.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace KLVTest
{

using VellumTest::Bytes;
using VellumTest::cat;
using VellumTest::thrownBy;
using VellumTest::Thrown;

inline Templates::wstring w(char const * text)
{
    return Utils::wide(text);
}

inline std::string n(Templates::wstring const & text)
{
    return Utils::narrow(text).c_str();
}

inline Bytes packet(Bytes const & key, Bytes const & value, unsigned berLength = 1)
{
    return VellumTest::klvPacket(key, value, berLength);
}

// Forwards to a memory source and counts what it is asked.
class CountingSource : public DataIO::RandomAccessDataSource
{
public:
    explicit CountingSource(Bytes const & bytes)
        : inner_(bytes.data(), bytes.size()), reads(0), bytesRead(0), skips(0)
    {
    }

    uint64 absoluteOffset() const override { return inner_.absoluteOffset(); }
    bool endOfStream() const override { return inner_.endOfStream(); }
    uint64 read(unsigned char * buffer, uint64 size) override
    {
        ++reads;
        uint64 got = inner_.read(buffer, size);
        bytesRead += got;
        return got;
    }
    uint64 skip(uint64 size) override
    {
        ++skips;
        return inner_.skip(size);
    }
    uint64 remaining() const override { return inner_.remaining(); }
    void discard() override { inner_.discard(); }
    uint64 seek(uint64 position) override { return inner_.seek(position); }

    void resetCounts()
    {
        reads = 0;
        bytesRead = 0;
        skips = 0;
    }

private:
    DataIO::Memory::MemoryDataSource inner_;

public:
    unsigned reads;
    uint64 bytesRead;
    unsigned skips;
};
} // namespace KLVTest
} // namespace Vellum
