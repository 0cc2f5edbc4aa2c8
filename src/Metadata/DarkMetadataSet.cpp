// A header metadata packet kept whole: key, BER width and the value's bytes.

#include "Metadata/DarkMetadataSet.h"

#include "ByteCoders/BER.h"
#include "DataIO/DataSink.h"
#include "KLV/Packet.h"
#include "KLV/Value.h"
#include "Types/Unknown.h"

namespace Vellum
{
namespace Metadata
{
struct DarkMetadataSet::Impl
{
    VELLUM_CLASS_ALLOCATION
    Impl(KLV::Key const & key, unsigned char berLength, KLV::Value & value)
        : key(key), berLength(berLength), value(new Types::Unknown(value))
    {
    }

    KLV::Key key;
    unsigned char berLength;
    Templates::auto_ptr<Types::Unknown> value;
};

DarkMetadataSet::DarkMetadataSet(KLV::Packet & packet)
    : impl_(new Impl(packet.key(), packet.berLength(), packet.value()))
{
}

DarkMetadataSet::DarkMetadataSet(KLV::Key const & key, unsigned char berLength, KLV::Value & value)
    : impl_(new Impl(key, berLength, value))
{
}

DarkMetadataSet::~DarkMetadataSet() = default;

KLV::Key const & DarkMetadataSet::key() const
{
    return impl_->key;
}

unsigned char DarkMetadataSet::berLength() const
{
    return impl_->berLength;
}

Types::Unknown const & DarkMetadataSet::value() const
{
    return *impl_->value;
}

void DarkMetadataSet::value(Templates::auto_ptr<Types::Unknown> value)
{
    if (value.get() == nullptr)
        value.reset(new Types::Unknown(nullptr, 0));
    impl_->value = std::move(value);
}

void DarkMetadataSet::serialize(DataIO::DataSink & sink) const
{
    sink.write(impl_->key.rawBuffer(), KLV::Key::SIZE);
    unsigned char ber[9];
    ByteCoders::codeBER(impl_->value->serializedSize(), impl_->berLength, ber);
    sink.write(ber, impl_->berLength);
    impl_->value->serialize(sink);
}

uint64 DarkMetadataSet::serializedSize() const
{
    return KLV::Key::SIZE + impl_->berLength + impl_->value->serializedSize();
}
} // namespace Metadata
} // namespace Vellum
