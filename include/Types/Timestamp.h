#pragma once
// A date and time: year (2 bytes), month, day, hour, minute, second, and the milliseconds
// divided by 4.

#include "Types/ValueHandle.h"

namespace Vellum
{
namespace KLV
{
class Value;
}

namespace Types
{
class Timestamp : public SimpleDataType
{
public:
    // Reads 8 bytes as they are, without checks.
    explicit Timestamp(KLV::Value & value);
    // Month and day may be 0 (an unknown date). Out-of-range fields throw InvalidValue, checked
    // from the milliseconds up to the month. The milliseconds are kept divided by 4.
    Timestamp(unsigned short year, unsigned char month, unsigned char day, unsigned char hour,
              unsigned char minute, unsigned char second, unsigned short milliSecond);
    // The same with the milliseconds already divided by 4.
    Timestamp(unsigned short year, unsigned char month, unsigned char day, unsigned char hour,
              unsigned char minute, unsigned char second, unsigned char mSec4);

    unsigned short year() const;
    unsigned char month() const;
    unsigned char day() const;
    unsigned char hour() const;
    unsigned char minute() const;
    unsigned char second() const;
    unsigned char mSec4() const;
    // mSec4() * 4: always a multiple of 4.
    unsigned short milliSecond() const;

    VELLUM_VALUE_HANDLE(Timestamp)
};
} // namespace Types
} // namespace Vellum
