#include "Platform/Platform.h"

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "Exceptions/Exceptions.h"
#include "Platform/FixedSizeAllocator.h"
#include "Platform/Initializer.h"
#include "Platform/Services.h"
#include "Platform/Synchronization.h"
#include "Platform/Version.h"
#include "Utils/Text.h"

using namespace Vellum;

namespace
{
Templates::wstring W(char const * text)
{
    return Utils::wide(text);
}

std::string N(Templates::wstring const & text)
{
    return Utils::narrow(text).c_str();
}

// Sets or clears an environment variable for the life of the object, then puts it back.
class EnvironmentVariable
{
public:
    EnvironmentVariable(char const * name, char const * value) : name_(name)
    {
        char const * old = std::getenv(name);
        hadOld_ = old != nullptr;
        if (hadOld_)
            old_ = old;
        if (value != nullptr)
            ::setenv(name, value, 1);
        else
            ::unsetenv(name);
    }
    ~EnvironmentVariable()
    {
        if (hadOld_)
            ::setenv(name_.c_str(), old_.c_str(), 1);
        else
            ::unsetenv(name_.c_str());
    }

private:
    std::string name_;
    bool hadOld_;
    std::string old_;
};

struct Counted
{
    Counted() { ++created; }
    static int created;
};
int Counted::created = 0;

struct Slow
{
    Slow()
    {
        ++constructions;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    static std::atomic<int> constructions;
};
std::atomic<int> Slow::constructions(0);

int destroyedByShutdown = 0;
void countDestruction()
{
    ++destroyedByShutdown;
}
} // namespace

TEST(PlatformTest, Environment)
{
    {
        EnvironmentVariable empty("VELLUM_TEST_VARIABLE", "");
        Templates::wstring out = W("unchanged");
        EXPECT_FALSE(Platform::getenv(W("VELLUM_TEST_VARIABLE").c_str(), out));
    }
    {
        EnvironmentVariable unset("VELLUM_TEST_VARIABLE", nullptr);
        Templates::wstring out;
        EXPECT_FALSE(Platform::getenv(W("VELLUM_TEST_VARIABLE").c_str(), out));
        EXPECT_EQ(0, Platform::setenv(W("VELLUM_TEST_VARIABLE").c_str(), W("Grüße").c_str()));
        EXPECT_TRUE(Platform::getenv(W("VELLUM_TEST_VARIABLE").c_str(), out));
        EXPECT_EQ("Grüße", N(out));
        EXPECT_STREQ("Grüße", std::getenv("VELLUM_TEST_VARIABLE"));
    }
    EXPECT_EQ(-1, Platform::setenv(W("").c_str(), W("x").c_str()));
}

TEST(PlatformTest, PlatformName)
{
    Templates::wstring real = Platform::realPlatformName();
    EXPECT_FALSE(real.empty());
    {
        EnvironmentVariable name("VELLUM_PLATFORM_NAME", "");
        EXPECT_TRUE(Platform::platformName() == real);
    }
    EnvironmentVariable name("VELLUM_PLATFORM_NAME", "win32");
    EXPECT_EQ("win32", N(Platform::platformName()));
    EXPECT_TRUE(Platform::realPlatformName() == real);
}

TEST(PlatformTest, TemporaryDirectory)
{
    Templates::wstring out;
    {
        EnvironmentVariable tmp("TMP", "/tmp/first");
        EnvironmentVariable temp("TEMP", "/tmp/second");
        EXPECT_TRUE(Platform::tempDir(out));
        EXPECT_EQ("/tmp/first", N(out));
    }
    {
        EnvironmentVariable tmp("TMP", "");
        EnvironmentVariable temp("TEMP", "/tmp/second");
        EXPECT_EQ("/tmp/second", N(Platform::tempDir()));
    }
    {
        EnvironmentVariable tmp("TMP", nullptr);
        EnvironmentVariable temp("TEMP", nullptr);
        EXPECT_FALSE(Platform::tempDir(out));
        try
        {
            Platform::tempDir();
            ADD_FAILURE() << "no throw";
        }
        catch (Exceptions::OSError const & e)
        {
            EXPECT_EQ("No temporary directory defined in the system", N(e.message()));
            EXPECT_EQ(41, e.errorCode());
            EXPECT_NE(std::string::npos, e.whatUtf8().find("(Platform/Platform.cpp:")) << e.whatUtf8();
        }
    }
}

TEST(PlatformTest, InitializerAndSingletons)
{
    Initializer & first = Initializer::instance();
    EXPECT_EQ(&first, &Initializer::instance());

    // Singletons come into being once and register once.
    uint64 registered = Initializer::instance().registeredCount();
    int created = Counted::created;
    Counted & one = Singleton<Counted>::instance();
    EXPECT_EQ(&one, &Singleton<Counted>::instance());
    EXPECT_EQ(created + 1, Counted::created);
    EXPECT_EQ(registered + 1, Initializer::instance().registeredCount());

    {
        Platform::Synchronization::ScopedLock lock(Initializer::instance().singletonMutex());
        Initializer::instance().registerSingleton(&countDestruction);
    }
    // Shutdown drops the registered functions unrun; a second call does nothing.
    Initializer::shutdown();
    EXPECT_EQ(0, destroyedByShutdown);
    Initializer::shutdown();
    EXPECT_EQ(0, destroyedByShutdown);

    // A later use starts afresh; singletons made before live on.
    EXPECT_EQ(0u, Initializer::instance().registeredCount());
    EXPECT_EQ(&one, &Singleton<Counted>::instance());
    EXPECT_EQ(created + 1, Counted::created);
}

TEST(PlatformTest, SingletonCreationIsSerialised)
{
    std::vector<std::thread> threads;
    std::vector<Slow *> seen(6, nullptr);
    for (unsigned t = 0; t < seen.size(); ++t)
        threads.emplace_back([&seen, t] { seen[t] = &Singleton<Slow>::instance(); });
    for (std::thread & t : threads)
        t.join();
    EXPECT_EQ(1, Slow::constructions.load());
    for (Slow * s : seen)
        EXPECT_EQ(seen[0], s);
}

TEST(PlatformTest, FixedSizeAllocatorReusesCells)
{
    Platform::FixedSizeAllocator_T<48> pool;
    void * a = pool.allocate();
    void * b = pool.allocate();
    ASSERT_TRUE(a != nullptr && b != nullptr && a != b);
    std::memset(a, 0xAB, 48);
    pool.deallocate(a);
    EXPECT_EQ(1u, pool.freeCount());
    EXPECT_EQ(a, pool.allocate());
    pool.deallocate(b);
    pool.deallocate(a);
    pool.deallocate(nullptr);
    EXPECT_EQ(2u, pool.freeCount());
    // Last freed, first reused.
    EXPECT_EQ(a, pool.allocate());
    EXPECT_EQ(b, pool.allocate());
    pool.deallocate(a);
    pool.deallocate(b);

    // Many threads at once: every cell handed out is distinct and comes back.
    std::vector<std::thread> threads;
    std::atomic<bool> clash(false);
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&pool, &clash, t] {
            for (int i = 0; i < 5000; ++i)
            {
                unsigned char * cell = static_cast<unsigned char *>(pool.allocate());
                std::memset(cell, t, 48);
                std::this_thread::yield();
                for (int k = 0; k < 48; ++k)
                    if (cell[k] != t)
                        clash = true;
                pool.deallocate(cell);
            }
        });
    for (std::thread & t : threads)
        t.join();
    EXPECT_FALSE(clash.load());
    EXPECT_LE(pool.freeCount(), 6u);

    // The slice pool is one object for the whole process, shared by name.
    Platform::FixedSizeAllocator_T<48> & slices = Platform::sliceAllocator();
    EXPECT_EQ(&slices, &Platform::sliceAllocator());
    EXPECT_EQ(static_cast<void *>(&slices),
              Platform::Services::MemoryManager::registerObject("tarn_memory_manager_slice_name", nullptr));
}

TEST(PlatformTest, Synchronization)
{
    int value = 5;
    EXPECT_EQ(6, Platform::Synchronization::interlockedIncrement(value));
    EXPECT_EQ(5, Platform::Synchronization::interlockedDecrement(value));
    EXPECT_EQ(5, Platform::Synchronization::interlockedExchange(value, 9));
    EXPECT_EQ(9, value);

    Platform::Synchronization::Mutex mutex;
    std::atomic<bool> entered(false);
    std::thread other;
    {
        Platform::Synchronization::ScopedLock outer(mutex);
        {
            // Recursive on the same thread.
            Platform::Synchronization::ScopedLock inner(mutex);
        }
        other = std::thread([&mutex, &entered] {
            Platform::Synchronization::ScopedLock lock(mutex);
            entered = true;
        });
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        // Still held after the inner release.
        EXPECT_FALSE(entered.load());
    }
    other.join();
    EXPECT_TRUE(entered.load());

    EXPECT_NE(Platform::Synchronization::currentThreadId(), uint64(0));
    uint64 otherId = 0;
    std::thread([&otherId] { otherId = Platform::Synchronization::currentThreadId(); }).join();
    EXPECT_NE(Platform::Synchronization::currentThreadId(), otherId);
}

TEST(PlatformTest, MacAddressAndVersion)
{
    unsigned char const * address = Platform::Network::macAddress();
    ASSERT_NE(nullptr, address);
    EXPECT_EQ(address, Platform::Network::macAddress());
    Templates::vector<unsigned char> first = Platform::firstMACAddress();
    for (unsigned i = 0; i < 6; ++i)
        EXPECT_EQ(i < first.size() ? first[i] : 0, address[i]) << i;

    EXPECT_EQ(40202, Version::major() * 10000 + Version::minor() * 100 + Version::patch());
    EXPECT_EQ(319, Version::build());
    EXPECT_EQ(Types::Release::PATCHED_VERSION, Version::releaseVersion());
    EXPECT_EQ("4.2.2.319", N(Version::versionString()));
}

TEST(PlatformTest, TextConversion)
{
    char const * utf8 = "A é € 𝄞 日本";
    Templates::wstring wide = Platform::stringToWstring(utf8);
    // The clef lies beyond 16 bits: a surrogate pair.
    ASSERT_EQ(11u, wide.size());
    EXPECT_EQ(0x00E9, wide[2]);
    EXPECT_EQ(0x20AC, wide[4]);
    EXPECT_EQ(0xD834, wide[6]);
    EXPECT_EQ(0xDD1E, wide[7]);
    EXPECT_EQ(utf8, N(wide));
    EXPECT_EQ(utf8, std::string(Platform::wstringToString(wide.c_str()).c_str()));
    EXPECT_TRUE(Platform::stringToWstring(nullptr).empty());
    // Broken sequences fall back to Latin-1, byte by byte, without reading past the end.
    Templates::wstring truncated = Platform::stringToWstring("\xE2\x82");
    ASSERT_EQ(2u, truncated.size());
    EXPECT_EQ(0xE2, truncated[0]);
    EXPECT_EQ(0x82, truncated[1]);
    // Beyond U+10FFFF there is no UTF-16 form: no stray surrogate may come out.
    Templates::wstring beyond = Platform::stringToWstring("\xF7\xBF\xBF\xBFx");
    ASSERT_EQ(5u, beyond.size());
    EXPECT_EQ(0xF7, beyond[0]);
    EXPECT_EQ('x', beyond[4]);
}

TEST(PlatformTest, Time)
{
    Platform::Time local = Platform::localtime();
    Platform::Time utc = Platform::utctime();
    for (Platform::Time const * t : {&local, &utc})
        EXPECT_TRUE(t->milliseconds >= 0 && t->milliseconds < 1000 && t->seconds < 62 && t->minutes < 60 &&
                    t->hours < 24 && t->dayOfMonth >= 1 && t->month < 12 && t->year >= 120 && t->dayOfYear < 366);
    // Both read the local clock.
    EXPECT_EQ(local.year, utc.year);
    EXPECT_EQ(local.hours, utc.hours);
    {
        EnvironmentVariable zone("TZ", "XXX-5:30");
        EXPECT_EQ(-330, Platform::getTimezone());
    }
    Platform::tzset();
}

TEST(PlatformTest, FilesWithNonAsciiNames)
{
    Templates::wstring base;
    if (!Platform::tempDir(base))
        base = W("/tmp");
    Templates::wstring path = base + W("/vellum_h1_tést_日本_") + Utils::decimal(int64(::getpid())) + W(".bin");
    Templates::wstring copyPath = path + W(".copy");
    Templates::wstring wb = W("wb"), rb = W("rb");

    FILE * out = Platform::fopen(path.c_str(), wb.c_str());
    ASSERT_NE(nullptr, out);
    unsigned char bytes[100];
    for (unsigned i = 0; i < sizeof bytes; ++i)
        bytes[i] = static_cast<unsigned char>(i);
    ASSERT_EQ(sizeof bytes, std::fwrite(bytes, 1, sizeof bytes, out));
    std::fflush(out);
    EXPECT_EQ(100, Platform::getFileSize(out));
    EXPECT_TRUE(Platform::fileSeek(out, 0));
    EXPECT_FALSE(Platform::fileSeek(out, -1));
    std::fclose(out);
    EXPECT_EQ(-1, Platform::getFileSize(static_cast<FILE *>(nullptr)));

    int descriptor = Platform::open(path.c_str(), true, true);
    EXPECT_EQ(100, Platform::getFileSize(descriptor));
    EXPECT_TRUE(Platform::fileSeek(descriptor, 90));
    unsigned char tail[20];
    EXPECT_EQ(10u, Platform::read(descriptor, tail, sizeof tail));
    EXPECT_EQ(90, tail[0]);
    Platform::close(descriptor);

    // copyFile overwrites a longer target.
    FILE * longer = Platform::fopen(copyPath.c_str(), wb.c_str());
    ASSERT_NE(nullptr, longer);
    std::vector<unsigned char> junk(300, 0xEE);
    std::fwrite(junk.data(), 1, junk.size(), longer);
    std::fclose(longer);
    Platform::copyFile(path.c_str(), copyPath.c_str());
    FILE * copied = Platform::fopen(copyPath.c_str(), rb.c_str());
    ASSERT_NE(nullptr, copied);
    unsigned char back[101];
    EXPECT_EQ(100u, std::fread(back, 1, sizeof back, copied));
    EXPECT_EQ(0, std::memcmp(bytes, back, 100));
    std::fclose(copied);

    EXPECT_TRUE(Platform::unlink(copyPath.c_str()));
    EXPECT_TRUE(Platform::unlink(path.c_str()));
    EXPECT_FALSE(Platform::unlink(path.c_str()));

    // The file is gone: every form reports it.
    EXPECT_EQ(nullptr, Platform::fopen(path.c_str(), rb.c_str()));
    EXPECT_EQ("No such file or directory", N(Platform::lastErrorMessage()));
    try
    {
        Platform::open(path.c_str(), true, true);
        ADD_FAILURE() << "no throw";
    }
    catch (Exceptions::IOError const & e)
    {
        EXPECT_EQ("Error opening file: ('" + N(path) + "'): No such file or directory", N(e.message()));
    }
    EXPECT_THROW(Platform::copyFile(path.c_str(), copyPath.c_str()), Exceptions::IOError);
}
