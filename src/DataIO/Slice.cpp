#include "DataIO/Slice.h"

#include "DataIO/EmptyBlock.h"
#include "Platform/FixedSizeAllocator.h"

namespace Vellum
{
namespace DataIO
{
void * Slice::operator new(std::size_t)
{
    return Platform::sliceAllocator().allocate();
}

void Slice::operator delete(void * p) noexcept
{
    if (p != nullptr)
        Platform::sliceAllocator().deallocate(p);
}

Slice::Slice()
    : block_(&EmptyBlock::instance()), offset_(0), size_(0), data_(block_->data()), next_(nullptr),
      previous_(nullptr)
{
}

Slice::Slice(Block * block, uint64 offset, uint64 size)
    : block_(block != nullptr ? block : &EmptyBlock::instance()), offset_(offset), size_(size),
      data_(block_->data()), next_(nullptr), previous_(nullptr)
{
    block_->addReference();
}

Slice::Slice(Slice const & other)
    : block_(other.block_), offset_(other.offset_), size_(other.size_), data_(other.data_), next_(nullptr),
      previous_(nullptr)
{
    block_->addReference();
}

Slice & Slice::operator=(Slice const & other)
{
    // The new reference comes first, so that assigning a window on the same block never lets
    // the block go in between.
    other.block_->addReference();
    Block * old = block_;
    block_ = other.block_;
    offset_ = other.offset_;
    size_ = other.size_;
    data_ = other.data_;
    old->release();
    return *this;
}

Slice::~Slice()
{
    block_->release();
}

bool Slice::merge(Slice const & other)
{
    if (other.block_ != block_ || offset_ + size_ != other.offset_)
        return false;
    size_ += other.size_;
    return true;
}

Templates::auto_ptr<Slice> Slice::splice(unsigned char const * at)
{
    uint64 head = uint64(at - begin());
    Templates::auto_ptr<Slice> tail(new Slice(block_, offset_ + head, size_ - head));
    size_ = head;
    return tail;
}

SliceList::SliceList()
{
    sentinel_.next(&sentinel_);
    sentinel_.previous(&sentinel_);
}

SliceList::~SliceList()
{
    clear();
}

SliceList::iterator SliceList::insert(iterator position, Slice * slice)
{
    Slice * after = position.node();
    Slice * before = after->previous();
    slice->previous(before);
    slice->next(after);
    before->next(slice);
    after->previous(slice);
    return iterator(slice);
}

Slice * SliceList::erase(iterator position)
{
    Slice * slice = position.node();
    if (slice == &sentinel_)
        return nullptr;
    slice->previous()->next(slice->next());
    slice->next()->previous(slice->previous());
    slice->next(nullptr);
    slice->previous(nullptr);
    return slice;
}

void SliceList::move(iterator position, SliceList & other)
{
    if (&other == this || other.empty())
        return;
    Slice * first = other.sentinel_.next();
    Slice * last = other.sentinel_.previous();
    other.sentinel_.next(&other.sentinel_);
    other.sentinel_.previous(&other.sentinel_);

    Slice * after = position.node();
    Slice * before = after->previous();
    before->next(first);
    first->previous(before);
    last->next(after);
    after->previous(last);
}

void SliceList::clear()
{
    Slice * slice = sentinel_.next();
    sentinel_.next(&sentinel_);
    sentinel_.previous(&sentinel_);
    while (slice != &sentinel_)
    {
        Slice * next = slice->next();
        delete slice;
        slice = next;
    }
}

uint64 SliceList::size() const
{
    uint64 count = 0;
    for (Slice const * slice = sentinel_.next(); slice != &sentinel_; slice = slice->next())
        ++count;
    return count;
}
} // namespace DataIO
} // namespace Vellum
