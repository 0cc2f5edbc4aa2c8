#include "Platform/Platform.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netpacket/packet.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include "Exceptions/Exceptions.h"
#include "Platform/Services.h"

namespace Vellum
{
namespace Platform
{
namespace
{
Templates::string utf8(unsigned short const * text)
{
    return wstringToString(text);
}
} // namespace

Templates::wstring stringToWstring(char const * text)
{
    Templates::wstring out;
    if (text == nullptr)
        return out;
    unsigned char const * p = reinterpret_cast<unsigned char const *>(text);
    while (*p != 0)
    {
        uint32 c = *p;
        unsigned extra = 0;
        if (c < 0x80)
            extra = 0;
        else if ((c & 0xE0) == 0xC0)
        {
            extra = 1;
            c &= 0x1F;
        }
        else if ((c & 0xF0) == 0xE0)
        {
            extra = 2;
            c &= 0x0F;
        }
        else if ((c & 0xF8) == 0xF0)
        {
            extra = 3;
            c &= 0x07;
        }
        else
        {
            // Not UTF-8: take the byte as Latin-1.
            out.push_back(static_cast<unsigned short>(*p++));
            continue;
        }
        unsigned i = 1;
        for (; i <= extra; ++i)
        {
            if ((p[i] & 0xC0) != 0x80)
                break;
            c = (c << 6) | (p[i] & 0x3F);
        }
        // A broken sequence, or one beyond the last code point: take the lead byte as Latin-1.
        if (i <= extra || c > 0x10FFFF)
        {
            out.push_back(static_cast<unsigned short>(*p++));
            continue;
        }
        p += extra + 1;
        if (c >= 0x10000)
        {
            c -= 0x10000;
            out.push_back(static_cast<unsigned short>(0xD800 | (c >> 10)));
            out.push_back(static_cast<unsigned short>(0xDC00 | (c & 0x3FF)));
        }
        else
            out.push_back(static_cast<unsigned short>(c));
    }
    return out;
}

Templates::string wstringToString(wchar const * text)
{
    Templates::string out;
    if (text == nullptr)
        return out;
    for (wchar const * p = text; *p != 0; ++p)
    {
        uint32 c = *p;
        if (c >= 0xD800 && c < 0xDC00 && p[1] >= 0xDC00 && p[1] < 0xE000)
        {
            c = 0x10000 + ((c - 0xD800) << 10) + (p[1] - 0xDC00);
            ++p;
        }
        if (c < 0x80)
            out.push_back(char(c));
        else if (c < 0x800)
        {
            out.push_back(char(0xC0 | (c >> 6)));
            out.push_back(char(0x80 | (c & 0x3F)));
        }
        else if (c < 0x10000)
        {
            out.push_back(char(0xE0 | (c >> 12)));
            out.push_back(char(0x80 | ((c >> 6) & 0x3F)));
            out.push_back(char(0x80 | (c & 0x3F)));
        }
        else
        {
            out.push_back(char(0xF0 | (c >> 18)));
            out.push_back(char(0x80 | ((c >> 12) & 0x3F)));
            out.push_back(char(0x80 | ((c >> 6) & 0x3F)));
            out.push_back(char(0x80 | (c & 0x3F)));
        }
    }
    return out;
}

FILE * fopen(unsigned short const * path, unsigned short const * mode)
{
    if (path == nullptr || mode == nullptr)
        return nullptr;
    return std::fopen(utf8(path).c_str(), utf8(mode).c_str());
}

int open(unsigned short const * path, bool binary, bool readOnly)
{
    (void)binary; // no text mode on this system
    Templates::string name = utf8(path);
    int flags = readOnly ? O_RDONLY : (O_RDWR | O_CREAT);
    mode_t permissions = readOnly ? (S_IRUSR | S_IRGRP | S_IROTH) : (S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH);
    int descriptor = ::open(name.c_str(), flags | O_CLOEXEC, permissions);
    if (descriptor >= 0 && readOnly && ::flock(descriptor, LOCK_SH | LOCK_NB) != 0)
    {
        // Another party holds the file for writing.
        ::close(descriptor);
        descriptor = -1;
    }
    if (descriptor < 0)
    {
        Templates::wstring text = stringToWstring("Error opening file: ('");
        text += path;
        text += stringToWstring("'): ");
        text += lastErrorMessage();
        throw Exceptions::IOError(text.c_str(), __FILE__, __LINE__);
    }
    return descriptor;
}

void close(int descriptor)
{
    ::close(descriptor);
}

unsigned read(int descriptor, unsigned char * buffer, unsigned size)
{
    ssize_t got = ::read(descriptor, buffer, size);
    return got < 0 ? 0u : unsigned(got);
}

int64 getFileSize(FILE * file)
{
    if (file == nullptr)
        return -1;
    struct stat info;
    if (::fstat(fileno(file), &info) != 0)
        return -1;
    return int64(info.st_size);
}

int64 getFileSize(int descriptor)
{
    struct stat info;
    if (::fstat(descriptor, &info) != 0)
        return -1;
    return int64(info.st_size);
}

bool fileSeek(FILE * file, int64 position)
{
    if (file == nullptr || position < 0)
        return false;
    std::fflush(file);
    if (::fseeko(file, off_t(position), SEEK_SET) != 0)
        return false;
    return int64(::ftello(file)) >= position;
}

bool fileSeek(int descriptor, int64 position)
{
    ::lseek(descriptor, off_t(position), SEEK_SET);
    return true;
}

void copyFile(unsigned short const * from, unsigned short const * to)
{
    FILE * in = fopen(from, stringToWstring("rb").c_str());
    if (in == nullptr)
    {
        Templates::wstring text = stringToWstring("Error opening file: ('");
        text += from;
        text += stringToWstring("'): ");
        text += lastErrorMessage();
        throw Exceptions::IOError(text.c_str(), __FILE__, __LINE__);
    }
    FILE * out = fopen(to, stringToWstring("wb").c_str());
    if (out == nullptr)
    {
        std::fclose(in);
        Templates::wstring text = stringToWstring("Error opening file: ('");
        text += to;
        text += stringToWstring("'): ");
        text += lastErrorMessage();
        throw Exceptions::IOError(text.c_str(), __FILE__, __LINE__);
    }
    char buffer[65536];
    bool ok = true;
    for (;;)
    {
        size_t got = std::fread(buffer, 1, sizeof buffer, in);
        if (got != 0 && std::fwrite(buffer, 1, got, out) != got)
            ok = false;
        if (got < sizeof buffer || !ok)
            break;
    }
    ok = ok && !std::ferror(in);
    std::fclose(in);
    ok = (std::fclose(out) == 0) && ok;
    if (!ok)
    {
        Templates::wstring text = stringToWstring("Error copying file: ");
        text += lastErrorMessage();
        throw Exceptions::IOError(text.c_str(), __FILE__, __LINE__);
    }
}

bool unlink(unsigned short const * path)
{
    return ::unlink(utf8(path).c_str()) == 0;
}

bool getenv(unsigned short const * name, Templates::wstring & out)
{
    char const * value = std::getenv(utf8(name).c_str());
    if (value == nullptr || *value == 0)
        return false;
    out = stringToWstring(value);
    return true;
}

int setenv(unsigned short const * name, unsigned short const * value)
{
    return ::setenv(utf8(name).c_str(), utf8(value).c_str(), 1) == 0 ? 0 : -1;
}

bool tempDir(Templates::wstring & out)
{
    return getenv(stringToWstring("TMP").c_str(), out) || getenv(stringToWstring("TEMP").c_str(), out);
}

Templates::wstring tempDir()
{
    Templates::wstring out;
    if (!tempDir(out))
        throw Exceptions::OSError("No temporary directory defined in the system", __FILE__, __LINE__);
    return out;
}

Templates::wstring platformName()
{
    Templates::wstring name;
    if (getenv(stringToWstring("VELLUM_PLATFORM_NAME").c_str(), name))
        return name;
    return realPlatformName();
}

Templates::wstring realPlatformName()
{
    return stringToWstring("linux");
}

Templates::wstring lastErrorMessage()
{
    int error = errno;
    char buffer[256];
    buffer[0] = 0;
    // The GNU form gives a pointer that may or may not be the buffer.
    char const * text = strerror_r(error, buffer, sizeof buffer);
    return stringToWstring(text != nullptr ? text : buffer);
}

namespace
{
Time breakDown(bool local)
{
    struct timeval now;
    ::gettimeofday(&now, nullptr);
    time_t seconds = now.tv_sec;
    struct tm parts;
    // Both forms use the local conversion: timestamps written into files are stated in it.
    (void)local;
    struct tm * e = ::localtime_r(&seconds, &parts);
    if (e == nullptr)
    {
        if (local)
            THROW_UNLESS_TEXT(OSError, false, "e == 0", "Failed to get localtime");
        THROW_UNLESS_TEXT(OSError, false, "e == 0", "Failed to get GMT time");
    }
    Time t;
    t.milliseconds = int32(now.tv_usec / 1000);
    t.seconds = parts.tm_sec;
    t.minutes = parts.tm_min;
    t.hours = parts.tm_hour;
    t.dayOfMonth = parts.tm_mday;
    t.month = parts.tm_mon;
    t.year = parts.tm_year;
    t.daylightSaving = parts.tm_isdst;
    t.dayOfYear = parts.tm_yday;
    return t;
}
} // namespace

Time localtime()
{
    return breakDown(true);
}

Time utctime()
{
    return breakDown(false);
}

int getTimezone()
{
    ::tzset();
    return int(::timezone / 60);
}

void tzset()
{
    ::tzset();
}

void srand() {}

unsigned char rand()
{
    return static_cast<unsigned char>(Services::randomNumber() & 0xFF);
}

Templates::vector<unsigned char> firstMACAddress()
{
    Templates::vector<unsigned char> address;
    struct ifaddrs * list = nullptr;
    if (::getifaddrs(&list) != 0)
        return address;
    for (struct ifaddrs * entry = list; entry != nullptr; entry = entry->ifa_next)
    {
        if (entry->ifa_addr == nullptr || entry->ifa_addr->sa_family != AF_PACKET)
            continue;
        if ((entry->ifa_flags & IFF_LOOPBACK) != 0)
            continue;
        struct sockaddr_ll const * link = reinterpret_cast<struct sockaddr_ll const *>(entry->ifa_addr);
        if (link->sll_halen == 0)
            continue;
        bool allZero = true;
        for (unsigned i = 0; i < link->sll_halen; ++i)
            allZero = allZero && link->sll_addr[i] == 0;
        if (allZero)
            continue;
        address.assign(link->sll_addr, link->sll_addr + link->sll_halen);
        break;
    }
    ::freeifaddrs(list);
    return address;
}

namespace Network
{
unsigned char const * macAddress()
{
    static unsigned char buffer[6];
    static bool taken = false;
    if (!taken)
    {
        Templates::vector<unsigned char> address = firstMACAddress();
        for (unsigned i = 0; i < 6; ++i)
            buffer[i] = i < address.size() ? address[i] : 0;
        taken = true;
    }
    return buffer;
}
} // namespace Network
} // namespace Platform
} // namespace Vellum
