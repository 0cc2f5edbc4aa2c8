#include "Types/Timestamp.h"

#include "Exceptions/Exceptions.h"
#include "Types/ValueHandleImpl.h"
#include "Types/WireOrder.h"

namespace Vellum
{
namespace Types
{
namespace
{
void checkClock(unsigned char hour, unsigned char minute, unsigned char second)
{
    THROW_UNLESS(InvalidValue, second < 60, "Invalid Time: Second must be smaller than 60");
    THROW_UNLESS(InvalidValue, minute < 60, "Invalid Time: Minute must be smaller than 60");
    THROW_UNLESS(InvalidValue, hour < 24, "Invalid Time: Hour must be smaller than 60");
}

void checkDate(unsigned char month, unsigned char day)
{
    THROW_UNLESS(InvalidValue, day < 32, "Invalid Date: Day must be smaller than 32");
    THROW_UNLESS(InvalidValue, month < 13, "Invalid Date: Month must be smaller than 13");
}
} // namespace

struct Timestamp::Impl : FixedBytes<8>
{
    VELLUM_CLASS_ALLOCATION
    using FixedBytes<8>::FixedBytes;

    Impl(unsigned short year, unsigned char month, unsigned char day, unsigned char hour, unsigned char minute,
         unsigned char second, unsigned char mSec4)
    {
        WireOrder::store(bytes, year);
        bytes[2] = month;
        bytes[3] = day;
        bytes[4] = hour;
        bytes[5] = minute;
        bytes[6] = second;
        bytes[7] = mSec4;
    }
};

Timestamp::Timestamp(KLV::Value & value) : impl_(new Impl(value)) {}

Timestamp::Timestamp(unsigned short year, unsigned char month, unsigned char day, unsigned char hour,
                     unsigned char minute, unsigned char second, unsigned short milliSecond)
    : impl_(nullptr)
{
    THROW_UNLESS(InvalidValue, milliSecond < 1000, "Invalid Time: Millisecond must be smaller than 1000");
    checkClock(hour, minute, second);
    checkDate(month, day);
    impl_.reset(new Impl(year, month, day, hour, minute, second, static_cast<unsigned char>(milliSecond / 4)));
}

Timestamp::Timestamp(unsigned short year, unsigned char month, unsigned char day, unsigned char hour,
                     unsigned char minute, unsigned char second, unsigned char mSec4)
    : impl_(nullptr)
{
    THROW_UNLESS(InvalidValue, mSec4 < 250, "Invalid Time: Millisecond must be smaller than 250");
    checkClock(hour, minute, second);
    checkDate(month, day);
    impl_.reset(new Impl(year, month, day, hour, minute, second, mSec4));
}

unsigned short Timestamp::year() const
{
    return WireOrder::load<unsigned short>(impl_->bytes);
}

unsigned char Timestamp::month() const
{
    return impl_->bytes[2];
}

unsigned char Timestamp::day() const
{
    return impl_->bytes[3];
}

unsigned char Timestamp::hour() const
{
    return impl_->bytes[4];
}

unsigned char Timestamp::minute() const
{
    return impl_->bytes[5];
}

unsigned char Timestamp::second() const
{
    return impl_->bytes[6];
}

unsigned char Timestamp::mSec4() const
{
    return impl_->bytes[7];
}

unsigned short Timestamp::milliSecond() const
{
    return static_cast<unsigned short>(impl_->bytes[7] * 4);
}

VELLUM_DEFINE_VALUE_HANDLE(Timestamp)
} // namespace Types
} // namespace Vellum
