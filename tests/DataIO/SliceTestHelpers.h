#pragma once
// Blocks that count themselves and a slice source that hands out given pieces, so that tests
// control every seam and can see every block go.

#include <cstring>
#include <vector>

#include "DataIO/Block.h"
#include "DataIO/Chain.h"
#include "DataIO/SliceSource.h"

namespace Vellum
{
namespace DataIO
{
namespace Testing
{
class CountingBlockFactory;

class CountingBlock : public Block
{
public:
    CountingBlock(CountingBlockFactory & factory, uint64 size);
    unsigned char const * data() const override { return bytes_.data(); }
    unsigned char * data() override { return bytes_.data(); }
    uint64 size() const override { return bytes_.size(); }
    void addReference() override { ++references_; }
    void release() override
    {
        if (--references_ == 0)
            delete this;
    }
    BlockHolder create(uint64 size) override;
    int references() const { return references_; }

protected:
    ~CountingBlock() override;

private:
    CountingBlockFactory & factory_;
    std::vector<unsigned char> bytes_;
    int references_;
};

class CountingBlockFactory : public BlockFactory
{
public:
    CountingBlockFactory() : live(0), created(0) {}
    BlockHolder create(uint64 size) override { return BlockHolder(new CountingBlock(*this, size)); }

    // A block holding a copy of the bytes, with the holder's one reference.
    BlockHolder make(std::vector<unsigned char> const & bytes)
    {
        BlockHolder holder = create(bytes.size());
        if (!bytes.empty())
            std::memcpy(holder->data(), bytes.data(), bytes.size());
        return holder;
    }

    int live;
    int created;
};

inline CountingBlock::CountingBlock(CountingBlockFactory & factory, uint64 size)
    : factory_(factory), bytes_(size_t(size), 0), references_(1)
{
    ++factory_.live;
    ++factory_.created;
}

inline CountingBlock::~CountingBlock()
{
    --factory_.live;
}

inline BlockHolder CountingBlock::create(uint64 size)
{
    return factory_.create(size);
}

// A slice of `size` bytes of the block from `offset`.
inline Templates::auto_ptr<Slice> window(BlockHolder const & block, uint64 offset, uint64 size)
{
    return Templates::auto_ptr<Slice>(new Slice(block.block(), offset, size));
}

// Hands out the given pieces one by one, each on a block of its own, whatever size is asked.
class PieceSource : public SliceSource
{
public:
    PieceSource(CountingBlockFactory & factory, std::vector<std::vector<unsigned char>> const & pieces)
        : factory_(factory), pieces_(pieces), index_(0), within_(0), offset_(0), reads(0)
    {
    }

    Templates::auto_ptr<Slice> read(uint64) override
    {
        ++reads;
        while (index_ < pieces_.size() && within_ == pieces_[index_].size())
        {
            ++index_;
            within_ = 0;
        }
        if (index_ == pieces_.size())
            return Templates::auto_ptr<Slice>(new Slice);
        std::vector<unsigned char> const & piece = pieces_[index_];
        std::vector<unsigned char> bytes(piece.begin() + long(within_), piece.end());
        BlockHolder block = factory_.make(bytes);
        offset_ += bytes.size();
        ++index_;
        within_ = 0;
        return Templates::auto_ptr<Slice>(new Slice(block.block(), 0, bytes.size()));
    }

    uint64 absoluteOffset() const override { return offset_; }

    bool endOfStream() const override
    {
        for (size_t i = index_; i < pieces_.size(); ++i)
            if (pieces_[i].size() > (i == index_ ? within_ : 0))
                return false;
        return true;
    }

    uint64 skip(uint64 size) override
    {
        uint64 done = 0;
        while (done < size && index_ < pieces_.size())
        {
            uint64 left = pieces_[index_].size() - within_;
            uint64 n = left < size - done ? left : size - done;
            within_ += n;
            done += n;
            if (within_ == pieces_[index_].size())
            {
                ++index_;
                within_ = 0;
            }
        }
        offset_ += done;
        return done;
    }

private:
    CountingBlockFactory & factory_;
    std::vector<std::vector<unsigned char>> pieces_;
    size_t index_;
    size_t within_;
    uint64 offset_;

public:
    int reads;
};

// 0, 1, 2, ... as bytes.
inline std::vector<unsigned char> counting(size_t size, unsigned start = 0)
{
    std::vector<unsigned char> bytes(size);
    for (size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<unsigned char>(start + i);
    return bytes;
}

// Cuts `bytes` into pieces of the given sizes (the last piece takes the rest).
inline std::vector<std::vector<unsigned char>> cut(std::vector<unsigned char> const & bytes,
                                                   std::vector<size_t> const & sizes)
{
    std::vector<std::vector<unsigned char>> pieces;
    size_t at = 0;
    for (size_t s : sizes)
    {
        size_t n = s < bytes.size() - at ? s : bytes.size() - at;
        pieces.emplace_back(bytes.begin() + long(at), bytes.begin() + long(at + n));
        at += n;
    }
    if (at < bytes.size())
        pieces.emplace_back(bytes.begin() + long(at), bytes.end());
    return pieces;
}

inline std::vector<unsigned char> bytesOf(Slice const & slice)
{
    return std::vector<unsigned char>(slice.begin(), slice.end());
}

inline std::vector<unsigned char> bytesOf(Chain const & chain)
{
    std::vector<unsigned char> bytes;
    for (Chain::const_iterator i = chain.begin(); i != chain.end(); ++i)
        bytes.insert(bytes.end(), i->begin(), i->end());
    return bytes;
}
} // namespace Testing
} // namespace DataIO
} // namespace Vellum
