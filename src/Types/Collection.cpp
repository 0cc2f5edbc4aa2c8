#include "Types/Collection.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "DataIO/DataSink.h"
#include "Exceptions/Exceptions.h"
#include "KLV/Value.h"
#include "Types/Factories/BaseTypeFactory.h"
#include "Types/ValueBytes.h"
#include "Types/WireOrder.h"

namespace Vellum
{
namespace Types
{
namespace
{
// Elements reserved ahead at most while reading: the rest comes as the elements do.
uint32 const reserveLimit = 4096;

// Count and element size.
unsigned const headerSize = 8;

Templates::string decimalText(uint32 number)
{
    char digits[16];
    unsigned n = 0;
    do
    {
        digits[n++] = static_cast<char>('0' + number % 10);
        number /= 10;
    } while (number != 0);
    Templates::string text;
    while (n != 0)
        text.push_back(digits[--n]);
    return text;
}
} // namespace

struct Collection::Impl
{
    VELLUM_CLASS_ALLOCATION
    Templates::vector<Templates::auto_ptr<SimpleDataType>> elements;
    uint32 elementSize;
    uint32 count;

    explicit Impl(uint32 size) : elementSize(size), count(0) {}

    Impl(Impl const & other) : elementSize(other.elementSize), count(0)
    {
        elements.reserve(other.elements.size());
        for (Templates::auto_ptr<SimpleDataType> const & element : other.elements)
        {
            elements.push_back(element->clone());
            ++count;
        }
    }

    Impl & operator=(Impl const &) = delete;

    ~Impl()
    {
        while (!elements.empty())
            elements.pop_back();
    }

    void read(KLV::Value & value, Identifiers::Identifier elementType)
    {
        unsigned char header[headerSize] = {};
        try
        {
            value.readValue(header, 4);
        }
        catch (Exceptions::InvalidLength const & e)
        {
            throw Exceptions::InvalidLength(
                e.readData(), e.readDataLength(),
                "Invalid data size in collection. Not enough data to read number of elements", __FILE__, __LINE__);
        }
        try
        {
            value.readValue(header + 4, 4);
        }
        catch (Exceptions::InvalidLength const & e)
        {
            uint64 got = std::min<uint64>(e.readDataLength(), 4);
            if (got != 0)
                std::memcpy(header + 4, e.readData(), static_cast<std::size_t>(got));
            throw Exceptions::InvalidLength(
                header, headerSize,
                "Invalid data size in collection. Not enough data to read element entry size", __FILE__, __LINE__);
        }
        uint32 const claimedCount = WireOrder::load<uint32>(header);
        elementSize = WireOrder::load<uint32>(header + 4);

        if (value.remaining() < uint64(claimedCount) * elementSize)
        {
            Templates::vector<unsigned char> data(header, header + headerSize);
            ValueBytes::readAvailable(value, data);
            Templates::string message = "Invalid data size in collection. Not enough data to read ";
            message += decimalText(claimedCount);
            message += " elements of size ";
            message += decimalText(elementSize);
            throw Exceptions::InvalidLength(data.data(), data.size(), message.c_str(), __FILE__, __LINE__);
        }

        elements.reserve(std::min(claimedCount, reserveLimit));
        Factories::BaseTypeFactory & factory = Factories::BaseTypeFactory::instance();
        for (uint32 i = 0; i < claimedCount; ++i)
        {
            uint64 const before = value.remaining();
            Templates::auto_ptr<SimpleDataType> element;
            try
            {
                element = factory.create(value, elementType);
            }
            catch (Exceptions::BaseException const &)
            {
            }
            // Every element takes bytes: else a false count could run on without end.
            if (element.get() == nullptr || value.remaining() == before)
                throw Exceptions::InvalidLength(header, headerSize,
                                                "Invalid data size in Value to create an element in the collection.",
                                                __FILE__, __LINE__);
            elements.push_back(std::move(element));
            ++count;
        }
    }
};

Collection::Collection(int elementSize) : impl_(new Impl(static_cast<uint32>(elementSize))) {}

Collection::Collection(KLV::Value & value, Identifiers::Identifier elementType) : impl_(new Impl(0))
{
    impl_->read(value, elementType);
}

Collection::Collection(Collection const & other) : BaseType(other), impl_(new Impl(*other.impl_)) {}

Collection & Collection::operator=(Collection const & other)
{
    if (this != &other)
    {
        impl_.reset(new Impl(*other.impl_));
    }
    return *this;
}

Collection::~Collection() = default;

void Collection::serialize(DataIO::DataSink & sink) const
{
    unsigned char header[headerSize];
    WireOrder::store(header, impl_->count);
    WireOrder::store(header + 4, impl_->elementSize);
    sink.write(header, headerSize);
    for (Templates::auto_ptr<SimpleDataType> const & element : impl_->elements)
        element->serialize(sink);
}

unsigned short Collection::serializedSize() const
{
    return static_cast<unsigned short>(headerSize + impl_->count * impl_->elementSize);
}

unsigned int Collection::size() const
{
    return impl_->count;
}

unsigned int Collection::elementSize() const
{
    return impl_->elementSize;
}

SimpleDataType & Collection::at(unsigned int index)
{
    if (index >= impl_->count)
        VELLUM_THROW(IndexOutOfBounds, "Exceptions::IndexOutOfBounds");
    return *impl_->elements[index];
}

SimpleDataType const & Collection::at(unsigned int index) const
{
    if (index >= impl_->count)
        VELLUM_THROW(IndexOutOfBounds, "Exceptions::IndexOutOfBounds");
    return *impl_->elements[index];
}

void Collection::append(Templates::auto_ptr<SimpleDataType> element)
{
    if (element.get() == nullptr)
        VELLUM_THROW(InvalidElement, "Appending an invalid element");
    uint32 const size = element->serializedSize();
    bool const adopt = size != impl_->elementSize && impl_->elementSize == 0 && impl_->count == 0;
    if (size != impl_->elementSize && !adopt)
        VELLUM_THROW(InvalidElement, "Appending an invalid element");
    impl_->elements.push_back(std::move(element));
    if (adopt)
        impl_->elementSize = size;
    ++impl_->count;
}

void Collection::insertAt(unsigned int index, Templates::auto_ptr<SimpleDataType> element)
{
    if (element.get() == nullptr || element->serializedSize() != impl_->elementSize)
        VELLUM_THROW(InvalidElement, "Trying to insert an invalid element");
    if (index > impl_->count)
        VELLUM_THROW(IndexOutOfBounds, "Trying to insert an element past the end of the data");
    impl_->elements.insert(impl_->elements.begin() + index, std::move(element));
    ++impl_->count;
}

void Collection::remove(unsigned int index)
{
    if (index >= impl_->count)
        VELLUM_THROW(IndexOutOfBounds, "Trying to remove an element beyond the end of data");
    Templates::auto_ptr<SimpleDataType> element = std::move(impl_->elements[index]);
    impl_->elements.erase(impl_->elements.begin() + index);
    --impl_->count;
}

Array::Array(int elementSize) : Collection(elementSize) {}

Array::Array(KLV::Value & value, Identifiers::Identifier elementType) : Collection(value, elementType) {}

Array::Array(Array const & other) : Collection(other) {}

Array & Array::operator=(Array const & other)
{
    Collection::operator=(other);
    return *this;
}

Array::~Array() {}

Templates::auto_ptr<Collection> Array::clone() const
{
    return Templates::auto_ptr<Collection>(new Array(*this));
}

Batch::Batch(int elementSize) : Collection(elementSize) {}

Batch::Batch(KLV::Value & value, Identifiers::Identifier elementType) : Collection(value, elementType) {}

Batch::Batch(Batch const & other) : Collection(other) {}

Batch & Batch::operator=(Batch const & other)
{
    Collection::operator=(other);
    return *this;
}

Batch::~Batch() {}

Templates::auto_ptr<Collection> Batch::clone() const
{
    return Templates::auto_ptr<Collection>(new Batch(*this));
}
} // namespace Types
} // namespace Vellum
