#pragma once
// One edit unit as an analyzer hands it out: the bare essence value (no key, no length), the time
// it covers and what the index needs to know of it.

#include "DataIO/Chain.h"
#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Templates/Rational.h"
#include "Utils/SMPTETimeCode.h"

namespace Vellum
{
namespace GenericContainer
{
struct EditUnit
{
    VELLUM_CLASS_ALLOCATION

    // The index entry flag byte of a key frame that starts a closed group.
    enum
    {
        DEFAULT_FLAGS = 128
    };

    EditUnit() : valid(false), duration(0, 1), auxiliaryCount(0), temporalReference(0), flags(DEFAULT_FLAGS) {}

    // False when the analyzer produced nothing.
    bool valid;
    // The essence value of this unit, slices of the analyzer's own blocks.
    DataIO::Chain data;
    // In seconds: an analyzer at edit rate N/D reports D/N.
    Templates::Rational<int> duration;
    // Added up when units are merged; the library reads nothing from it.
    uint64 auxiliaryCount;
    // Undefined unless the stream carries time code.
    Utils::TimeCode timeCode;
    // Display position counted from the last key frame of the group (long-GOP streams only).
    signed char temporalReference;
    // The IndexTables::IndexEntry flag byte of this unit.
    unsigned char flags;

private:
    EditUnit(EditUnit const &) = delete;
    EditUnit & operator=(EditUnit const &) = delete;
};
} // namespace GenericContainer
} // namespace Vellum
