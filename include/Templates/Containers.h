#pragma once
// The containers of the interface: the standard ones, allocating through malloc_alloc.

#include <cstring>
#include <cwchar>
#include <list>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "Platform/MallocAlloc.h"

namespace Vellum
{
namespace Templates
{
template <class T>
using vector = std::vector<T, Platform::Allocator<T>>;
template <class T>
using list = std::list<T, Platform::Allocator<T>>;
template <class K, class V, class Less = std::less<K>>
using map = std::map<K, V, Less, Platform::Allocator<std::pair<K const, V>>>;
template <class K, class V, class Less = std::less<K>>
using multimap = std::multimap<K, V, Less, Platform::Allocator<std::pair<K const, V>>>;
template <class K, class Less = std::less<K>>
using set = std::set<K, Less, Platform::Allocator<K>>;
template <class A, class B>
using pair = std::pair<A, B>;

// Character traits for any integral code unit, 16-bit text in particular.
template <class C>
struct char_traits
{
    typedef C char_type;
    typedef unsigned long int_type;
    typedef std::streampos pos_type;
    typedef std::streamoff off_type;
    typedef std::mbstate_t state_type;

    static void assign(char_type & r, char_type const & a) noexcept { r = a; }
    static bool eq(char_type a, char_type b) noexcept { return a == b; }
    static bool lt(char_type a, char_type b) noexcept { return a < b; }
    static int compare(char_type const * a, char_type const * b, std::size_t n) noexcept
    {
        for (std::size_t i = 0; i < n; ++i)
        {
            if (a[i] < b[i])
                return -1;
            if (b[i] < a[i])
                return 1;
        }
        return 0;
    }
    static std::size_t length(char_type const * s) noexcept
    {
        std::size_t n = 0;
        while (s[n] != char_type())
            ++n;
        return n;
    }
    static char_type const * find(char_type const * s, std::size_t n, char_type const & a) noexcept
    {
        for (std::size_t i = 0; i < n; ++i)
            if (s[i] == a)
                return s + i;
        return nullptr;
    }
    static char_type * move(char_type * d, char_type const * s, std::size_t n) noexcept
    {
        if (n != 0)
            std::memmove(d, s, n * sizeof(char_type));
        return d;
    }
    static char_type * copy(char_type * d, char_type const * s, std::size_t n) noexcept
    {
        if (n != 0)
            std::memcpy(d, s, n * sizeof(char_type));
        return d;
    }
    static char_type * assign(char_type * d, std::size_t n, char_type a) noexcept
    {
        for (std::size_t i = 0; i < n; ++i)
            d[i] = a;
        return d;
    }
    static char_type to_char_type(int_type c) noexcept { return char_type(c); }
    static int_type to_int_type(char_type c) noexcept { return int_type(c); }
    static bool eq_int_type(int_type a, int_type b) noexcept { return a == b; }
    static int_type eof() noexcept { return int_type(-1); }
    static int_type not_eof(int_type c) noexcept { return c == eof() ? 0 : c; }
};

template <class C>
using basic_string = std::basic_string<C, char_traits<C>, Platform::Allocator<C>>;

// Interface text: UTF-16 code units.
typedef basic_string<unsigned short> wstring;
// Narrow text (source paths, conditions, UTF-8).
typedef std::basic_string<char, std::char_traits<char>, Platform::Allocator<char>> string;
} // namespace Templates
} // namespace Vellum
