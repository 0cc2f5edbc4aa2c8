#pragma once
// A Chain is an ordered run of slices that reads as one byte sequence. It owns its slices; the
// blocks under them are shared by reference.

#include "DataIO/Slice.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace DataIO
{
class Chain
{
public:
    VELLUM_CLASS_ALLOCATION
    typedef SliceList::iterator iterator;
    typedef SliceList::const_iterator const_iterator;

    Chain();
    ~Chain();

    iterator begin() { return slices_.begin(); }
    iterator end() { return slices_.end(); }
    const_iterator begin() const { return slices_.begin(); }
    const_iterator end() const { return slices_.end(); }

    bool empty() const { return slices_.empty(); }
    // Bytes in all slices.
    uint64 data_size() const;
    uint64 slice_count() const { return slices_.size(); }
    void clear() { slices_.clear(); }

    // Links in at the front, as it is.
    void push_front(Templates::auto_ptr<Slice> slice);
    // Appends; an empty slice is dropped, and a slice that continues the last one on the same
    // block grows the last one instead.
    void push_back(Templates::auto_ptr<Slice> slice);
    // Take over all of `other`'s slices, as they are; `other` is left empty.
    void push_front(Chain & other);
    void push_back(Chain & other);

    // Unlinks the slice at `position` and hands it over.
    Templates::auto_ptr<Slice> erase(iterator position);

    // `size` bytes from `offset` as one slice: a window on the same block when they lie in one
    // slice, else a copy in a new block of the first slice's family. An offset past the data
    // gives an empty slice. The chain is not changed.
    Templates::auto_ptr<Slice> makeSlice(uint64 offset, uint64 size) const;

    // Moves the first `size` bytes to the end of `out` (all of them when there are fewer).
    void chopBegin(uint64 size, Chain & out);
    // Moves the last `size` bytes to the front of `out`, keeping their order.
    void chopEnd(uint64 size, Chain & out);

private:
    Chain(Chain const &) = delete;
    Chain & operator=(Chain const &) = delete;

    // The slice that holds the byte at `offset`, and the position within it; null past the data.
    Slice const * findBase(uint64 offset, uint64 & within) const;
    Templates::auto_ptr<Slice> makeSliceFromSingleSlice(Slice const & slice, uint64 within, uint64 size) const;
    Templates::auto_ptr<Slice> makeSliceFromSeveralSlices(Slice const & first, uint64 within, uint64 size) const;

    SliceList slices_;
};

// Takes chains.
class ChainSink
{
public:
    VELLUM_CLASS_ALLOCATION
    virtual ~ChainSink() {}
    virtual void write(Chain & chain) = 0;
};
} // namespace DataIO
} // namespace Vellum
