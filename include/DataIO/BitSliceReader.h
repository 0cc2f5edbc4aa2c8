#pragma once
// Reads bit fields, most significant bit first, and keeps the bytes it consumed so that a
// parser can take a header's raw bytes as slices afterwards.

#include "DataIO/SliceReader.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace DataIO
{
class BitSliceReader : public SliceReader
{
public:
    explicit BitSliceReader(Templates::SharedPtr<SliceSource> source);
    ~BitSliceReader() override;

    // Writes `count` bits to `out`, packed from its first byte on, most significant first; a
    // partial last byte is left-aligned with its low bits cleared. Throws NotEnoughData when
    // the source ends first.
    void readBits(unsigned int count, unsigned char * out);
    // Gives the bits skipped: `count`, or fewer when the source ends first.
    unsigned int skipBits(unsigned int count);
    // Moves the bytes consumed so far to the end of `out`. The rest of a partly read byte is
    // given up.
    void readCache(Chain & out);
    // Drops the bytes consumed so far, and the rest of a partly read byte.
    void releaseCache();

    // Lets a subclass drop a byte of the stream (such as an emulation prevention byte) from
    // the bits it reads; the byte stays among the consumed bytes.
    virtual bool discardEmulationPreventionByte(unsigned char byte);

private:
    // Loads the next byte that carries bits.
    void loadByte();

    struct BitImpl;
    Templates::auto_ptr<BitImpl> bits_;
};
} // namespace DataIO
} // namespace Vellum
