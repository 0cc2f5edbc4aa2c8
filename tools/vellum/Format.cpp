#include "Format.h"

#include <cstdio>
#include <nlohmann/json.hpp>

#include "Types/ProductVersion.h"
#include "Types/Timestamp.h"
#include "Types/UUID.h"
#include "Utils/Text.h"

namespace VellumTool
{
std::string narrow(Vellum::Templates::wstring const & text) { return Vellum::Utils::narrow(text).c_str(); }

std::string narrow(unsigned short const * text) { return Vellum::Utils::narrow(text).c_str(); }

std::string hexBytes(unsigned char const * bytes, unsigned size, char const * separator)
{
    static char const digits[] = "0123456789abcdef";
    std::string text;
    for (unsigned i = 0; i < size; ++i)
    {
        if (i != 0)
            text += separator;
        text += digits[bytes[i] >> 4];
        text += digits[bytes[i] & 15];
    }
    return text;
}

std::string dotted(unsigned char const * bytes, unsigned size) { return hexBytes(bytes, size, "."); }

std::string dotted(Vellum::KLV::Key const & key) { return dotted(key.rawBuffer(), 16); }

std::string hex(std::uint64_t value, unsigned digits)
{
    char buffer[24];
    std::snprintf(buffer, sizeof buffer, "0x%0*llx", int(digits), static_cast<unsigned long long>(value));
    return buffer;
}

std::string uuid(Vellum::Types::UUID const & uid) { return "urn:uuid:" + narrow(uid.toString(Vellum::Types::RFC4122)); }

std::string uuid(unsigned char const * bytes) { return uuid(Vellum::Types::UUID(bytes)); }

std::string umid(unsigned char const * bytes, unsigned size)
{
    std::string text = "urn:smpte:umid:";
    for (unsigned i = 0; i < size; i += 4)
        text += (i != 0 ? "." : "") + hexBytes(bytes + i, 4, "");
    return text;
}

std::string rational(std::int64_t numerator, std::int64_t denominator)
{
    return std::to_string(numerator) + "/" + std::to_string(denominator);
}

std::string timestamp(Vellum::Types::Timestamp const & v)
{
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%04u-%02u-%02uT%02u:%02u:%02u.%03uZ", unsigned(v.year()),
                  unsigned(v.month()) % 100, unsigned(v.day()) % 100, unsigned(v.hour()) % 100,
                  unsigned(v.minute()) % 100, unsigned(v.second()) % 100, unsigned(v.milliSecond()));
    return buffer;
}

std::string productVersion(Vellum::Types::ProductVersion const & v)
{
    return std::to_string(v.major()) + "." + std::to_string(v.minor()) + "." + std::to_string(v.patch()) + "." +
           std::to_string(v.build()) + "." + std::to_string(static_cast<int>(v.releaseVersion()));
}

void printJson(nlohmann::ordered_json const & document)
{
    std::printf("%s\n", document.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace).c_str());
}

std::string reason(Vellum::Exceptions::BaseException const & e) { return narrow(e.message()); }

int fileFailure(std::string const & path, std::string const & text)
{
    std::fflush(stdout);
    std::fprintf(stderr, "vellum: %s: %s\n", path.c_str(), text.c_str());
    return 1;
}

int fileFailure(std::string const & path, Vellum::Exceptions::BaseException const & e)
{
    return fileFailure(path, reason(e));
}
} // namespace VellumTool
