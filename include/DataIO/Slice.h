#pragma once
// A Slice is a window on a Block, holding one reference to it. Slices link into rings
// (SliceList) through their own two links, so lists of them need no nodes of their own.

#include <cstddef>
#include <iterator>
#include <type_traits>

#include "DataIO/Block.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace DataIO
{
class Slice
{
public:
    // Slices come from a pool of 48-byte cells.
    static void * operator new(std::size_t size);
    static void operator delete(void * p) noexcept;
    static void * operator new(std::size_t, void * where) noexcept { return where; }
    static void operator delete(void *, void *) noexcept {}

    // An empty window on the shared empty block.
    Slice();
    // A window of `size` bytes from `offset` in `block`; takes a reference of its own.
    Slice(Block * block, uint64 offset, uint64 size);
    // The same window with a reference of its own; the links are not copied.
    Slice(Slice const & other);
    // Takes the other's window; keeps its own links.
    Slice & operator=(Slice const & other);
    ~Slice();

    Block * block() const { return block_; }
    uint64 offset() const { return offset_; }
    uint64 size() const { return size_; }
    bool empty() const { return size_ == 0; }
    unsigned char const * begin() const { return data_ + offset_; }
    unsigned char const * end() const { return data_ + offset_ + size_; }

    Slice * next() const { return next_; }
    void next(Slice * slice) { next_ = slice; }
    Slice * previous() const { return previous_; }
    void previous(Slice * slice) { previous_ = slice; }

    // Drop bytes from the front or the back of the window; the count is not checked.
    void cropBegin(uint64 count)
    {
        offset_ += count;
        size_ -= count;
    }
    void cropEnd(uint64 count) { size_ -= count; }

    // Grows this window by the other when it continues it on the same block.
    bool merge(Slice const & other);

    // Cuts at `at`, an address within the window: this slice keeps the bytes before it, the
    // returned one (on the same block) has the bytes from it on.
    Templates::auto_ptr<Slice> splice(unsigned char const * at);

private:
    Block * block_;
    uint64 offset_;
    uint64 size_;
    unsigned char * data_;
    Slice * next_;
    Slice * previous_;
};

static_assert(sizeof(Slice) == 48, "Slice objects live in 48-byte pool cells");

// Walks a ring of slices. P is the value type, R the reference and Q the pointer type.
template <class P, class R, class Q>
class SliceIterator
{
public:
    typedef std::bidirectional_iterator_tag iterator_category;
    typedef P value_type;
    typedef std::ptrdiff_t difference_type;
    typedef Q pointer;
    typedef R reference;

    SliceIterator() : node_(nullptr) {}
    explicit SliceIterator(Slice * node) : node_(node) {}
    // A mutable iterator converts to a constant one.
    template <class P2, class R2, class Q2,
              class = typename std::enable_if<std::is_convertible<Q2, Q>::value>::type>
    SliceIterator(SliceIterator<P2, R2, Q2> const & other) : node_(other.node())
    {
    }

    R operator*() const { return *node_; }
    Q operator->() const { return node_; }
    SliceIterator & operator++()
    {
        node_ = node_->next();
        return *this;
    }
    SliceIterator operator++(int)
    {
        SliceIterator before(*this);
        node_ = node_->next();
        return before;
    }
    SliceIterator & operator--()
    {
        node_ = node_->previous();
        return *this;
    }
    SliceIterator operator--(int)
    {
        SliceIterator before(*this);
        node_ = node_->previous();
        return before;
    }
    template <class P2, class R2, class Q2>
    bool operator==(SliceIterator<P2, R2, Q2> const & other) const
    {
        return node_ == other.node();
    }
    template <class P2, class R2, class Q2>
    bool operator!=(SliceIterator<P2, R2, Q2> const & other) const
    {
        return node_ != other.node();
    }

    Slice * node() const { return node_; }

private:
    Slice * node_;
};

// An intrusive ring of slices with a sentinel slice of its own. The list owns what is linked
// into it: clear() and the destructor delete the slices.
class SliceList
{
public:
    VELLUM_CLASS_ALLOCATION
    typedef SliceIterator<Slice, Slice &, Slice *> iterator;
    typedef SliceIterator<Slice, Slice const &, Slice const *> const_iterator;

    SliceList();
    ~SliceList();

    iterator begin() { return iterator(sentinel_.next()); }
    iterator end() { return iterator(&sentinel_); }
    const_iterator begin() const { return const_iterator(sentinel_.next()); }
    const_iterator end() const { return const_iterator(const_cast<Slice *>(&sentinel_)); }

    // Links `slice` in before `position` and takes it over.
    iterator insert(iterator position, Slice * slice);
    // Unlinks the slice at `position` and hands it to the caller.
    Slice * erase(iterator position);
    void push_back(Slice * slice) { insert(end(), slice); }
    void push_front(Slice * slice) { insert(begin(), slice); }
    // Links all of `other`'s slices in before `position`; `other` is left empty.
    void move(iterator position, SliceList & other);
    // Deletes all slices.
    void clear();
    bool empty() const { return sentinel_.next() == &sentinel_; }
    // Counts the slices.
    uint64 size() const;

private:
    SliceList(SliceList const &) = delete;
    SliceList & operator=(SliceList const &) = delete;

    Slice sentinel_;
};
} // namespace DataIO
} // namespace Vellum
