#include "Types/J2KParameters.h"

#include <cstring>

#include "Exceptions/Exceptions.h"
#include "KLV/Value.h"
#include "DataIO/Memory/MemoryBlock.h"
#include "Types/ValueBytes.h"
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

// The whole wire image in one memory block, and the tail behind a header of `headerSize` bytes as
// a DataStream of its own. Copies get a block of their own.
template <unsigned headerSize>
struct J2KHeaderAndTail
{
    VELLUM_CLASS_ALLOCATION
    DataIO::BlockHolder baseRawBuffer;
    DataStream tail;

    // Reads all that remains of the value. The bytes are collected as they arrive, so the block is
    // sized by what the source really held, not by what the file claims.
    explicit J2KHeaderAndTail(KLV::Value & value) : tail(nullptr, 0)
    {
        Templates::vector<unsigned char> image;
        ValueBytes::readRemaining(value, image);
        take(blockOf(image.data(), image.size()));
    }
    // Takes over a block that holds the image.
    explicit J2KHeaderAndTail(DataIO::BlockHolder const & block) : tail(nullptr, 0) { take(block); }
    J2KHeaderAndTail(J2KHeaderAndTail const & other) : tail(nullptr, 0)
    {
        take(blockOf(other.rawBuffer(), other.baseRawBuffer.block()->size()));
    }
    J2KHeaderAndTail & operator=(J2KHeaderAndTail const & other)
    {
        if (this != &other)
            take(blockOf(other.rawBuffer(), other.baseRawBuffer.block()->size()));
        return *this;
    }

    static DataIO::BlockHolder newBlock(uint64 size) { return DataIO::Memory::MemoryBlockFactory::instance().create(size); }

    static DataIO::BlockHolder blockOf(unsigned char const * data, uint64 size)
    {
        DataIO::BlockHolder block = newBlock(size);
        std::memcpy(block->data(), data, static_cast<std::size_t>(size));
        return block;
    }

    unsigned char const * rawBuffer() const { return baseRawBuffer.block()->data(); }
    unsigned short size() const { return static_cast<unsigned short>(baseRawBuffer.block()->size()); }

private:
    void take(DataIO::BlockHolder const & block)
    {
        DataIO::Block const & image = *block.block();
        DataStream newTail(image.data() + headerSize, static_cast<unsigned int>(image.size() - headerSize));
        baseRawBuffer = block;
        tail = newTail;
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
    impl_.reset(new Impl(value));
}

J2KCodingStyleDefault::J2KCodingStyleDefault(unsigned char scod, unsigned int sGcod, unsigned char const * spcod,
                                             uint64 spcodBufferSize)
    : impl_(nullptr)
{
    THROW_UNLESS(InvalidValue, spcodBufferSize >= MINIMUM_J2KCODINGSTYLEDEFAULT_SPCOD_SIZE,
                 "J2KCodingStyleDefault Spcod item size is smaller than required. Spcod must be at least 5 bytes.");
    DataIO::BlockHolder block = Impl::newBlock(spcodBufferSize + 5);
    THROW_UNLESS_TEXT(InvalidValue, block->size() >= MINIMUM_J2KCODINGSTYLEDEFAULT_SIZE,
                      "baseRawBuffer_.block () -> size () >= MINIMUM_J2KCODINGSTYLEDEFAULT_SIZE",
                      "J2KCodingStyleDefault size is smaller than required. J2KCodingStyleDefault must be at least 10 "
                      "bytes.");
    unsigned char * image = block->data();
    image[0] = scod;
    WireOrder::store(image + 1, static_cast<uint32>(sGcod));
    std::memcpy(image + 5, spcod, static_cast<std::size_t>(spcodBufferSize));
    impl_.reset(new Impl(block));
}

unsigned char J2KCodingStyleDefault::scod() const
{
    return impl_->rawBuffer()[0];
}

unsigned int J2KCodingStyleDefault::sGcod() const
{
    return WireOrder::load<uint32>(impl_->rawBuffer() + 1);
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
    impl_.reset(new Impl(value));
}

J2KQuantisationDefault::J2KQuantisationDefault(unsigned char sqcd, unsigned char const * sPgcd,
                                               uint64 sPgcdBufferSize)
    : impl_(nullptr)
{
    THROW_UNLESS(InvalidValue, sPgcdBufferSize >= MINIMUM_J2KQUANTISATIONDEFAULT_SPGCD_SIZE,
                 "J2KQuantisationDefault sPgcd item size is smaller than required. Spcod must be at least 1 bytes.");
    DataIO::BlockHolder block = Impl::newBlock(sPgcdBufferSize + 1);
    THROW_UNLESS_TEXT(InvalidValue, block->size() >= MINIMUM_J2KQUANTISATIONDEFAULT_SIZE,
                      "baseRawBuffer_.block () -> size () >= MINIMUM_J2KQUANTISATIONDEFAULT_SIZE",
                      "J2KQuantisationDefault size is smaller than required. J2KCodingStyleDefault must be at least 2 "
                      "bytes.");
    unsigned char * image = block->data();
    image[0] = sqcd;
    std::memcpy(image + 1, sPgcd, static_cast<std::size_t>(sPgcdBufferSize));
    impl_.reset(new Impl(block));
}

unsigned char J2KQuantisationDefault::sqcd() const
{
    return impl_->rawBuffer()[0];
}

DataStream const & J2KQuantisationDefault::sPgcd() const
{
    return impl_->tail;
}

VELLUM_DEFINE_VALUE_HANDLE(J2KQuantisationDefault)
} // namespace Types
} // namespace Vellum
