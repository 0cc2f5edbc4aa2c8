#include "KLV/Reader.h"

#include <cstring>

#include "ByteCoders/BER.h"
#include "Exceptions/Exceptions.h"
#include "Platform/Synchronization.h"
#include "Templates/SharedPtr.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace KLV
{
namespace
{
// The four bytes that every SMPTE key starts with.
unsigned char const SYNC[4] = {0x06, 0x0e, 0x2b, 0x34};
unsigned const WINDOW = 5;
unsigned const KEY_SIZE = 16;
unsigned const LARGEST_BER = 9;

// What a thread has read ahead: the key that stands right before `endOffset`.
struct KeyPeek
{
    VELLUM_CLASS_ALLOCATION
    KeyPeek() : held(false), endOffset(0) { std::memset(scratch, 0, sizeof scratch); }

    // True while scratch[0..15] holds a key that was read ahead.
    bool held;
    // The source offset right behind that key.
    uint64 endOffset;
    // The key being assembled or held, then the length field behind it.
    unsigned char scratch[KEY_SIZE + LARGEST_BER];
};

[[noreturn]] void notEnoughData(char const * file, int line)
{
    throw Exceptions::NotEnoughData("Not enough data", file, line);
}

// Does a key start at w[0..4]? Labels (byte 4 of 4) and the private and reserved registries
// (6 and above) are not keys of packets.
bool startsKey(unsigned char const * w, Reader::PEEK_KIND kind)
{
    if (std::memcmp(w, SYNC, 4) != 0)
        return false;
    return kind == Reader::AnyRegistry || w[4] <= 3 || w[4] == 5;
}

// The smallest shift after which the window might start a key: a key cannot start at w[s] unless
// w[s..4] begins the sync bytes. Every byte that the search steps over in between it would have
// read and passed anyway.
unsigned nextPossibleStart(unsigned char const * w)
{
    for (unsigned s = 1; s < WINDOW; ++s)
        if (std::memcmp(w + s, SYNC, WINDOW - s) == 0)
            return s;
    return WINDOW;
}

Templates::wstring keyNotFoundText(uint64 start, uint64 skipped, uint64 position)
{
    Templates::wstring text =
        Utils::wide("Exceeded maximum bytes to skip before finding a key. Started to search at 0x");
    text += Utils::hexadecimal(start);
    text += Utils::wide(" Skipped 0x");
    text += Utils::hexadecimal(skipped);
    text += Utils::wide(" current position: 0x");
    text += Utils::hexadecimal(position);
    return text;
}

// Finds the next key and leaves it in peek.scratch[0..15], held, with the source right behind it
// (or, with `withLengthByte`, behind the first byte of the length, which goes to scratch[16]).
//
// The search moves a five-byte window over the source one byte at a time. It never reads a byte
// that the byte-wise walk would not have consumed: after a mismatch it reads at once only as many
// bytes as cannot start a key, and no more than the skip limit lets pass, so that the source
// stands at the same place after every outcome.
void searchKey(DataIO::DataSource & source, KeyPeek & peek, uint64 & bytesSkipped, Reader::PEEK_KIND kind,
               uint64 maximumToSkip, bool withLengthByte)
{
    peek.held = false;
    bytesSkipped = 0;
    unsigned char * w = peek.scratch;
    uint64 const start = source.absoluteOffset();
    if (source.read(w, WINDOW) != WINDOW)
        notEnoughData(__FILE__, __LINE__);
    while (!startsKey(w, kind))
    {
        unsigned shift = nextPossibleStart(w);
        uint64 budget = maximumToSkip - bytesSkipped;
        unsigned step = budget >= shift ? shift : unsigned(budget) + 1;
        std::memmove(w, w + step, WINDOW - step);
        uint64 got = source.read(w + WINDOW - step, step);
        bytesSkipped += got;
        if (got != step)
            notEnoughData(__FILE__, __LINE__);
        if (bytesSkipped > maximumToSkip)
            VELLUM_THROW(KeyNotFound, keyNotFoundText(start, bytesSkipped, source.absoluteOffset()));
    }
    unsigned const rest = KEY_SIZE - WINDOW;
    unsigned const wanted = withLengthByte ? rest + 1 : rest;
    uint64 got = source.read(w + WINDOW, wanted);
    if (got < rest)
        notEnoughData(__FILE__, __LINE__);
    peek.held = true;
    peek.endOffset = start + bytesSkipped + KEY_SIZE;
    if (got < wanted)
        notEnoughData(__FILE__, __LINE__);
}
} // namespace

struct Reader::Impl
{
    VELLUM_CLASS_ALLOCATION
    explicit Impl(DataIO::DataSource & s) : source(s) {}

    // The calling thread's peek, made on first use. Records live as long as the reader.
    KeyPeek & threadPeek()
    {
        uint64 thread = Platform::Synchronization::currentThreadId();
        Platform::Synchronization::ScopedLock lock(mutex);
        PeekMap::iterator found = peeks.find(thread);
        if (found == peeks.end())
            found = peeks.insert(PeekMap::value_type(thread, Templates::SharedPtr<KeyPeek>(new KeyPeek))).first;
        return *found->second;
    }

    // Is the thread's peek still good where the source stands?
    bool peekValid(KeyPeek const & peek) const { return peek.held && peek.endOffset == source.absoluteOffset(); }

    typedef Templates::map<uint64, Templates::SharedPtr<KeyPeek>> PeekMap;
    DataIO::DataSource & source;
    PeekMap peeks;
    Platform::Synchronization::Mutex mutex;
};

Reader::Reader(DataIO::DataSource & source) : impl_(new Impl(source)) {}

Reader::~Reader() = default;

Templates::auto_ptr<Packet> Reader::nextKLV(uint64 & bytesSkipped, uint64 maximumToSkip)
{
    bytesSkipped = 0;
    DataIO::DataSource & source = impl_->source;
    KeyPeek & peek = impl_->threadPeek();
    unsigned char * lengthField = peek.scratch + KEY_SIZE;
    if (impl_->peekValid(peek))
    {
        if (source.read(lengthField, 1) != 1)
            notEnoughData(__FILE__, __LINE__);
    }
    else
    {
        searchKey(source, peek, bytesSkipped, KeyRegistry, maximumToSkip, true);
    }

    unsigned char berLength = ByteCoders::decodeBERSize(lengthField[0]);
    THROW_UNLESS(InvalidFormat, berLength <= 9,
                 "Invalid BER length. Please refer to S377M, heading 5.3.4 for more details.");
    if (berLength > 1 && source.read(lengthField + 1, berLength - 1) != uint64(berLength - 1))
        notEnoughData(__FILE__, __LINE__);
    uint64 length = 0;
    ByteCoders::decodeBER(lengthField, berLength, length);

    Templates::auto_ptr<Packet> packet(
        new Packet(Key(peek.scratch), berLength, length, source, peek.endOffset - KEY_SIZE));
    peek.held = false;
    return packet;
}

Key Reader::peekNextKey(uint64 & bytesSkipped, uint64 maximumToSkip)
{
    return peekNextKey(bytesSkipped, KeyRegistry, maximumToSkip);
}

Key Reader::peekNextKey(uint64 & bytesSkipped, PEEK_KIND kind, uint64 maximumToSkip)
{
    KeyPeek & peek = impl_->threadPeek();
    if (impl_->peekValid(peek))
    {
        bytesSkipped = 0;
        return Key(peek.scratch);
    }
    searchKey(impl_->source, peek, bytesSkipped, kind, maximumToSkip, false);
    return Key(peek.scratch);
}

DataIO::DataSource & Reader::source()
{
    return impl_->source;
}
} // namespace KLV
} // namespace Vellum
