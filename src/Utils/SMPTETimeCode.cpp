#include "Utils/SMPTETimeCode.h"

#include <cstring>
#include <ostream>

#include "Exceptions/Exceptions.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace Utils
{
struct TimeCode::Impl
{
    VELLUM_CLASS_ALLOCATION
    unsigned char frameRate;
    unsigned char hours;
    unsigned char minutes;
    unsigned char seconds;
    unsigned char frames;
    bool dropFrame;
    bool defined;
    bool fieldPhase;
};

namespace
{
// At least two digits, zero padded.
Templates::wstring twoDigits(unsigned value)
{
    Templates::wstring text = decimal(value);
    if (text.size() < 2)
        text.insert(text.begin(), static_cast<unsigned short>('0'));
    return text;
}

Templates::wstring clockText(unsigned hours, unsigned minutes, unsigned seconds, unsigned frames)
{
    Templates::wstring colon = wide(":");
    return twoDigits(hours) + colon + twoDigits(minutes) + colon + twoDigits(seconds) + colon + twoDigits(frames);
}

void checkFrameRate(unsigned char frameRate)
{
    THROW_UNLESS_TEXT(InvalidValue, frameRate > 0, "frameRate_ > 0", "Invalid frameRate.");
}

// Drop frame is known at 30 and 60 frames per second; 24 is let through as well.
void checkDropFrameRate(unsigned char frameRate)
{
    if (frameRate == 30 || frameRate == 60 || frameRate == 24)
        return;
    Templates::wstring text = wide("Drop frame only allowed in 30 or 60 fps timecode and not for ");
    text += decimal(unsigned(frameRate));
    text += wide(" fps timecode.");
    VELLUM_THROW(InvalidValue, text);
}
} // namespace

TimeCode::TimeCode() : impl_(new Impl())
{
}

TimeCode::TimeCode(unsigned char frameRate) : TimeCode(frameRate, 0, 0, 0, 0, false, false)
{
}

TimeCode::TimeCode(unsigned char frameRate, unsigned char hours, unsigned char minutes, unsigned char seconds,
                   unsigned char frames, bool dropFrame, bool fieldPhase)
    : impl_(new Impl())
{
    checkFrameRate(frameRate);
    if (dropFrame)
        checkDropFrameRate(frameRate);
    impl_->frameRate = frameRate;
    impl_->hours = hours;
    impl_->minutes = minutes;
    impl_->seconds = seconds;
    impl_->frames = frames;
    impl_->dropFrame = dropFrame;
    impl_->defined = true;
    impl_->fieldPhase = fieldPhase;
    validate(hours, minutes, seconds, frames, dropFrame, fieldPhase);
}

TimeCode::TimeCode(unsigned char frameRate, int64 frameCounter, bool dropFrame) : impl_(new Impl())
{
    checkFrameRate(frameRate);
    impl_->frameRate = frameRate;
    if (frameCounter < 0)
        return;
    if (dropFrame)
        checkDropFrameRate(frameRate);
    impl_->dropFrame = dropFrame;
    impl_->defined = true;
    assignFromCounter(frameCounter);
    validate(impl_->hours, impl_->minutes, impl_->seconds, impl_->frames, impl_->dropFrame, impl_->fieldPhase);
}

TimeCode::TimeCode(TimeCode const & other) : impl_(new Impl(*other.impl_))
{
}

TimeCode & TimeCode::operator=(TimeCode const & other)
{
    *impl_ = *other.impl_;
    return *this;
}

TimeCode::~TimeCode() = default;

unsigned char TimeCode::multiplexFactor() const
{
    return impl_->defined && (impl_->frameRate == 50 || impl_->frameRate == 60) ? 2 : 1;
}

void TimeCode::validate(unsigned char hours, unsigned char minutes, unsigned char seconds, unsigned char frames,
                        bool dropFrame, bool fieldPhase) const
{
    THROW_UNLESS_TEXT(InvalidValue, !fieldPhase || multiplexFactor() != 1, "this -> multiplexFactor () != 1",
                      "Field Phase value is only supported for frame rate of 60 or 50.");
    if (!(hours < 24 && minutes < 60 && seconds < 60 && frames < impl_->frameRate / multiplexFactor()))
    {
        Templates::wstring text = wide("Invalid value of ");
        text += clockText(hours, minutes, seconds, frames);
        text += wide(" for ");
        text += decimal(unsigned(impl_->frameRate));
        text += wide(" fps timecode");
        VELLUM_THROW(InvalidValue, text);
    }
    // Reads the minutes and frames already stored: a setter sees the state before its change.
    if (dropFrame && seconds == 0 && !(impl_->minutes % 10 == 0 || impl_->frames >= 2))
    {
        Templates::wstring text = wide("Invalid value of ");
        text += clockText(hours, minutes, 0, frames);
        text += wide(" for ");
        text += decimal(unsigned(impl_->frameRate));
        text += wide(" fps drop frame timecode");
        VELLUM_THROW(InvalidValue, text);
    }
}

void TimeCode::assignFromCounter(int64 frameCounter)
{
    int64 const rate = impl_->frameRate;
    int64 const m = multiplexFactor();
    int64 counter = frameCounter;
    int64 hours = 0;
    int64 minutes = 0;
    int64 rest = 0;
    if (!impl_->dropFrame)
    {
        counter %= rate * 86400;
        hours = counter / (rate * 3600);
        minutes = counter / (rate * 60) % 60;
        rest = counter % (rate * 60);
    }
    else
    {
        // Two frame numbers (two pairs at 50 and 60) are skipped at each minute but every tenth.
        int64 const perHour = rate * 3600 - m * 108;
        int64 const perMinute = rate * 60;
        counter %= perHour * 24;
        hours = counter / perHour;
        rest = counter % perHour;
        while (rest > 0 && rest >= perMinute)
        {
            rest -= perMinute;
            ++minutes;
            if (minutes % 10 != 0)
                rest += m * 2;
        }
    }
    int64 const inSecond = rest % rate;
    impl_->hours = static_cast<unsigned char>(hours);
    impl_->minutes = static_cast<unsigned char>(minutes);
    impl_->seconds = static_cast<unsigned char>(rest / rate);
    impl_->frames = static_cast<unsigned char>(inSecond / m);
    impl_->fieldPhase = inSecond % m != 0;
}

unsigned char TimeCode::frameRate() const
{
    return impl_->frameRate;
}

unsigned char TimeCode::hours() const
{
    return impl_->hours;
}

void TimeCode::hours(unsigned char value)
{
    validate(value, impl_->minutes, impl_->seconds, impl_->frames, impl_->dropFrame, impl_->fieldPhase);
    impl_->hours = value;
}

unsigned char TimeCode::minutes() const
{
    return impl_->minutes;
}

void TimeCode::minutes(unsigned char value)
{
    validate(impl_->hours, value, impl_->seconds, impl_->frames, impl_->dropFrame, impl_->fieldPhase);
    impl_->minutes = value;
}

unsigned char TimeCode::seconds() const
{
    return impl_->seconds;
}

void TimeCode::seconds(unsigned char value)
{
    validate(impl_->hours, impl_->minutes, value, impl_->frames, impl_->dropFrame, impl_->fieldPhase);
    impl_->seconds = value;
}

unsigned char TimeCode::frames() const
{
    return impl_->frames;
}

void TimeCode::frames(unsigned char value)
{
    validate(impl_->hours, impl_->minutes, impl_->seconds, value, impl_->dropFrame, impl_->fieldPhase);
    impl_->frames = value;
}

bool TimeCode::dropFrame() const
{
    return impl_->dropFrame;
}

void TimeCode::dropFrame(bool value)
{
    if (value)
        checkDropFrameRate(impl_->frameRate);
    validate(impl_->hours, impl_->minutes, impl_->seconds, impl_->frames, value, impl_->fieldPhase);
    impl_->dropFrame = value;
}

bool TimeCode::fieldPhase() const
{
    return impl_->fieldPhase;
}

void TimeCode::fieldPhase(bool value)
{
    validate(impl_->hours, impl_->minutes, impl_->seconds, impl_->frames, impl_->dropFrame, value);
    impl_->fieldPhase = value;
}

bool TimeCode::isDefined() const
{
    return impl_->defined;
}

uint64 TimeCode::toFrameCounter() const
{
    int64 const m = multiplexFactor();
    int64 counter = ((int64(impl_->hours) * 60 + impl_->minutes) * 60 + impl_->seconds) * impl_->frameRate +
                    impl_->frames * m + (impl_->fieldPhase ? 1 : 0);
    if (impl_->dropFrame)
        counter -= ((impl_->minutes - impl_->minutes / 10) * m + impl_->hours * m * 54) * 2;
    return uint64(counter);
}

Templates::wstring TimeCode::toString(bool showDropFrame, bool showFieldPhase) const
{
    if (!impl_->defined)
        return wide("--:--:--:--");
    Templates::wstring text = clockText(impl_->hours, impl_->minutes, impl_->seconds, impl_->frames);
    if (showFieldPhase && multiplexFactor() == 2)
        text += wide(impl_->fieldPhase ? ".1" : ".0");
    if (showDropFrame && impl_->dropFrame)
        text += wide(" (DF)");
    return text;
}

TimeCode & TimeCode::operator++()
{
    // Not a time: nothing to advance.
    if (!impl_->defined)
        return *this;
    unsigned const m = multiplexFactor();
    if (m == 2 && !impl_->fieldPhase)
        impl_->fieldPhase = true;
    else
    {
        impl_->fieldPhase = false;
        if (++impl_->frames >= impl_->frameRate / m)
        {
            impl_->frames = 0;
            if (++impl_->seconds >= 60)
            {
                impl_->seconds = 0;
                if (++impl_->minutes >= 60)
                {
                    impl_->minutes = 0;
                    if (++impl_->hours >= 24)
                        impl_->hours = 0;
                }
            }
        }
    }
    if (impl_->dropFrame && impl_->frames == 0 && impl_->seconds == 0 && impl_->minutes % 10 != 0)
        impl_->frames = 2;
    return *this;
}

TimeCode TimeCode::operator++(int)
{
    TimeCode before(*this);
    ++*this;
    return before;
}

bool operator==(TimeCode const & a, TimeCode const & b)
{
    if (!a.isDefined() || !b.isDefined())
        return a.isDefined() == b.isDefined();
    return a.hours() == b.hours() && a.minutes() == b.minutes() && a.seconds() == b.seconds() &&
           a.frames() == b.frames() && a.dropFrame() == b.dropFrame();
}

bool operator!=(TimeCode const & a, TimeCode const & b)
{
    return !(a == b);
}

bool operator<(TimeCode const & a, TimeCode const & b)
{
    if (a.hours() != b.hours())
        return a.hours() < b.hours();
    if (a.minutes() != b.minutes())
        return a.minutes() < b.minutes();
    if (a.seconds() != b.seconds())
        return a.seconds() < b.seconds();
    return a.frames() < b.frames();
}

std::ostream & operator<<(std::ostream & stream, TimeCode const & timeCode)
{
    return stream << narrow(timeCode.toString(true, true));
}

struct TimeCodeExtended::ExtendedImpl
{
    VELLUM_CLASS_ALLOCATION
    BinaryGroups binaryGroups;
    bool colorFrame;
};

TimeCodeExtended::TimeCodeExtended() : TimeCode(), extended_(new ExtendedImpl())
{
}

TimeCodeExtended::TimeCodeExtended(unsigned char frameRate, BinaryGroups const & binaryGroups, bool colorFrame)
    : TimeCode(frameRate), extended_(new ExtendedImpl())
{
    extended_->binaryGroups = binaryGroups;
    extended_->colorFrame = colorFrame;
}

TimeCodeExtended::TimeCodeExtended(unsigned char frameRate, unsigned char hours, unsigned char minutes,
                                   unsigned char seconds, unsigned char frames, bool dropFrame, bool fieldPhase,
                                   BinaryGroups const & binaryGroups, bool colorFrame)
    : TimeCode(frameRate, hours, minutes, seconds, frames, dropFrame, fieldPhase), extended_(new ExtendedImpl())
{
    extended_->binaryGroups = binaryGroups;
    extended_->colorFrame = colorFrame;
}

TimeCodeExtended::TimeCodeExtended(unsigned char frameRate, int64 frameCounter, bool dropFrame,
                                   BinaryGroups const & binaryGroups, bool colorFrame)
    : TimeCode(frameRate, frameCounter, dropFrame), extended_(new ExtendedImpl())
{
    extended_->binaryGroups = binaryGroups;
    extended_->colorFrame = colorFrame;
}

TimeCodeExtended::TimeCodeExtended(TimeCode const & timeCode, BinaryGroups const & binaryGroups, bool colorFrame)
    : TimeCode(timeCode), extended_(new ExtendedImpl())
{
    extended_->binaryGroups = binaryGroups;
    extended_->colorFrame = colorFrame;
}

TimeCodeExtended::TimeCodeExtended(TimeCodeExtended const & other)
    : TimeCode(other), extended_(new ExtendedImpl(*other.extended_))
{
}

TimeCodeExtended & TimeCodeExtended::operator=(TimeCodeExtended const & other)
{
    TimeCode::operator=(other);
    *extended_ = *other.extended_;
    return *this;
}

TimeCodeExtended::~TimeCodeExtended() = default;

TimeCodeExtended::BinaryGroups TimeCodeExtended::binaryGroups() const
{
    return extended_->binaryGroups;
}

void TimeCodeExtended::binaryGroups(BinaryGroups const & value)
{
    extended_->binaryGroups = value;
}

bool TimeCodeExtended::colorFrame() const
{
    return extended_->colorFrame;
}

void TimeCodeExtended::colorFrame(bool value)
{
    extended_->colorFrame = value;
}

TimeCodeExtended & TimeCodeExtended::operator++()
{
    TimeCode::operator++();
    return *this;
}

TimeCodeExtended TimeCodeExtended::operator++(int)
{
    TimeCodeExtended before(*this);
    TimeCode::operator++();
    return before;
}

bool operator==(TimeCodeExtended::BinaryGroups const & a, TimeCodeExtended::BinaryGroups const & b)
{
    return std::memcmp(a.group, b.group, sizeof a.group) == 0;
}

bool operator!=(TimeCodeExtended::BinaryGroups const & a, TimeCodeExtended::BinaryGroups const & b)
{
    return !(a == b);
}

bool operator==(TimeCodeExtended const & a, TimeCodeExtended const & b)
{
    return static_cast<TimeCode const &>(a) == static_cast<TimeCode const &>(b) &&
           a.binaryGroups() == b.binaryGroups() && a.colorFrame() == b.colorFrame();
}

bool operator!=(TimeCodeExtended const & a, TimeCodeExtended const & b)
{
    return !(a == b);
}
} // namespace Utils
} // namespace Vellum
