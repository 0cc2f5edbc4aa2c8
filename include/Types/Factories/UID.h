#pragma once
// Generation of new UUIDs and basic UMIDs. All generation in a process is serialised by one
// lock. With the environment variable "deterministic_uids" set to "true" the identifiers are
// made from a process-wide counter instead (see Utils::Test::DeterministicScope), so that output
// can be reproduced.

#include "Types/UMID.h"
#include "Types/UUID.h"

namespace Vellum
{
namespace Types
{
namespace Factories
{
namespace UID
{
// How the first eight bytes of a UUID are made.
enum TimeSnapVersion
{
    // From the clock, with a counter for calls within one millisecond.
    TIME_SNAP_VERSION_1 = 1,
    TIME_SNAP_VERSION_2 = 2,
    TIME_SNAP_VERSION_3 = 3,
    // Random.
    TIME_SNAP_VERSION_4 = 4
};

// How the material number of a UMID is made; the high nibble of byte 11.
enum MaterialNumberType
{
    MNMI_NOT_DEFINED = 0,
    MNMI_SMPTE = 16,
    MNMI_UUID = 32,
    MNMI_MASKED = 48,
    MNMI_IEEE1394 = 64
};

// How the instance number of a UMID is made; the low nibble of byte 11.
enum InstanceNumberType
{
    INMI_LOCAL = 0,
    INMI_PRS24 = 1,
    INMI_PRS16 = 2,
    INMI_COPY = 3
};

// Byte 10 of a UMID, as the caller gives it: MaterialType(13).
enum MaterialType : unsigned char
{
};

// A new UUID. TIME_SNAP_VERSION_2 and _3 throw NotImplemented.
Types::UUID generateUUID(TimeSnapVersion version = TIME_SNAP_VERSION_4);

// A new basic UMID. `timeSnap` is used by MNMI_UUID material numbers, `instanceValue` by the
// INMI_PRS24 and INMI_COPY instance numbers. MNMI_MASKED throws NotImplemented.
Types::UMID32 generateBasicUMID(MaterialType materialType, MaterialNumberType materialNumberType,
                                InstanceNumberType instanceNumberType,
                                TimeSnapVersion timeSnap = TIME_SNAP_VERSION_4, unsigned int instanceValue = 0);
} // namespace UID
} // namespace Factories
} // namespace Types
} // namespace Vellum
