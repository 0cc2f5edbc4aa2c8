#include "Types/Factories/UID.h"

#include <gtest/gtest.h>

#include <cstring>
#include <ctime>
#include <set>
#include <thread>

#include "ByteCoders/BCD.h"
#include "Platform/Platform.h"
#include "Types/IdentifierTestSupport.h"
#include "Utils/Calendar.h"
#include "Utils/Test/DeterministicScope.h"

using namespace Vellum;
using namespace Vellum::IdentifierTest;
using namespace Vellum::Types::Factories::UID;
using Types::UMID32;
using Types::UUID;

namespace
{
uint32 hostWord(unsigned char const * bytes)
{
    uint32 value;
    std::memcpy(&value, bytes, 4);
    return value;
}

Bytes macBytes()
{
    return bytesOf(Platform::Network::macAddress(), 6);
}

std::string environment(char const * name)
{
    Templates::wstring value;
    if (!Platform::getenv(w(name).c_str(), value))
        return "<unset>";
    return n(value);
}

// Sets an environment variable for the life of the object.
class EnvironmentValue
{
public:
    EnvironmentValue(char const * name, char const * value) : name_(name), old_(environment(name))
    {
        Platform::setenv(w(name).c_str(), w(value).c_str());
    }
    ~EnvironmentValue() { Platform::setenv(w(name_).c_str(), w(old_ == "<unset>" ? "" : old_).c_str()); }

private:
    std::string name_;
    std::string old_;
};

int millisecondsOfDay(Platform::Time const & time)
{
    return ((time.hours * 60 + time.minutes) * 60 + time.seconds) * 1000 + time.milliseconds;
}

// Distance of two times of day in milliseconds, across midnight.
int dayDistance(int a, int b)
{
    int d = a > b ? a - b : b - a;
    return d > 43200000 ? 86400000 - d : d;
}

// Bytes 16 to 23 of a UMID with an SMPTE or IEEE 1394 material number: time of day, date, zone.
void expectTimeAndDate(UMID32 const & umid, int before)
{
    unsigned char const * m = umid.rawBuffer() + 16;
    EXPECT_LE(dayDistance(int(hostWord(m)), before), 2000);
    int mjd = 0;
    ByteCoders::decodeBCD(m + 4, 3, mjd);
    EXPECT_LE(std::abs(mjd - int(Utils::Calendar::getModifiedJulianDate())), 1);
    EXPECT_EQ((Utils::Calendar::getTimeZone() & 63) | 0x80, m[7]);
}

void expectLayout(UMID32 const & umid, unsigned char materialType, unsigned char numberTypes)
{
    unsigned char const label[10] = {0x06, 0x0a, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x05, 0x01, 0x01};
    EXPECT_EQ(bytesOf(label, 10), bytesOf(umid.rawBuffer(), 10));
    EXPECT_EQ(materialType, umid.rawBuffer()[10]);
    EXPECT_EQ(numberTypes, umid.rawBuffer()[11]);
    EXPECT_EQ(0x13, umid.rawBuffer()[12]);
}
} // namespace

TEST(UIDGenerationTest, DeterministicScopeCountsFromOne)
{
    UUID first, second;
    UMID32 umid;
    {
        Utils::Test::DeterministicScope scope;
        EXPECT_EQ("true", environment("deterministic_uids"));
        EXPECT_EQ("win32", n(Platform::platformName()));

        first = generateUUID(TIME_SNAP_VERSION_1);
        second = generateUUID(TIME_SNAP_VERSION_4);
        // The arguments do not matter here, not even those that have no generator.
        umid = generateBasicUMID(MaterialType(13), MNMI_MASKED, INMI_COPY, TIME_SNAP_VERSION_2, 99);
        UUID third = generateUUID(TIME_SNAP_VERSION_3);
        EXPECT_EQ(4u, hostWord(third.rawBuffer()));
    }
    EXPECT_EQ(1u, hostWord(first.rawBuffer()));
    EXPECT_EQ(2u, hostWord(second.rawBuffer()));
    EXPECT_EQ(Bytes(12, 0x01), bytesOf(second.rawBuffer() + 4, 12));
    EXPECT_EQ(3u, hostWord(umid.rawBuffer()));
    EXPECT_EQ(Bytes(28, 0x01), bytesOf(umid.rawBuffer() + 4, 28));

    // Afterwards: the real platform name and generated identifiers.
    EXPECT_EQ("false", environment("deterministic_uids"));
    EXPECT_EQ(n(Platform::realPlatformName()), n(Platform::platformName()));
    UUID generated = generateUUID(TIME_SNAP_VERSION_4);
    EXPECT_EQ(0x40, generated.rawBuffer()[6] & 0xF0);
    EXPECT_EQ(macBytes(), bytesOf(generated.rawBuffer() + 10, 6));

    // A new scope starts the count afresh.
    {
        Utils::Test::DeterministicScope scope;
        EXPECT_EQ(1u, hostWord(generateUUID(TIME_SNAP_VERSION_4).rawBuffer()));
        EXPECT_EQ(2u, hostWord(generateBasicUMID(MaterialType(1), MNMI_SMPTE, INMI_LOCAL).rawBuffer()));
    }
}

TEST(UIDGenerationTest, OnlyTheExactValueTrueIsDeterministic)
{
    for (char const * value : {"TRUE", "true "})
    {
        EnvironmentValue set("deterministic_uids", value);
        EXPECT_NE(Bytes(12, 0x01), bytesOf(generateUUID(TIME_SNAP_VERSION_4).rawBuffer() + 4, 12)) << value;
    }
    // The variable alone, without the scope, is enough.
    EnvironmentValue set("deterministic_uids", "true");
    UUID a = generateUUID(TIME_SNAP_VERSION_4);
    UUID b = generateUUID(TIME_SNAP_VERSION_4);
    EXPECT_EQ(Bytes(12, 0x01), bytesOf(a.rawBuffer() + 4, 12));
    EXPECT_EQ(hostWord(a.rawBuffer()) + 1, hostWord(b.rawBuffer()));
}

TEST(UIDGenerationTest, Version1UUIDsFollowTheClock)
{
    Platform::Time before = Platform::utctime();
    UUID a = generateUUID(TIME_SNAP_VERSION_1);
    UUID b = generateUUID(TIME_SNAP_VERSION_1);
    std::time_t now = std::time(nullptr);
    EXPECT_NE(a, b);

    for (UUID const * uuid : {&a, &b})
    {
        unsigned char const * u = uuid->rawBuffer();
        EXPECT_EQ(0x10, u[6] & 0xF0);
        EXPECT_EQ(0x80, u[8] & 0xC0);
        EXPECT_EQ(macBytes(), bytesOf(u + 10, 6));

        // Time low, mid and high, in 100 ns steps since 15 October 1582.
        uint64 t = (uint64(u[6] & 0x0F) << 56) | (uint64(u[7]) << 48) | (uint64(u[4]) << 40) |
                   (uint64(u[5]) << 32) | (uint64(u[0]) << 24) | (uint64(u[1]) << 16) | (uint64(u[2]) << 8) |
                   uint64(u[3]);
        uint64 milliseconds = t / 10000;
        // The clock is the local one: allow any time zone on the date.
        int64 unixSeconds = int64(milliseconds / 1000) - int64(12219292800LL);
        EXPECT_LE(std::llabs(unixSeconds - int64(now)), 15 * 3600);
        EXPECT_LE(dayDistance(int(milliseconds % 86400000), millisecondsOfDay(before)), 2000);
    }
}

TEST(UIDGenerationTest, Version4UUIDsAreRandom)
{
    std::set<UUID> seen;
    for (int i = 0; i < 200; ++i)
    {
        UUID uuid = generateUUID(TIME_SNAP_VERSION_4);
        EXPECT_EQ(0x40, uuid.rawBuffer()[6] & 0xF0);
        EXPECT_EQ(0x80, uuid.rawBuffer()[8] & 0xC0);
        EXPECT_EQ(macBytes(), bytesOf(uuid.rawBuffer() + 10, 6));
        seen.insert(uuid);
    }
    EXPECT_EQ(200u, seen.size());
}

TEST(UIDGenerationTest, OtherTimeSnapsAreRefusedOrLeaveHalfTheBytes)
{
    EXPECT_EQ(thrown<Exceptions::NotImplemented>("setUUIDTimeSnap:: TIME_SNAP_VERSION_2 not implemented: use TIME_SNAP_VERSION_1"),
              thrownBy([] { generateUUID(TIME_SNAP_VERSION_2); }));
    EXPECT_EQ("setUUIDTimeSnap:: TIME_SNAP_VERSION_3 not implemented: use TIME_SNAP_VERSION_1",
              thrownBy([] { generateUUID(TIME_SNAP_VERSION_3); }).message);

    // Without a time snap the clock sequence and node move to the front.
    UUID half = generateUUID(TimeSnapVersion(9));
    EXPECT_EQ(0x80, half.rawBuffer()[0] & 0xC0);
    EXPECT_EQ(macBytes(), bytesOf(half.rawBuffer() + 2, 6));
    EXPECT_EQ(Bytes(8, 0), bytesOf(half.rawBuffer() + 8, 8));
}

TEST(UIDGenerationTest, UMIDLayoutForEveryInstanceNumberType)
{
    unsigned int const instanceValue = 0x11223344;
    unsigned char host[4];
    std::memcpy(host, &instanceValue, 4);

    expectLayout(generateBasicUMID(MaterialType(13), MNMI_SMPTE, INMI_LOCAL, TIME_SNAP_VERSION_1, instanceValue), 13, 0x10);
    UMID32 prs24 = generateBasicUMID(MaterialType(1), MNMI_SMPTE, INMI_PRS24, TIME_SNAP_VERSION_1, instanceValue);
    expectLayout(prs24, 1, 0x11);
    EXPECT_EQ(bytesOf(host + 1, 3), bytesOf(prs24.rawBuffer() + 13, 3));
    expectLayout(generateBasicUMID(MaterialType(2), MNMI_SMPTE, INMI_PRS16, TIME_SNAP_VERSION_1, instanceValue), 2, 0x12);
    UMID32 copy = generateBasicUMID(MaterialType(0x0F), MNMI_SMPTE, INMI_COPY, TIME_SNAP_VERSION_1, 0xABCD);
    expectLayout(copy, 0x0F, 0x13);
    EXPECT_EQ(0xCD, copy.rawBuffer()[13]);

    // The random instance numbers differ from one UMID to the next.
    std::set<std::vector<unsigned char>> instances;
    for (int i = 0; i < 20; ++i)
        instances.insert(bytesOf(generateBasicUMID(MaterialType(13), MNMI_SMPTE, INMI_PRS16).rawBuffer() + 13, 3));
    EXPECT_GT(instances.size(), 15u);

    // An instance number type without a rule leaves the instance number zero.
    UMID32 unknown = generateBasicUMID(MaterialType(1), MNMI_SMPTE, InstanceNumberType(5), TIME_SNAP_VERSION_1, 7);
    expectLayout(unknown, 1, 0x15);
    EXPECT_EQ(Bytes(3, 0), bytesOf(unknown.rawBuffer() + 13, 3));
}

TEST(UIDGenerationTest, UMIDMaterialNumbers)
{
    Platform::Time now = Platform::utctime();
    Bytes const mac = macBytes();

    for (MaterialNumberType type : {MNMI_NOT_DEFINED, MNMI_SMPTE})
    {
        UMID32 smpte = generateBasicUMID(MaterialType(13), type, INMI_PRS16);
        expectLayout(smpte, 13, static_cast<unsigned char>(type | INMI_PRS16));
        expectTimeAndDate(smpte, millisecondsOfDay(now));
        EXPECT_EQ(mac, bytesOf(smpte.rawBuffer() + 26, 6));
    }

    UMID32 ieee = generateBasicUMID(MaterialType(13), MNMI_IEEE1394, INMI_LOCAL);
    expectLayout(ieee, 13, 0x40);
    expectTimeAndDate(ieee, millisecondsOfDay(now));
    EXPECT_EQ(bytesOf(mac.data(), 3), bytesOf(ieee.rawBuffer() + 24, 3));
    EXPECT_EQ(Bytes(2, 0xFF), bytesOf(ieee.rawBuffer() + 27, 2));
    EXPECT_EQ(bytesOf(mac.data() + 3, 3), bytesOf(ieee.rawBuffer() + 29, 3));

    // A UUID as the material number, made by the time snap asked for.
    UMID32 random = generateBasicUMID(MaterialType(13), MNMI_UUID, INMI_LOCAL, TIME_SNAP_VERSION_4);
    expectLayout(random, 13, 0x20);
    EXPECT_EQ(0x40, random.rawBuffer()[16 + 6] & 0xF0);
    EXPECT_EQ(mac, bytesOf(random.rawBuffer() + 26, 6));
    EXPECT_EQ(0x10, generateBasicUMID(MaterialType(13), MNMI_UUID, INMI_LOCAL, TIME_SNAP_VERSION_1).rawBuffer()[16 + 6] & 0xF0);

    Thrown v2 = thrownBy([] { generateBasicUMID(MaterialType(13), MNMI_UUID, INMI_LOCAL, TIME_SNAP_VERSION_2); });
    EXPECT_EQ("setUUIDTimeSnap:: TIME_SNAP_VERSION_2 not implemented: use TIME_SNAP_VERSION_1", v2.message);

    EXPECT_EQ(thrown<Exceptions::NotImplemented>("setMaterialNumber:: MNMI_MASKED not implemented: use other type"),
              thrownBy([] { generateBasicUMID(MaterialType(13), MNMI_MASKED, INMI_LOCAL); }));

    // A material number type without a rule leaves the number zero.
    UMID32 none = generateBasicUMID(MaterialType(13), MaterialNumberType(80), INMI_COPY, TIME_SNAP_VERSION_1, 1);
    expectLayout(none, 13, 0x53);
    EXPECT_EQ(Bytes(16, 0), bytesOf(none.rawBuffer() + 16, 16));
}

TEST(UIDGenerationTest, ThreadsNeverGetTheSameUUID)
{
    unsigned const perThread = 500;
    std::vector<std::vector<UUID>> made(4);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < made.size(); ++i)
        threads.emplace_back([&made, i] {
            for (unsigned k = 0; k < perThread; ++k)
                made[i].push_back(generateUUID(TIME_SNAP_VERSION_1));
        });
    for (std::thread & thread : threads)
        thread.join();
    std::set<UUID> all;
    for (std::vector<UUID> const & list : made)
        all.insert(list.begin(), list.end());
    EXPECT_EQ(made.size() * perThread, all.size());
}
