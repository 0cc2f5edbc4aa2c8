#include "DataIO/SliceReader.h"

#include <cstring>

#include "Exceptions/Exceptions.h"

namespace Vellum
{
namespace DataIO
{
struct SliceReader::Impl
{
    VELLUM_CLASS_ALLOCATION
    explicit Impl(Templates::SharedPtr<SliceSource> const & s) : source(s) {}

    Templates::SharedPtr<SliceSource> source;
    Chain cache;
};

namespace
{
Templates::auto_ptr<Slice> emptySlice()
{
    return Templates::auto_ptr<Slice>(new Slice);
}
} // namespace

SliceReader::SliceReader(Templates::SharedPtr<SliceSource> source) : impl_(new Impl(source)) {}

SliceReader::~SliceReader() = default;

SliceSource & SliceReader::source() const
{
    return *impl_->source;
}

uint64 SliceReader::cachedSize() const
{
    return impl_->cache.data_size();
}

uint64 SliceReader::absoluteOffset() const
{
    return impl_->source->absoluteOffset() - cachedSize();
}

bool SliceReader::endOfStream() const
{
    return cachedSize() == 0 && impl_->source->endOfStream();
}

Templates::auto_ptr<Slice> SliceReader::nextSlice(uint64 size)
{
    if (size == 0)
        return emptySlice();
    Chain & cache = impl_->cache;
    Templates::auto_ptr<Slice> piece;
    if (!cache.empty())
        piece = cache.erase(cache.begin());
    else
    {
        piece = impl_->source->read(size);
        if (!piece)
            return emptySlice();
    }
    if (piece->size() > size)
        cache.push_front(piece->splice(piece->begin() + size));
    return piece;
}

Templates::auto_ptr<Slice> SliceReader::read(uint64 size)
{
    if (size == 0)
        return emptySlice();
    THROW_UNLESS_TEXT(NotEnoughData, !endOfStream(), "!this -> eof ()", "Not enough data to read from the source");

    Templates::auto_ptr<Slice> first = nextSlice(size);
    if (first->size() == size)
        return first;

    // The bytes lie in several pieces. They are gathered first, so that no block is made for
    // bytes that are not there, and joined in a new block of the first piece's family. Until
    // the copy is complete the pieces can go back to the cache.
    first->block()->addReference();
    BlockHolder family(first->block());
    uint64 done = first->size();
    Chain taken;
    taken.push_back(std::move(first));
    try
    {
        while (done < size)
        {
            Templates::auto_ptr<Slice> piece = nextSlice(size - done);
            if (piece->size() == 0)
                break;
            done += piece->size();
            taken.push_back(std::move(piece));
        }
        if (done < size)
            VELLUM_THROW(NotEnoughData, "Not enough data to read from the source");

        BlockHolder joined = family->create(size);
        unsigned char * target = joined->data();
        for (Chain::const_iterator i = taken.begin(); i != taken.end(); ++i)
        {
            std::memcpy(target, i->begin(), size_t(i->size()));
            target += i->size();
        }
        return Templates::auto_ptr<Slice>(new Slice(joined.block(), 0, size));
    }
    catch (...)
    {
        unget(taken);
        throw;
    }
}

void SliceReader::read(uint64 size, Chain & out)
{
    uint64 done = 0;
    while (done < size)
    {
        Templates::auto_ptr<Slice> piece = nextSlice(size - done);
        if (piece->size() == 0)
            break;
        done += piece->size();
        out.push_back(std::move(piece));
    }
}

Templates::auto_ptr<Slice> SliceReader::nextSliceAligned(uint64 size, uint64 alignment)
{
    Templates::auto_ptr<Slice> piece = nextSlice(size);
    if (alignment <= 1 || piece->size() == size || piece->size() % alignment == 0)
        return piece;
    if (piece->size() <= alignment)
    {
        unget(std::move(piece));
        return read(alignment);
    }
    uint64 whole = piece->size() - piece->size() % alignment;
    unget(piece->splice(piece->begin() + whole));
    return piece;
}

Templates::auto_ptr<Slice> SliceReader::readAligned(uint64 size)
{
    return read(size);
}

void SliceReader::unget(Templates::auto_ptr<Slice> slice)
{
    if (slice && slice->size() != 0)
        impl_->cache.push_front(std::move(slice));
}

void SliceReader::unget(Chain & chain)
{
    impl_->cache.push_front(chain);
}

uint64 SliceReader::skip(uint64 size)
{
    uint64 before = absoluteOffset();
    Chain & cache = impl_->cache;
    uint64 left = size;
    while (left != 0 && !cache.empty())
    {
        Slice & head = *cache.begin();
        if (head.size() <= left)
        {
            left -= head.size();
            cache.erase(cache.begin());
        }
        else
        {
            head.cropBegin(left);
            left = 0;
        }
    }
    if (left != 0)
        impl_->source->skip(left);
    return absoluteOffset() - before;
}
} // namespace DataIO
} // namespace Vellum
