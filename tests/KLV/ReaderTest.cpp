#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <random>
#include <thread>

#include "ByteCoders/BER.h"
#include "KLV/KLVTestSupport.h"
#include "KLV/KeyPredicates.h"
#include "KLV/Reader.h"

using namespace Vellum;
using namespace Vellum::KLVTest;

namespace
{
uint64 const NO_LIMIT = ~uint64(0);

Bytes keyBytes(unsigned char registry, unsigned char last)
{
    return Bytes{0x06, 0x0e, 0x2b, 0x34, registry, 0x53, 0x01, 0x01, 0x0d, 0x01, 0x01, 0x01, 0x01, 0x01, 0x2f, last};
}

Bytes const PARTITION = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x05, 0x01, 0x01,
                         0x0d, 0x01, 0x02, 0x01, 0x01, 0x02, 0x04, 0x00};
Bytes const ESSENCE = {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x02, 0x01, 0x01,
                       0x0d, 0x01, 0x03, 0x01, 0x15, 0x01, 0x05, 0x01};

KLV::Key keyOf(Bytes const & b)
{
    return KLV::Key(b.data());
}

// The key search and length decoding done the plain way, one byte at a time, as the reader must
// behave: the outcome (exception, bytes skipped, where the source stands) is compared with it.
struct Outcome
{
    int code;
    std::string message;
    uint64 skipped;
    uint64 position;
    Bytes key;
    unsigned berLength;
    uint64 length;
};

Outcome referenceRead(Bytes const & data, uint64 from, KLV::Reader::PEEK_KIND kind, uint64 maximumToSkip,
                      bool withLength)
{
    DataIO::Memory::MemoryDataSource source(data.data(), data.size());
    source.seek(from);
    Outcome o{0, "", 0, 0, Bytes(), 0, 0};
    unsigned char b[16];
    auto finish = [&](int code, std::string const & message) {
        o.code = code;
        o.message = message;
        o.position = source.absoluteOffset();
        return o;
    };
    uint64 start = source.absoluteOffset();
    if (source.read(b, 5) != 5)
        return finish(Exceptions::NotEnoughData::ERROR_CODE, "Not enough data");
    for (;;)
    {
        bool sync = b[0] == 0x06 && b[1] == 0x0e && b[2] == 0x2b && b[3] == 0x34;
        if (sync && (kind == KLV::Reader::AnyRegistry || b[4] <= 3 || b[4] == 5))
            break;
        std::memmove(b, b + 1, 4);
        if (source.read(b + 4, 1) != 1)
            return finish(Exceptions::NotEnoughData::ERROR_CODE, "Not enough data");
        ++o.skipped;
        if (o.skipped > maximumToSkip)
            return finish(Exceptions::KeyNotFound::ERROR_CODE,
                          "Exceeded maximum bytes to skip before finding a key. Started to search at 0x" +
                              n(Utils::hexadecimal(start)) + " Skipped 0x" + n(Utils::hexadecimal(o.skipped)) +
                              " current position: 0x" + n(Utils::hexadecimal(source.absoluteOffset())));
    }
    if (source.read(b + 5, 11) != 11)
        return finish(Exceptions::NotEnoughData::ERROR_CODE, "Not enough data");
    o.key.assign(b, b + 16);
    if (withLength)
    {
        unsigned char l[16];
        if (source.read(l, 1) != 1)
            return finish(Exceptions::NotEnoughData::ERROR_CODE, "Not enough data");
        if (l[0] == 0x80 || l[0] == 0xFF)
            return finish(Exceptions::InvalidFormat::ERROR_CODE, "Invalid BER size: 0x" + n(Utils::hexadecimal(l[0], 2)));
        o.berLength = (l[0] & 0x80) ? (l[0] & 0x7F) + 1 : 1;
        if (o.berLength > 9)
            return finish(Exceptions::InvalidFormat::ERROR_CODE,
                          "berLength <= 9: Invalid BER length. Please refer to S377M, heading 5.3.4 for more details.");
        if (source.read(l + 1, o.berLength - 1) != o.berLength - 1)
            return finish(Exceptions::NotEnoughData::ERROR_CODE, "Not enough data");
        ByteCoders::decodeBER(l, static_cast<unsigned char>(o.berLength), o.length);
    }
    return finish(0, "");
}

// The same through the reader under test.
Outcome readerRead(Bytes const & data, uint64 from, KLV::Reader::PEEK_KIND kind, uint64 maximumToSkip,
                   bool withLength)
{
    CountingSource source(data);
    source.seek(from);
    KLV::Reader reader(source);
    Outcome o{0, "", 0, 0, Bytes(), 0, 0};
    try
    {
        if (withLength)
        {
            Templates::auto_ptr<KLV::Packet> packet = reader.nextKLV(o.skipped, maximumToSkip);
            o.key.assign(packet->key().rawBuffer(), packet->key().rawBuffer() + 16);
            o.berLength = packet->berLength();
            o.length = packet->length();
            o.position = source.absoluteOffset();
            EXPECT_EQ(from + o.skipped, packet->keyAbsoluteOffset());
            packet.reset();
            return o;
        }
        // The two-argument peek looks for keys of packets, as the key registry kind does.
        KLV::Key key = kind == KLV::Reader::KeyRegistry && from % 2 == 0 ? reader.peekNextKey(o.skipped, maximumToSkip)
                                                                        : reader.peekNextKey(o.skipped, kind, maximumToSkip);
        o.key.assign(key.rawBuffer(), key.rawBuffer() + 16);
    }
    catch (Exceptions::BaseException const & e)
    {
        o.code = e.errorCode();
        o.message = n(e.message());
    }
    o.position = source.absoluteOffset();
    return o;
}

void expectSame(Outcome const & expected, Outcome const & got, std::string const & what)
{
    EXPECT_EQ(expected.code, got.code) << what;
    EXPECT_EQ(expected.message, got.message) << what;
    EXPECT_EQ(expected.position, got.position) << what;
    if (expected.code == 0)
    {
        EXPECT_EQ(expected.skipped, got.skipped) << what;
        EXPECT_EQ(expected.key, got.key) << what;
        EXPECT_EQ(expected.berLength, got.berLength) << what;
        EXPECT_EQ(expected.length, got.length) << what;
    }
    else if (expected.code == Exceptions::KeyNotFound::ERROR_CODE)
    {
        EXPECT_EQ(expected.skipped, got.skipped) << what;
    }
}
} // namespace

TEST(Reader, WalksPacketsWhetherOrNotTheirValuesAreRead)
{
    Bytes data = cat(cat(packet(PARTITION, Bytes(5, 0xAA)), packet(keyBytes(2, 0), Bytes(300, 0xBB), 4)),
                     packet(ESSENCE, Bytes(), 9));
    DataIO::Memory::MemoryDataSource source(data.data(), data.size());
    KLV::Reader reader(source);
    EXPECT_EQ(&source, &reader.source());
    uint64 skipped = 99;

    Templates::auto_ptr<KLV::Packet> p = reader.nextKLV(skipped, 0);
    EXPECT_EQ(0u, skipped);
    EXPECT_EQ(keyOf(PARTITION), p->key());
    EXPECT_TRUE(KLV::isFixedPack(p->key()));
    EXPECT_EQ(1, p->berLength());
    EXPECT_EQ(5u, p->length());
    EXPECT_EQ(0u, p->keyAbsoluteOffset());
    EXPECT_EQ(22u, p->klvLength());
    EXPECT_EQ(17u, source.absoluteOffset()); // the value is not read by the reader
    unsigned char first = 0;
    p->value().readValue(&first, 1);
    EXPECT_EQ(0xAA, first);
    p.reset(); // skips the rest of the value
    EXPECT_EQ(22u, source.absoluteOffset());

    p = reader.nextKLV(skipped, 0);
    EXPECT_EQ(keyOf(keyBytes(2, 0)), p->key());
    EXPECT_EQ(4, p->berLength());
    EXPECT_EQ(300u, p->length());
    EXPECT_EQ(22u, p->keyAbsoluteOffset());
    EXPECT_EQ(42u, p->value().absoluteOffset());
    p.reset(); // destroyed unread: the source stands at the following key
    EXPECT_EQ(342u, source.absoluteOffset());

    // 0x88: nine bytes of length in all.
    p = reader.nextKLV(skipped, 0);
    EXPECT_EQ(keyOf(ESSENCE), p->key());
    EXPECT_EQ(9, p->berLength());
    EXPECT_EQ(0u, p->length());
    EXPECT_EQ(25u, p->klvLength());
    EXPECT_TRUE(p->value().endOfStream());
    p.reset();
    EXPECT_TRUE(source.endOfStream());

    Thrown t = thrownBy([&] { reader.nextKLV(skipped, 100); });
    EXPECT_EQ(Exceptions::NotEnoughData::ERROR_CODE, t.code);
    EXPECT_EQ("Not enough data", t.message);
}

TEST(Reader, PeekThenNextReadsTheKeyOnce)
{
    Bytes data = cat(Bytes{0xFF, 0xFF}, packet(PARTITION, Bytes(4, 1), 4));
    CountingSource source(data);
    KLV::Reader reader(source);
    uint64 skipped = 0;

    KLV::Key key = reader.peekNextKey(skipped, 10);
    EXPECT_EQ(keyOf(PARTITION), key);
    EXPECT_EQ(2u, skipped);
    EXPECT_EQ(18u, source.absoluteOffset());

    // Peeking again where the source stands gives the same key without a read.
    source.resetCounts();
    EXPECT_EQ(keyOf(PARTITION), reader.peekNextKey(skipped, KLV::Reader::AnyRegistry, 0));
    EXPECT_EQ(0u, skipped);
    EXPECT_EQ(0u, source.reads);

    skipped = 55;
    Templates::auto_ptr<KLV::Packet> p = reader.nextKLV(skipped, 0);
    EXPECT_EQ(0u, skipped);
    EXPECT_EQ(4u, source.bytesRead); // the length field only
    EXPECT_EQ(keyOf(PARTITION), p->key());
    EXPECT_EQ(2u, p->keyAbsoluteOffset());
    EXPECT_EQ(4u, p->length());
    p.reset();

    // The packet consumed the peek: at the end there is nothing more.
    EXPECT_EQ(Exceptions::NotEnoughData::ERROR_CODE, thrownBy([&] { reader.peekNextKey(skipped, 10); }).code);
}

TEST(Reader, ASeekMakesThePeekStale)
{
    Bytes data = cat(packet(PARTITION, Bytes()), packet(ESSENCE, Bytes(3, 3)));
    CountingSource source(data);
    KLV::Reader reader(source);
    uint64 skipped = 0;
    EXPECT_EQ(keyOf(PARTITION), reader.peekNextKey(skipped, 0));

    source.seek(17);
    source.resetCounts();
    Templates::auto_ptr<KLV::Packet> p = reader.nextKLV(skipped, 0);
    EXPECT_EQ(keyOf(ESSENCE), p->key());
    EXPECT_EQ(17u, source.bytesRead); // the key was searched for afresh
    EXPECT_EQ(17u, p->keyAbsoluteOffset());
    p.reset();

    // A peek is good again once the source is back where it ended.
    source.seek(0);
    EXPECT_EQ(keyOf(PARTITION), reader.peekNextKey(skipped, 0));
    source.seek(0);
    source.seek(16);
    source.resetCounts();
    p = reader.nextKLV(skipped, 0);
    EXPECT_EQ(keyOf(PARTITION), p->key());
    EXPECT_EQ(1u, source.bytesRead);
}

// The lengths and the search are held against a plain walk below; here a key cut short leaves no
// key behind for the next peek.
TEST(Reader, AKeyCutShortIsNotHeld)
{
    for (unsigned size : {0u, 3u, 5u, 15u})
    {
        Bytes data(PARTITION.begin(), PARTITION.begin() + size);
        DataIO::Memory::MemoryDataSource source(data.data(), data.size());
        KLV::Reader reader(source);
        uint64 skipped = 0;
        Thrown t = thrownBy([&] { reader.nextKLV(skipped, 10); });
        EXPECT_EQ(Exceptions::NotEnoughData::ERROR_CODE, t.code) << size;
        EXPECT_EQ("Not enough data", t.message);
        EXPECT_TRUE(source.endOfStream());
        // No key is held afterwards.
        EXPECT_EQ(Exceptions::NotEnoughData::ERROR_CODE, thrownBy([&] { reader.peekNextKey(skipped, 10); }).code);
    }
}

TEST(Reader, ValueLongerThanTheSourceReadsShort)
{
    Bytes data = cat(PARTITION, Bytes{0x83, 0x01, 0x00, 0x00, 1, 2, 3});
    DataIO::Memory::MemoryDataSource source(data.data(), data.size());
    KLV::Reader reader(source);
    uint64 skipped = 0;
    {
        Templates::auto_ptr<KLV::Packet> p = reader.nextKLV(skipped, 0);
        EXPECT_EQ(0x10000u, p->length());
        unsigned char out[16];
        EXPECT_EQ(3u, p->value().read(out, 16));
        EXPECT_EQ(0u, p->value().read(out, 16));
    }
    EXPECT_TRUE(source.endOfStream());
    EXPECT_EQ(Exceptions::NotEnoughData::ERROR_CODE, thrownBy([&] { reader.nextKLV(skipped, 0); }).code);
}

TEST(Reader, AKeyAtOnceTakesTwoReads)
{
    Bytes data = cat(packet(PARTITION, Bytes(3, 0)), packet(ESSENCE, Bytes(3, 0), 4));
    CountingSource source(data);
    KLV::Reader reader(source);
    uint64 skipped = 0;
    reader.nextKLV(skipped, 0);
    EXPECT_EQ(2u, source.reads);
    EXPECT_EQ(17u, source.bytesRead);
    source.resetCounts();
    reader.nextKLV(skipped, 0);
    EXPECT_EQ(3u, source.reads); // and one more for the rest of a long length
    EXPECT_EQ(20u, source.bytesRead);
    source.seek(0);
    source.resetCounts();
    reader.peekNextKey(skipped, 0);
    EXPECT_EQ(2u, source.reads);
    EXPECT_EQ(16u, source.bytesRead);
}

TEST(Reader, SearchStopsExactlyWhereTheByteWiseWalkWould)
{
    std::mt19937 random(12345);
    unsigned char const interesting[] = {0x06, 0x0e, 0x2b, 0x34, 0x00, 0x01, 0x02, 0x03, 0x04,
                                         0x05, 0x06, 0x07, 0x80, 0x83, 0x88, 0x89, 0xFF};
    Bytes const sync = {0x06, 0x0e, 0x2b, 0x34};
    std::map<int, unsigned> outcomes;
    for (unsigned trial = 0; trial < 20000; ++trial)
    {
        Bytes data;
        unsigned size = random() % 60;
        while (data.size() < size)
        {
            unsigned pick = random() % 10;
            if (pick < 3)
                data.push_back(interesting[random() % sizeof interesting]);
            else if (pick < 5)
                data.insert(data.end(), sync.begin(), sync.begin() + 1 + random() % 4);
            else if (pick < 6)
            {
                // A whole key, and a length byte worth looking at.
                data = cat(data, keyBytes(static_cast<unsigned char>(random() % 6), 0));
                data.push_back(interesting[random() % sizeof interesting]);
            }
            else
                data.push_back(static_cast<unsigned char>(random()));
        }
        uint64 from = data.empty() ? 0 : random() % (data.size() / 2 + 1);
        uint64 limits[] = {0, 1, 4, 5, 6, uint64(random() % 40), NO_LIMIT};
        uint64 limit = limits[random() % 7];
        KLV::Reader::PEEK_KIND kind = random() % 2 ? KLV::Reader::AnyRegistry : KLV::Reader::KeyRegistry;
        std::string what = "trial " + std::to_string(trial);
        Outcome peek = referenceRead(data, from, kind, limit, false);
        expectSame(peek, readerRead(data, from, kind, limit, false), what + " peek");
        Outcome next = referenceRead(data, from, KLV::Reader::KeyRegistry, limit, true);
        expectSame(next, readerRead(data, from, KLV::Reader::KeyRegistry, limit, true), what + " next");
        ++outcomes[peek.code];
        ++outcomes[next.code];
        if (HasFailure())
            break;
    }
    // Every outcome came up often enough to mean something.
    EXPECT_GT(outcomes[0], 1000u);
    EXPECT_GT(outcomes[Exceptions::NotEnoughData::ERROR_CODE], 1000u);
    EXPECT_GT(outcomes[Exceptions::KeyNotFound::ERROR_CODE], 1000u);
    EXPECT_GT(outcomes[Exceptions::InvalidFormat::ERROR_CODE], 100u);
}

TEST(Reader, ThreadsSharingAReaderKeepTheirOwnPeek)
{
    // Two empty packets: K1 at 0 (its length byte at 16), K2 at 17.
    Bytes k1 = keyBytes(2, 1);
    Bytes k2 = keyBytes(2, 2);
    Bytes data = cat(packet(k1, Bytes()), packet(k2, Bytes()));
    CountingSource source(data);
    KLV::Reader reader(source);

    std::mutex m;
    std::condition_variable turnChanged;
    int turn = 0;
    auto waitFor = [&](int wanted) {
        std::unique_lock<std::mutex> lock(m);
        turnChanged.wait(lock, [&] { return turn == wanted; });
    };
    auto pass = [&] {
        {
            std::lock_guard<std::mutex> lock(m);
            ++turn;
        }
        turnChanged.notify_all();
    };

    uint64 aSkipped = 9, aNextSkipped = 9, bSkipped = 9, bNextSkipped = 9, aBytes = 0, aOffset = 99;
    Bytes aPeek, aNext, bPeek, bNext;
    std::thread a([&] {
        waitFor(0);
        source.seek(0);
        KLV::Key key = reader.peekNextKey(aSkipped, 0);
        aPeek.assign(key.rawBuffer(), key.rawBuffer() + 16);
        pass();
        waitFor(2);
        // Back where this thread's peek ended: the peek is still its own and still good.
        source.seek(16);
        source.resetCounts();
        Templates::auto_ptr<KLV::Packet> p = reader.nextKLV(aNextSkipped, 0);
        aBytes = source.bytesRead;
        aOffset = p->keyAbsoluteOffset();
        aNext.assign(p->key().rawBuffer(), p->key().rawBuffer() + 16);
        p.reset();
        pass();
    });
    std::thread b([&] {
        waitFor(1);
        // The source stands where the other thread's peek ended, but that peek is not ours.
        KLV::Key key = reader.peekNextKey(bSkipped, KLV::Reader::KeyRegistry, 1);
        bPeek.assign(key.rawBuffer(), key.rawBuffer() + 16);
        Templates::auto_ptr<KLV::Packet> p = reader.nextKLV(bNextSkipped, 0);
        bNext.assign(p->key().rawBuffer(), p->key().rawBuffer() + 16);
        p.reset();
        pass();
    });
    a.join();
    b.join();

    EXPECT_EQ(k1, aPeek);
    EXPECT_EQ(0u, aSkipped);
    EXPECT_EQ(k2, bPeek);
    EXPECT_EQ(1u, bSkipped);
    EXPECT_EQ(k2, bNext);
    EXPECT_EQ(0u, bNextSkipped);
    EXPECT_EQ(k1, aNext);
    EXPECT_EQ(0u, aNextSkipped);
    EXPECT_EQ(1u, aBytes);
    EXPECT_EQ(0u, aOffset);
}
