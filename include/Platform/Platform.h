#pragma once
// Portability: files, environment, time, text conversion and the network adapter's address.

#include <cstdio>

#include "Platform/Types.h"
#include "Templates/Containers.h"

namespace Vellum
{
namespace Platform
{
// A broken-down time.
struct Time
{
    int32 milliseconds;
    int32 seconds;
    int32 minutes;
    int32 hours;
    int32 dayOfMonth;
    int32 month;     // from 0
    int32 year;      // since 1900
    int32 daylightSaving;
    int32 dayOfYear; // from 0
};

// Files. Paths are interface text; they reach the C library as UTF-8.
FILE * fopen(unsigned short const * path, unsigned short const * mode);
int open(unsigned short const * path, bool binary, bool readOnly);
void close(int descriptor);
unsigned read(int descriptor, unsigned char * buffer, unsigned size);
int64 getFileSize(FILE * file);
int64 getFileSize(int descriptor);
bool fileSeek(FILE * file, int64 position);
bool fileSeek(int descriptor, int64 position);
void copyFile(unsigned short const * from, unsigned short const * to);
bool unlink(unsigned short const * path);

// Environment.
bool getenv(unsigned short const * name, Templates::wstring & out);
int setenv(unsigned short const * name, unsigned short const * value);
bool tempDir(Templates::wstring & out);
Templates::wstring tempDir();
Templates::wstring platformName();
Templates::wstring realPlatformName();
Templates::wstring lastErrorMessage();

// Text: UTF-8 narrow text to and from UTF-16 interface text.
Templates::wstring stringToWstring(char const * text);
Templates::string wstringToString(wchar const * text);

// Time.
Time localtime();
Time utctime();
int getTimezone();
void tzset();

// Random numbers.
void srand();
unsigned char rand();

// The hardware address of the first network adapter; empty when there is none.
Templates::vector<unsigned char> firstMACAddress();

namespace Network
{
// Exactly 6 bytes, taken once and kept.
unsigned char const * macAddress();
} // namespace Network
} // namespace Platform
} // namespace Vellum
