#pragma once
// Small helpers for composing interface text.

#include "Platform/Types.h"
#include "Templates/Containers.h"

namespace Vellum
{
namespace Utils
{
// UTF-8 (plain ASCII in most uses) to interface text.
Templates::wstring wide(char const * text);
Templates::wstring wide(Templates::string const & text);
// Interface text to UTF-8.
Templates::string narrow(Templates::wstring const & text);
Templates::string narrow(unsigned short const * text);

Templates::wstring decimal(int64 value);
Templates::wstring decimal(uint64 value);
inline Templates::wstring decimal(int value) { return decimal(int64(value)); }
inline Templates::wstring decimal(unsigned value) { return decimal(uint64(value)); }
// Lower-case hexadecimal without prefix, at least `digits` digits.
Templates::wstring hexadecimal(uint64 value, unsigned digits = 1);
} // namespace Utils
} // namespace Vellum
