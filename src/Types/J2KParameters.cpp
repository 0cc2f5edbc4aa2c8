#include "Types/J2KParameters.h"

#include "Exceptions/Exceptions.h"
#include "KLV/Value.h"
#include "Types/OpaqueBytes.h"
#include "Types/ValueHandleImpl.h"
#include "Types/WireOrder.h"

namespace Vellum
{
namespace Types
{
struct J2KPictureComponent::Impl : FixedBytes<3>
{
    VELLUM_CLASS_ALLOCATION
    using FixedBytes<3>::FixedBytes;
};

J2KPictureComponent::J2KPictureComponent(KLV::Value & value) : impl_(new Impl(value)) {}

J2KPictureComponent::J2KPictureComponent(unsigned char sSizi, unsigned char xRSizi, unsigned char yRSizi)
    : impl_(new Impl)
{
    impl_->bytes[0] = sSizi;
    impl_->bytes[1] = xRSizi;
    impl_->bytes[2] = yRSizi;
}

unsigned char J2KPictureComponent::sSizi() const
{
    return impl_->bytes[0];
}

unsigned char J2KPictureComponent::xRSizi() const
{
    return impl_->bytes[1];
}

unsigned char J2KPictureComponent::yRSizi() const
{
    return impl_->bytes[2];
}

VELLUM_DEFINE_VALUE_HANDLE(J2KPictureComponent)

// The whole wire image in one run, and the tail behind a header of `headerSize` bytes as a
// DataStream of its own.
template <unsigned headerSize>
struct J2KHeaderAndTail : OpaqueBytes
{
    DataStream tail;

    explicit J2KHeaderAndTail(KLV::Value & value) : OpaqueBytes(value), tail(tailOf(bytes)) {}
    explicit J2KHeaderAndTail(Templates::vector<unsigned char> const & image)
        : OpaqueBytes(image.data(), image.size()), tail(tailOf(bytes))
    {
    }

    static DataStream tailOf(Templates::vector<unsigned char> const & image)
    {
        return DataStream(image.data() + headerSize, static_cast<unsigned int>(image.size() - headerSize));
    }
};

struct J2KCodingStyleDefault::Impl : J2KHeaderAndTail<5>
{
    VELLUM_CLASS_ALLOCATION
    using J2KHeaderAndTail<5>::J2KHeaderAndTail;
};

J2KCodingStyleDefault::J2KCodingStyleDefault(KLV::Value & value) : impl_(nullptr)
{
    THROW_UNLESS_TEXT(InvalidValue, value.remaining() >= MINIMUM_J2KCODINGSTYLEDEFAULT_SIZE,
                      "source.remaining () >= MINIMUM_J2KCODINGSTYLEDEFAULT_SIZE",
                      "J2KCodingStyleDefault size is smaller than required. J2KCodingStyleDefault must be at least 10 "
                      "bytes.");
    impl_ = new Impl(value);
}

J2KCodingStyleDefault::J2KCodingStyleDefault(unsigned char scod, unsigned int sGcod, unsigned char const * spcod,
                                             uint64 spcodBufferSize)
    : impl_(nullptr)
{
    THROW_UNLESS(InvalidValue, spcodBufferSize >= MINIMUM_J2KCODINGSTYLEDEFAULT_SPCOD_SIZE,
                 "J2KCodingStyleDefault Spcod item size is smaller than required. Spcod must be at least 5 bytes.");
    Templates::vector<unsigned char> image(5);
    image[0] = scod;
    WireOrder::store(image.data() + 1, static_cast<uint32>(sGcod));
    image.insert(image.end(), spcod, spcod + spcodBufferSize);
    THROW_UNLESS_TEXT(InvalidValue, image.size() >= MINIMUM_J2KCODINGSTYLEDEFAULT_SIZE,
                      "baseRawBuffer_.block () -> size () >= MINIMUM_J2KCODINGSTYLEDEFAULT_SIZE",
                      "J2KCodingStyleDefault size is smaller than required. J2KCodingStyleDefault must be at least 10 "
                      "bytes.");
    impl_ = new Impl(image);
}

unsigned char J2KCodingStyleDefault::scod() const
{
    return impl_->bytes[0];
}

unsigned int J2KCodingStyleDefault::sGcod() const
{
    return WireOrder::load<uint32>(impl_->bytes.data() + 1);
}

DataStream const & J2KCodingStyleDefault::spcod() const
{
    return impl_->tail;
}

VELLUM_DEFINE_VALUE_HANDLE(J2KCodingStyleDefault)

struct J2KQuantisationDefault::Impl : J2KHeaderAndTail<1>
{
    VELLUM_CLASS_ALLOCATION
    using J2KHeaderAndTail<1>::J2KHeaderAndTail;
};

J2KQuantisationDefault::J2KQuantisationDefault(KLV::Value & value) : impl_(nullptr)
{
    THROW_UNLESS_TEXT(InvalidValue, value.remaining() >= MINIMUM_J2KQUANTISATIONDEFAULT_SIZE,
                      "source.remaining () >= MINIMUM_J2KQUANTISATIONDEFAULT_SIZE",
                      "J2KQuantisationDefault size is smaller than required. J2KCodingStyleDefault must be at least 2 "
                      "bytes.");
    impl_ = new Impl(value);
}

J2KQuantisationDefault::J2KQuantisationDefault(unsigned char sqcd, unsigned char const * sPgcd,
                                               uint64 sPgcdBufferSize)
    : impl_(nullptr)
{
    THROW_UNLESS(InvalidValue, sPgcdBufferSize >= MINIMUM_J2KQUANTISATIONDEFAULT_SPGCD_SIZE,
                 "J2KQuantisationDefault sPgcd item size is smaller than required. Spcod must be at least 1 bytes.");
    Templates::vector<unsigned char> image(1, sqcd);
    image.insert(image.end(), sPgcd, sPgcd + sPgcdBufferSize);
    THROW_UNLESS_TEXT(InvalidValue, image.size() >= MINIMUM_J2KQUANTISATIONDEFAULT_SIZE,
                      "baseRawBuffer_.block () -> size () >= MINIMUM_J2KQUANTISATIONDEFAULT_SIZE",
                      "J2KQuantisationDefault size is smaller than required. J2KCodingStyleDefault must be at least 2 "
                      "bytes.");
    impl_ = new Impl(image);
}

unsigned char J2KQuantisationDefault::sqcd() const
{
    return impl_->bytes[0];
}

DataStream const & J2KQuantisationDefault::sPgcd() const
{
    return impl_->tail;
}

VELLUM_DEFINE_VALUE_HANDLE(J2KQuantisationDefault)
} // namespace Types
} // namespace Vellum
