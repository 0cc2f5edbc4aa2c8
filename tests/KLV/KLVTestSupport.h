#pragma once
// Helpers shared by the KLV tests: byte builders, a source that counts its calls, and a way to
// catch an exception's class, message and code.

#include <functional>
#include <string>
#include <vector>

#include "DataIO/Memory/MemoryDataSource.h"
#include "Exceptions/Exceptions.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace KLVTest
{
typedef std::vector<unsigned char> Bytes;

// What a call threw: the class's error code (0 for none, -1 for a foreign exception) and message.
struct Thrown
{
    int code;
    std::string message;
};

inline Thrown thrownBy(std::function<void()> const & call)
{
    try
    {
        call();
    }
    catch (Exceptions::BaseException const & e)
    {
        return Thrown{e.errorCode(), Utils::narrow(e.message()).c_str()};
    }
    catch (...)
    {
        return Thrown{-1, ""};
    }
    return Thrown{0, ""};
}

inline Templates::wstring w(char const * text)
{
    return Utils::wide(text);
}

inline std::string n(Templates::wstring const & text)
{
    return Utils::narrow(text).c_str();
}

inline Bytes cat(Bytes a, Bytes const & b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

// A whole packet: key, a BER length of `berLength` bytes (1 for the short form), value.
inline Bytes packet(Bytes const & key, Bytes const & value, unsigned berLength = 1)
{
    Bytes out(key);
    uint64 length = value.size();
    if (berLength == 1)
        out.push_back(static_cast<unsigned char>(length));
    else
    {
        out.push_back(static_cast<unsigned char>(0x80 | (berLength - 1)));
        for (unsigned i = berLength - 1; i >= 1; --i)
            out.push_back(static_cast<unsigned char>(length >> (8 * (i - 1))));
    }
    return cat(out, value);
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
