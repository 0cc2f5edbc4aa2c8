#pragma once
// Lets code that writes to a DataSink append to a Chain instead. Small writes collect in shared
// blocks of blockSize bytes, so that a serialised pack ends in a few large slices.

#include "DataIO/Block.h"
#include "DataIO/Chain.h"
#include "DataIO/DataSink.h"

namespace Vellum
{
namespace DataIO
{
class ChainDataSinkAdapter : public DataSink
{
public:
    enum
    {
        DEFAULT_BLOCK_SIZE = 10240
    };

    // Blocks from the MemoryBlockFactory. `absoluteOffset` is the offset of the first byte
    // written; a `blockSize` of 0 gives every write a block of its own.
    explicit ChainDataSinkAdapter(Chain & target, uint64 absoluteOffset = 0, uint64 blockSize = DEFAULT_BLOCK_SIZE);
    ChainDataSinkAdapter(BlockFactory & factory, Chain & target, uint64 absoluteOffset, uint64 blockSize);
    ~ChainDataSinkAdapter() override;

    void write(unsigned char const * data, uint64 size) override;
    // The offset of the next byte: the start value plus all bytes written.
    uint64 absoluteOffset() const override;

private:
    ChainDataSinkAdapter(ChainDataSinkAdapter const &) = delete;
    ChainDataSinkAdapter & operator=(ChainDataSinkAdapter const &) = delete;

    BlockFactory & factory_;
    Chain & target_;
    uint64 absoluteOffset_;
    uint64 blockSize_;
    uint64 used_;
    BlockHolder current_;
};
} // namespace DataIO
} // namespace Vellum
