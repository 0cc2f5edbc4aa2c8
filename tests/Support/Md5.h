#pragma once
// A small MD5 (RFC 1321) for comparing essence with what ffmpeg's framemd5 reports.

#include <cstddef>
#include <cstdint>
#include <string>

namespace VellumTest
{
class Md5
{
public:
    Md5();
    void update(unsigned char const * data, std::size_t size);
    // The digest as 32 lower case hexadecimal digits; the object is spent afterwards.
    std::string hex();

private:
    void block(unsigned char const * data);

    std::uint32_t state_[4];
    std::uint64_t length_;
    unsigned char buffer_[64];
    std::size_t used_;
};

std::string md5Hex(unsigned char const * data, std::size_t size);
} // namespace VellumTest
