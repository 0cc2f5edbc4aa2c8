#pragma once
// The one allocator of the library, and the class-level new and delete that route every object
// of the library's own classes through it.

#include <cstddef>
#include <new>
#include <type_traits>

#include "Platform/Types.h"

namespace Vellum
{
namespace Platform
{
class malloc_alloc
{
public:
    static void * allocate(uint64 size);
    static void deallocate(void * p, uint64 size);
    static void * reallocate(void * p, uint64 oldSize, uint64 newSize);
};

// Throws Exceptions::BadAlloc: the memory service had nothing left.
[[noreturn]] void outOfMemory();

// Standard allocator over malloc_alloc, for the Templates containers.
template <class T>
class Allocator
{
public:
    typedef T value_type;
    typedef std::size_t size_type;
    typedef std::ptrdiff_t difference_type;
    typedef std::true_type propagate_on_container_move_assignment;
    typedef std::true_type is_always_equal;

    Allocator() noexcept = default;
    template <class U>
    Allocator(Allocator<U> const &) noexcept
    {
    }

    T * allocate(std::size_t n)
    {
        if (n > std::size_t(-1) / sizeof(T))
            throw std::bad_alloc();
        void * p = malloc_alloc::allocate(uint64(n) * sizeof(T));
        if (p == nullptr)
            outOfMemory();
        return static_cast<T *>(p);
    }
    void deallocate(T * p, std::size_t n) noexcept { malloc_alloc::deallocate(p, uint64(n) * sizeof(T)); }

    template <class U>
    bool operator==(Allocator<U> const &) const noexcept
    {
        return true;
    }
    template <class U>
    bool operator!=(Allocator<U> const &) const noexcept
    {
        return false;
    }
};
} // namespace Platform
} // namespace Vellum

// Class-level allocation through malloc_alloc. Put it in the public section of a class.
#define VELLUM_CLASS_ALLOCATION                                                                   \
    static void * operator new(std::size_t size)                                                 \
    {                                                                                             \
        void * p = ::Vellum::Platform::malloc_alloc::allocate(size);                             \
        if (p == nullptr)                                                                         \
            ::Vellum::Platform::outOfMemory();                                                    \
        return p;                                                                                 \
    }                                                                                             \
    static void operator delete(void * p, std::size_t size) noexcept                             \
    {                                                                                             \
        ::Vellum::Platform::malloc_alloc::deallocate(p, size);                                    \
    }                                                                                             \
    static void * operator new(std::size_t, void * where) noexcept { return where; }            \
    static void operator delete(void *, void *) noexcept {}
