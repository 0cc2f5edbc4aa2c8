#pragma once
// Transfer of ownership: an interface that takes an auto_ptr takes the object.

#include <memory>

namespace Vellum
{
namespace Templates
{
template <class T>
using auto_ptr = std::unique_ptr<T>;
} // namespace Templates
} // namespace Vellum
