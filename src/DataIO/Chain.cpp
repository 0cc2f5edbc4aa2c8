#include "DataIO/Chain.h"

#include <cstring>

namespace Vellum
{
namespace DataIO
{
Chain::Chain() {}

Chain::~Chain() {}

uint64 Chain::data_size() const
{
    uint64 total = 0;
    for (const_iterator i = begin(); i != end(); ++i)
        total += i->size();
    return total;
}

void Chain::push_front(Templates::auto_ptr<Slice> slice)
{
    if (slice)
        slices_.push_front(slice.release());
}

void Chain::push_back(Templates::auto_ptr<Slice> slice)
{
    if (!slice || slice->size() == 0)
        return;
    if (!slices_.empty())
    {
        iterator last = end();
        --last;
        if (last->merge(*slice))
            return;
    }
    slices_.push_back(slice.release());
}

void Chain::push_front(Chain & other)
{
    if (&other != this)
        slices_.move(slices_.begin(), other.slices_);
}

void Chain::push_back(Chain & other)
{
    if (&other != this)
        slices_.move(slices_.end(), other.slices_);
}

Templates::auto_ptr<Slice> Chain::erase(iterator position)
{
    return Templates::auto_ptr<Slice>(slices_.erase(position));
}

Slice const * Chain::findBase(uint64 offset, uint64 & within) const
{
    uint64 start = 0;
    for (const_iterator i = begin(); i != end(); ++i)
    {
        if (offset - start < i->size())
        {
            within = offset - start;
            return &*i;
        }
        start += i->size();
    }
    within = 0;
    return nullptr;
}

Templates::auto_ptr<Slice> Chain::makeSlice(uint64 offset, uint64 size) const
{
    uint64 within = 0;
    Slice const * first = findBase(offset, within);
    if (first == nullptr)
        return Templates::auto_ptr<Slice>(new Slice);

    // Never more than the chain holds from there on.
    uint64 available = first->size() - within;
    for (Slice const * s = first->next(); available < size && s != end().node(); s = s->next())
        available += s->size();
    if (size > available)
        size = available;

    if (within + size <= first->size())
        return makeSliceFromSingleSlice(*first, within, size);
    return makeSliceFromSeveralSlices(*first, within, size);
}

Templates::auto_ptr<Slice> Chain::makeSliceFromSingleSlice(Slice const & slice, uint64 within, uint64 size) const
{
    return Templates::auto_ptr<Slice>(new Slice(slice.block(), slice.offset() + within, size));
}

Templates::auto_ptr<Slice> Chain::makeSliceFromSeveralSlices(Slice const & first, uint64 within, uint64 size) const
{
    BlockHolder holder = first.block()->create(size);
    unsigned char * target = holder->data();
    uint64 done = 0;
    Slice const * stop = end().node();
    for (Slice const * s = &first; done < size && s != stop; s = s->next())
    {
        uint64 skip = s == &first ? within : 0;
        uint64 n = s->size() - skip;
        if (n > size - done)
            n = size - done;
        if (n != 0)
            std::memcpy(target + done, s->begin() + skip, size_t(n));
        done += n;
    }
    return Templates::auto_ptr<Slice>(new Slice(holder.block(), 0, size));
}

void Chain::chopBegin(uint64 size, Chain & out)
{
    if (&out == this)
        return;
    while (size != 0 && !empty())
    {
        Slice & head = *begin();
        if (head.size() <= size)
        {
            size -= head.size();
            out.push_back(erase(begin()));
        }
        else
        {
            Templates::auto_ptr<Slice> part(new Slice(head));
            part->cropEnd(head.size() - size);
            head.cropBegin(size);
            out.push_back(std::move(part));
            size = 0;
        }
    }
}

void Chain::chopEnd(uint64 size, Chain & out)
{
    if (&out == this)
        return;
    while (size != 0 && !empty())
    {
        iterator last = end();
        --last;
        Slice & tail = *last;
        if (tail.size() <= size)
        {
            size -= tail.size();
            out.push_front(erase(last));
        }
        else
        {
            Templates::auto_ptr<Slice> part(new Slice(tail));
            part->cropBegin(tail.size() - size);
            tail.cropEnd(size);
            out.push_front(std::move(part));
            size = 0;
        }
    }
}
} // namespace DataIO
} // namespace Vellum
