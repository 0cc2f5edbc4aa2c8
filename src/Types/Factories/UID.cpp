#include "Types/Factories/UID.h"

#include <cstring>

#include "ByteCoders/BCD.h"
#include "Exceptions/Exceptions.h"
#include "Platform/Platform.h"
#include "Platform/Services.h"
#include "Platform/Synchronization.h"
#include "Utils/Calendar.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace Types
{
namespace Factories
{
namespace UID
{
namespace
{
static_assert(sizeof(unsigned int) == 4, "instance values are taken as four bytes");

// The first ten bytes of every basic UMID: the universal label and the length that follows it
// stand apart, in bytes 10 to 12.
unsigned char const UMID_LABEL[10] = {0x06, 0x0a, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x05, 0x01, 0x01};
unsigned char const UMID_LENGTH = 0x13;

char const DETERMINISTIC_COUNTER[] = "Vellum_Deterministic_Counter";

// Serialises all generation: the clock counter and the environment test are shared.
Platform::Synchronization::Mutex & generationMutex()
{
    static Platform::Synchronization::Mutex mutex;
    return mutex;
}

bool deterministic()
{
    Templates::wstring value;
    return Platform::getenv(Utils::wide("deterministic_uids").c_str(), value) && value == Utils::wide("true");
}

// The next value of the deterministic counter, in host byte order, over out[0..3].
void putDeterministicCounter(unsigned char * out)
{
    uint32 value = static_cast<uint32>(Platform::Services::Counting::Counter::counter(DETERMINISTIC_COUNTER).next());
    std::memcpy(out, &value, sizeof value);
}

void randomBytes(unsigned char * out, unsigned count)
{
    for (unsigned i = 0; i < count; ++i)
        out[i] = Platform::rand();
}

// Six bytes of the network adapter's address, or random ones without an adapter.
void hardwareAddress(unsigned char * out)
{
    unsigned char const * address = Platform::Network::macAddress();
    if (address != nullptr)
        std::memcpy(out, address, 6);
    else
        randomBytes(out, 6);
}

// The clock in 100 ns steps since 15 October 1582, with a counter in the low digits for calls
// that fall into one millisecond, laid out as the first eight bytes of a version 1 UUID.
void clockTimeSnap(unsigned char * out)
{
    // Guarded by the generation lock.
    static int64 counter = 0;

    Platform::Time now = Platform::utctime();
    int64 y = now.year;
    int64 days = (y + 299) / 400 - (y + 99) / 100 + (y + 3) / 4 + 77 + (y + 318) * 365 + now.dayOfYear - 287;
    int64 t = (((days * 24 + now.hours) * 60 + now.minutes) * 60 + now.seconds) * 1000 + now.milliseconds;
    t = t * 10000 + counter;
    if (++counter > 10000)
        counter = 0;

    uint64 bits = static_cast<uint64>(t);
    out[0] = static_cast<unsigned char>(bits >> 24);
    out[1] = static_cast<unsigned char>(bits >> 16);
    out[2] = static_cast<unsigned char>(bits >> 8);
    out[3] = static_cast<unsigned char>(bits);
    out[4] = static_cast<unsigned char>(bits >> 40);
    out[5] = static_cast<unsigned char>(bits >> 32);
    out[6] = static_cast<unsigned char>(((bits >> 56) & 0x0F) | 0x10);
    out[7] = static_cast<unsigned char>(bits >> 48);
}

// Fills 16 zeroed bytes with a new UUID of the given version.
void makeUUID(unsigned char * out, TimeSnapVersion version)
{
    // Where the clock sequence and the node go: behind the time snap, or at the very start
    // when the version makes no time snap.
    unsigned char * rest = out;
    switch (version)
    {
    case TIME_SNAP_VERSION_1:
        clockTimeSnap(out);
        rest = out + 8;
        break;
    case TIME_SNAP_VERSION_2:
        VELLUM_THROW(NotImplemented, "setUUIDTimeSnap:: TIME_SNAP_VERSION_2 not implemented: use TIME_SNAP_VERSION_1");
    case TIME_SNAP_VERSION_3:
        VELLUM_THROW(NotImplemented, "setUUIDTimeSnap:: TIME_SNAP_VERSION_3 not implemented: use TIME_SNAP_VERSION_1");
    case TIME_SNAP_VERSION_4:
        randomBytes(out, 8);
        out[6] = static_cast<unsigned char>((out[6] % 16) | 0x40);
        rest = out + 8;
        break;
    default:
        break;
    }
    randomBytes(rest, 2);
    rest[0] = static_cast<unsigned char>((rest[0] % 64) | 0x80);
    hardwareAddress(rest + 2);
}

// Bytes 0 to 7 of an SMPTE material number: the time of day in milliseconds in host byte
// order, the Modified Julian Date in BCD, and the time zone.
void smpteTimeAndDate(unsigned char * out)
{
    Platform::Time now = Platform::utctime();
    uint32 milliseconds =
        static_cast<uint32>(((now.hours * 60 + now.minutes) * 60 + now.seconds) * 1000 + now.milliseconds);
    std::memcpy(out, &milliseconds, sizeof milliseconds);
    ByteCoders::encodeBCD(out + 4, static_cast<int>(Utils::Calendar::getModifiedJulianDate()));
    out[7] = static_cast<unsigned char>((Utils::Calendar::getTimeZone() & 63) | 0x80);
}

void makeInstanceNumber(unsigned char * out, InstanceNumberType type, unsigned int instanceValue)
{
    switch (type)
    {
    case INMI_LOCAL:
    case INMI_PRS16:
        randomBytes(out, 3);
        break;
    case INMI_PRS24:
    {
        unsigned char host[sizeof instanceValue];
        std::memcpy(host, &instanceValue, sizeof host);
        std::memcpy(out, host + 1, 3);
        break;
    }
    case INMI_COPY:
        out[0] = static_cast<unsigned char>(instanceValue & 0xFF);
        randomBytes(out + 1, 2);
        break;
    default:
        break;
    }
}

// Fills 16 zeroed bytes with the material number of the given type.
void makeMaterialNumber(unsigned char * out, MaterialNumberType type, TimeSnapVersion timeSnap)
{
    switch (type)
    {
    case MNMI_NOT_DEFINED:
    case MNMI_SMPTE:
        smpteTimeAndDate(out);
        randomBytes(out + 8, 2);
        hardwareAddress(out + 10);
        break;
    case MNMI_UUID:
        makeUUID(out, timeSnap);
        break;
    case MNMI_MASKED:
        VELLUM_THROW(NotImplemented, "setMaterialNumber:: MNMI_MASKED not implemented: use other type");
    case MNMI_IEEE1394:
    {
        smpteTimeAndDate(out);
        unsigned char const * address = Platform::Network::macAddress();
        if (address != nullptr)
        {
            std::memcpy(out + 8, address, 3);
            std::memcpy(out + 13, address + 3, 3);
        }
        else
        {
            randomBytes(out + 8, 8);
        }
        out[11] = 0xFF;
        out[12] = 0xFF;
        break;
    }
    default:
        break;
    }
}
} // namespace

Types::UUID generateUUID(TimeSnapVersion version)
{
    Platform::Synchronization::ScopedLock lock(generationMutex());
    unsigned char bytes[Types::UUID::SIZE];
    if (deterministic())
    {
        std::memset(bytes, 0x01, sizeof bytes);
        putDeterministicCounter(bytes);
    }
    else
    {
        std::memset(bytes, 0, sizeof bytes);
        makeUUID(bytes, version);
    }
    return Types::UUID(bytes);
}

Types::UMID32 generateBasicUMID(MaterialType materialType, MaterialNumberType materialNumberType,
                                InstanceNumberType instanceNumberType, TimeSnapVersion timeSnap,
                                unsigned int instanceValue)
{
    Platform::Synchronization::ScopedLock lock(generationMutex());
    unsigned char bytes[Types::UMID32::SIZE];
    if (deterministic())
    {
        std::memset(bytes, 0x01, sizeof bytes);
        putDeterministicCounter(bytes);
        return Types::UMID32(bytes);
    }

    std::memset(bytes, 0, sizeof bytes);
    std::memcpy(bytes, UMID_LABEL, sizeof UMID_LABEL);
    bytes[10] = static_cast<unsigned char>(materialType);
    bytes[11] = static_cast<unsigned char>(unsigned(materialNumberType) | unsigned(instanceNumberType));
    bytes[12] = UMID_LENGTH;
    makeInstanceNumber(bytes + 13, instanceNumberType, instanceValue);
    makeMaterialNumber(bytes + 16, materialNumberType, timeSnap);
    return Types::UMID32(bytes);
}
} // namespace UID
} // namespace Factories
} // namespace Types
} // namespace Vellum
