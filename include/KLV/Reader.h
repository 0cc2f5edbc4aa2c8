#pragma once
// Walks a source from key to key. Anything in front of a key (a run-in, garbage) is passed over,
// up to a limit that the caller gives.

#include "DataIO/DataSource.h"
#include "KLV/Key.h"
#include "KLV/Packet.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace KLV
{
class Reader
{
public:
    VELLUM_CLASS_ALLOCATION
    // Which keys stop the search: any key of the SMPTE registries, or only those of registries
    // that KLV packets start with (byte 4 of 0, 1, 2, 3 or 5: not labels, not private ones).
    enum PEEK_KIND
    {
        AnyRegistry = 0,
        KeyRegistry = 1
    };

    // The reader neither owns the source nor serialises its use.
    explicit Reader(DataIO::DataSource & source);
    ~Reader();
    Reader(Reader const &) = delete;
    Reader & operator=(Reader const &) = delete;

    // The next packet; its value is still in the source and is skipped when the packet dies.
    // `bytesSkipped` tells how many bytes stood before the key. Throws KeyNotFound when more than
    // `maximumToSkip` bytes pass without a key, NotEnoughData when the source ends inside the
    // search, the key or the length, and InvalidFormat for a length that cannot be read.
    Templates::auto_ptr<Packet> nextKLV(uint64 & bytesSkipped, uint64 maximumToSkip);

    // Looks at the next key without consuming the packet: the source stands behind the key, and
    // the next nextKLV or peekNextKey from the same thread at that position uses it without
    // reading it again. Moving the source makes the peek stale.
    Key peekNextKey(uint64 & bytesSkipped, uint64 maximumToSkip);
    Key peekNextKey(uint64 & bytesSkipped, PEEK_KIND kind, uint64 maximumToSkip);

    DataIO::DataSource & source();

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace KLV
} // namespace Vellum
