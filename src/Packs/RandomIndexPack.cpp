#include "Packs/RandomIndexPack.h"

#include <algorithm>

#include "ByteCoders/BER.h"
#include "Exceptions/Exceptions.h"
#include "KLV/Packet.h"
#include "KLV/Value.h"
#include "Types/Integers.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace Packs
{
namespace
{
unsigned char const RIP_KEY[16] = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x05, 0x01, 0x01,
                                   0x0d, 0x01, 0x02, 0x01, 0x01, 0x11, 0x01, 0x00};
// A body SID and a byte offset.
uint64 const ENTRY_SIZE = 12;
// The overall length behind the entries.
uint64 const TRAILER_SIZE = 4;
} // namespace

struct RandomIndexPack::Impl
{
    VELLUM_CLASS_ALLOCATION
    Impl() : berLength(4) {}

    SIDIndexedMap bySID;
    OffsetIndexedMap byOffset;
    unsigned char berLength;
};

RandomIndexPack::RandomIndexPack() : impl_(new Impl) {}

RandomIndexPack::RandomIndexPack(KLV::Packet & packet) : impl_(nullptr)
{
    if (packet.key() != key())
        throw Exceptions::InvalidKey("Trying to create a RIP from a KLV with a invalid RIP Key.", __FILE__, __LINE__);
    impl_.reset(new Impl);
    impl_->berLength = packet.berLength();
    KLV::Value & value = packet.value();
    while (value.remaining() > TRAILER_SIZE)
    {
        unsigned int sid = Types::UInt32(value).value();
        uint64 offset = Types::UInt64(value).value();
        add(sid, offset);
    }
    if (value.remaining() < TRAILER_SIZE)
        throw Exceptions::InvalidLength("Not enough data to read Pack", __FILE__, __LINE__);
    // The overall length is where a reader finds the pack from the end of a file; here it is
    // read and left.
    Types::UInt32 overall(value);
    (void)overall;
}

RandomIndexPack::RandomIndexPack(RandomIndexPack const & other) : impl_(new Impl(*other.impl_)) {}

RandomIndexPack & RandomIndexPack::operator=(RandomIndexPack const & other)
{
    if (this != &other)
    {
        impl_.reset(new Impl(*other.impl_));
    }
    return *this;
}

RandomIndexPack::~RandomIndexPack() = default;

KLV::Key const & RandomIndexPack::key()
{
    static KLV::Key const k(RIP_KEY);
    return k;
}

unsigned char RandomIndexPack::berLength() const
{
    return impl_->berLength;
}

void RandomIndexPack::berLength(unsigned char length)
{
    impl_->berLength = length;
}

void RandomIndexPack::add(unsigned int bodySID, uint64 offset)
{
    if (!impl_->byOffset.insert(OffsetIndexedMap::value_type(offset, bodySID)).second)
        return;
    impl_->bySID.insert(SIDIndexedMap::value_type(bodySID, offset));
}

Templates::vector<uint64> RandomIndexPack::find(unsigned int const & bodySID) const
{
    Templates::pair<SIDIndexedMap::const_iterator, SIDIndexedMap::const_iterator> range =
        impl_->bySID.equal_range(bodySID);
    if (range.first == range.second)
    {
        Templates::wstring text = Utils::wide("BodySid not found: ") + Utils::decimal(bodySID);
        throw Exceptions::NotFound(text.c_str(), __FILE__, __LINE__);
    }
    Templates::vector<uint64> offsets;
    for (SIDIndexedMap::const_iterator it = range.first; it != range.second; ++it)
        offsets.push_back(it->second);
    std::sort(offsets.begin(), offsets.end());
    return offsets;
}

unsigned int RandomIndexPack::size() const
{
    return static_cast<unsigned int>(impl_->byOffset.size());
}

uint64 RandomIndexPack::valueLength() const
{
    return ENTRY_SIZE * impl_->byOffset.size() + TRAILER_SIZE;
}

uint64 RandomIndexPack::serializedSize() const
{
    return impl_->berLength + 16 + valueLength();
}

void RandomIndexPack::serialize(DataIO::DataSink & sink) const
{
    sink.write(key().rawBuffer(), 16);
    unsigned char length[9];
    ByteCoders::codeBER(valueLength(), impl_->berLength, length);
    sink.write(length, impl_->berLength);
    for (OffsetIndexedMap::const_iterator it = impl_->byOffset.begin(); it != impl_->byOffset.end(); ++it)
    {
        Types::UInt32(it->second).serialize(sink);
        Types::UInt64(it->first).serialize(sink);
    }
    Types::UInt32(static_cast<unsigned int>(serializedSize())).serialize(sink);
}

RandomIndexPack::SIDIndexedMap const & RandomIndexPack::sidIndexedMap() const
{
    return impl_->bySID;
}

RandomIndexPack::OffsetIndexedMap const & RandomIndexPack::offsetIndexedMap() const
{
    return impl_->byOffset;
}

bool isRandomIndexPack(KLV::Key const & key)
{
    return key == RandomIndexPack::key();
}
} // namespace Packs
} // namespace Vellum
