#pragma once
// SMPTE time code: hours, minutes, seconds and frames at a whole frame rate, with drop frame and,
// at 50 and 60 frames per second, a field phase that tells which frame of a pair is meant.

#include <iosfwd>

#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"

namespace Vellum
{
namespace Utils
{
class TimeCode
{
public:
    VELLUM_CLASS_ALLOCATION
    // An undefined time code ("not a time") with a rate of 0.
    TimeCode();
    // 00:00:00:00 at that rate, without drop frame.
    explicit TimeCode(unsigned char frameRate);
    TimeCode(unsigned char frameRate, unsigned char hours, unsigned char minutes, unsigned char seconds,
             unsigned char frames, bool dropFrame, bool fieldPhase);
    // The time code of a frame counter; a negative counter gives an undefined time code.
    TimeCode(unsigned char frameRate, int64 frameCounter, bool dropFrame);
    TimeCode(TimeCode const & other);
    TimeCode & operator=(TimeCode const & other);
    virtual ~TimeCode();

    unsigned char frameRate() const;
    unsigned char hours() const;
    void hours(unsigned char value);
    unsigned char minutes() const;
    void minutes(unsigned char value);
    unsigned char seconds() const;
    void seconds(unsigned char value);
    // At 50 and 60 frames per second the frames count pairs.
    unsigned char frames() const;
    void frames(unsigned char value);
    bool dropFrame() const;
    void dropFrame(bool value);
    bool fieldPhase() const;
    void fieldPhase(bool value);
    bool isDefined() const;

    // Frames (fields at 50 and 60) since 00:00:00:00.
    uint64 toFrameCounter() const;
    // "hh:mm:ss:ff", with ".0" or ".1" for the field phase and " (DF)" for drop frame when asked;
    // "--:--:--:--" when undefined.
    Templates::wstring toString(bool showDropFrame = true, bool showFieldPhase = true) const;

    // One frame on (one field at 50 and 60), skipping the dropped frame numbers.
    TimeCode & operator++();
    TimeCode operator++(int);

private:
    struct Impl;

    unsigned char multiplexFactor() const;
    // Refuses a time code that these values would make; throws Exceptions::InvalidValue.
    void validate(unsigned char hours, unsigned char minutes, unsigned char seconds, unsigned char frames,
                  bool dropFrame, bool fieldPhase) const;
    void assignFromCounter(int64 frameCounter);

    Templates::auto_ptr<Impl> impl_;
};

// Two undefined time codes are equal; otherwise hours, minutes, seconds, frames and drop frame
// decide.
bool operator==(TimeCode const & a, TimeCode const & b);
bool operator!=(TimeCode const & a, TimeCode const & b);
// Orders by hours, minutes, seconds and frames.
bool operator<(TimeCode const & a, TimeCode const & b);
std::ostream & operator<<(std::ostream & stream, TimeCode const & timeCode);

// A time code with the binary groups and the colour frame flag that a system item carries.
class TimeCodeExtended : public TimeCode
{
public:
    VELLUM_CLASS_ALLOCATION
    // group[0] to group[2] are the binary group flags 0 to 2, group[3] to group[10] the binary
    // groups 3 to 10, one nibble each in the low four bits.
    struct BinaryGroups
    {
        BinaryGroups() : group() {}
        unsigned char group[11];
    };

    TimeCodeExtended();
    explicit TimeCodeExtended(unsigned char frameRate, BinaryGroups const & binaryGroups = BinaryGroups(),
                              bool colorFrame = false);
    TimeCodeExtended(unsigned char frameRate, unsigned char hours, unsigned char minutes, unsigned char seconds,
                     unsigned char frames, bool dropFrame, bool fieldPhase,
                     BinaryGroups const & binaryGroups = BinaryGroups(), bool colorFrame = false);
    TimeCodeExtended(unsigned char frameRate, int64 frameCounter, bool dropFrame,
                     BinaryGroups const & binaryGroups = BinaryGroups(), bool colorFrame = false);
    explicit TimeCodeExtended(TimeCode const & timeCode, BinaryGroups const & binaryGroups = BinaryGroups(),
                              bool colorFrame = false);
    TimeCodeExtended(TimeCodeExtended const & other);
    TimeCodeExtended & operator=(TimeCodeExtended const & other);
    ~TimeCodeExtended() override;

    BinaryGroups binaryGroups() const;
    void binaryGroups(BinaryGroups const & value);
    bool colorFrame() const;
    void colorFrame(bool value);

    TimeCodeExtended & operator++();
    TimeCodeExtended operator++(int);

private:
    struct ExtendedImpl;
    Templates::auto_ptr<ExtendedImpl> extended_;
};

bool operator==(TimeCodeExtended::BinaryGroups const & a, TimeCodeExtended::BinaryGroups const & b);
bool operator!=(TimeCodeExtended::BinaryGroups const & a, TimeCodeExtended::BinaryGroups const & b);
// The time codes, the binary groups and the colour frame flag must all be equal.
bool operator==(TimeCodeExtended const & a, TimeCodeExtended const & b);
bool operator!=(TimeCodeExtended const & a, TimeCodeExtended const & b);
} // namespace Utils
} // namespace Vellum
