#pragma once
// The text forms that every command prints: hex bytes, labels and keys, UIDs, rationals, dates,
// and the report of a file that cannot be read.

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>

#include "Exceptions/Exceptions.h"
#include "KLV/Key.h"
#include "Templates/Containers.h"

namespace Vellum
{
namespace Types
{
class ProductVersion;
class Timestamp;
class UUID;
} // namespace Types
} // namespace Vellum

namespace VellumTool
{
std::string narrow(Vellum::Templates::wstring const & text);
std::string narrow(unsigned short const * text);
// Lower-case hex digits of the bytes, with `separator` between two bytes.
std::string hexBytes(unsigned char const * bytes, unsigned size, char const * separator);
// "06.0e.2b.34...." in lower case: labels, keys, local tags.
std::string dotted(unsigned char const * bytes, unsigned size = 16);
std::string dotted(Vellum::KLV::Key const & key);
// "0x" and `digits` hex digits at least.
std::string hex(std::uint64_t value, unsigned digits);
// "urn:uuid:xxxxxxxx-xxxx-..."
std::string uuid(Vellum::Types::UUID const & uid);
std::string uuid(unsigned char const * bytes);
// "urn:smpte:umid:" and the bytes in groups of four, separated by dots.
std::string umid(unsigned char const * bytes, unsigned size);
std::string rational(std::int64_t numerator, std::int64_t denominator);
// "2018-06-22T19:24:06.000Z"
std::string timestamp(Vellum::Types::Timestamp const & value);
// "major.minor.patch.build.release"
std::string productVersion(Vellum::Types::ProductVersion const & value);

// The document on standard output, indented by two, with a final newline. Bytes that are not
// UTF-8 are replaced.
void printJson(nlohmann::ordered_json const & document);

// The text of a library failure without the place in the library's source.
std::string reason(Vellum::Exceptions::BaseException const & e);
// "vellum: FILE: TEXT" on standard error; gives the exit code of an unreadable file.
int fileFailure(std::string const & path, std::string const & text);
int fileFailure(std::string const & path, Vellum::Exceptions::BaseException const & e);
} // namespace VellumTool
