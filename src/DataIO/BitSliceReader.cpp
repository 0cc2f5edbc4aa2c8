#include "DataIO/BitSliceReader.h"

#include <cstring>

#include "Exceptions/Exceptions.h"

namespace Vellum
{
namespace DataIO
{
struct BitSliceReader::BitImpl
{
    VELLUM_CLASS_ALLOCATION
    BitImpl() : bitPosition(8), currentByte(0) {}

    Chain consumed;
    // 8: the current byte is used up.
    unsigned char bitPosition;
    unsigned char currentByte;
};

namespace
{
unsigned char lastByte(Chain & chain)
{
    Chain::iterator last = chain.end();
    --last;
    return *(last->end() - 1);
}
} // namespace

BitSliceReader::BitSliceReader(Templates::SharedPtr<SliceSource> source)
    : SliceReader(source), bits_(new BitImpl)
{
}

BitSliceReader::~BitSliceReader() = default;

bool BitSliceReader::discardEmulationPreventionByte(unsigned char)
{
    return false;
}

void BitSliceReader::loadByte()
{
    for (;;)
    {
        uint64 before = bits_->consumed.data_size();
        SliceReader::read(1, bits_->consumed);
        if (bits_->consumed.data_size() == before)
            VELLUM_THROW(NotEnoughData, "Not enough data to read from the source");
        unsigned char byte = lastByte(bits_->consumed);
        if (discardEmulationPreventionByte(byte))
            continue;
        bits_->currentByte = byte;
        bits_->bitPosition = 0;
        return;
    }
}

void BitSliceReader::readBits(unsigned int count, unsigned char * out)
{
    if (count == 0)
        return;
    std::memset(out, 0, (count + 7) / 8);
    for (unsigned int i = 0; i < count;)
    {
        if (bits_->bitPosition == 8)
            loadByte();
        // Take as many bits of the current byte as are wanted, at most to its end.
        unsigned int available = 8u - bits_->bitPosition;
        unsigned int n = count - i < available ? count - i : available;
        unsigned int field = (unsigned(bits_->currentByte) >> (available - n)) & ((1u << n) - 1u);
        bits_->bitPosition = static_cast<unsigned char>(bits_->bitPosition + n);
        // Place the n bits at bit i of the output, which may straddle two output bytes.
        unsigned int shift = 16u - (i & 7u) - n;
        unsigned int placed = field << shift;
        out[i >> 3] = static_cast<unsigned char>(out[i >> 3] | (placed >> 8));
        if ((placed & 0xFFu) != 0)
            out[(i >> 3) + 1] = static_cast<unsigned char>(out[(i >> 3) + 1] | (placed & 0xFFu));
        i += n;
    }
}

unsigned int BitSliceReader::skipBits(unsigned int count)
{
    unsigned int available = 8u - bits_->bitPosition;
    if (count <= available)
    {
        bits_->bitPosition = static_cast<unsigned char>(bits_->bitPosition + count);
        return count;
    }
    // Whole bytes beyond the current one; the last of them becomes the current byte.
    uint64 beyond = uint64(count) - available;
    uint64 bytes = (beyond + 7) / 8;
    uint64 before = bits_->consumed.data_size();
    SliceReader::read(bytes, bits_->consumed);
    uint64 got = bits_->consumed.data_size() - before;
    if (got == 0)
    {
        bits_->bitPosition = 8;
        return available;
    }
    bits_->currentByte = lastByte(bits_->consumed);
    if (got < bytes)
    {
        bits_->bitPosition = 8;
        return static_cast<unsigned int>(available + got * 8);
    }
    bits_->bitPosition = static_cast<unsigned char>(beyond - (bytes - 1) * 8);
    return count;
}

void BitSliceReader::readCache(Chain & out)
{
    out.push_back(bits_->consumed);
    bits_->bitPosition = 8;
}

void BitSliceReader::releaseCache()
{
    bits_->consumed.clear();
    bits_->bitPosition = 8;
}
} // namespace DataIO
} // namespace Vellum
