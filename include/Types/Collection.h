#pragma once
// Collections of values of one size: Array (ordered) and Batch (unordered). On the wire both are
// a count and an element size, 4 bytes each and big-endian, followed by the elements.

#include "Templates/AutoPtr.h"
#include "Types/Identifiers.h"
#include "Types/SimpleDataType.h"

namespace Vellum
{
namespace KLV
{
class Value;
}

namespace Types
{
class Collection : public BaseType
{
public:
    VELLUM_CLASS_ALLOCATION
    // Destroys the elements from the last to the first.
    ~Collection() override;

    // The count and the element size, then each element.
    void serialize(DataIO::DataSink & sink) const override;
    // 8 + size() * elementSize(), in 16 bits: collections above 65535 bytes are not supported.
    virtual unsigned short serializedSize() const;
    virtual Templates::auto_ptr<Collection> clone() const = 0;

    unsigned int size() const;
    // The size of each element on the wire; 0 while not yet known.
    unsigned int elementSize() const;

    // Element `index`; one at or past size() throws IndexOutOfBounds.
    SimpleDataType & at(unsigned int index);
    SimpleDataType const & at(unsigned int index) const;

    // Takes the element. Its serialized size must equal elementSize(); an empty collection of
    // element size 0 adopts the size of its first element. Any other mismatch throws
    // InvalidElement, and a failed call destroys the element.
    void append(Templates::auto_ptr<SimpleDataType> element);
    // Deletes element `index`; one past the end throws IndexOutOfBounds.
    void remove(unsigned int index);

protected:
    explicit Collection(int elementSize);
    // Reads the count, the element size and the elements, each made by the BaseTypeFactory as
    // `elementType`. Every failure throws InvalidLength with the bytes read attached.
    Collection(KLV::Value & value, Identifiers::Identifier elementType);
    Collection(Collection const & other);
    Collection & operator=(Collection const & other);

    // Takes the element and puts it before element `index` (or at the end for size()). Its
    // serialized size must equal elementSize(): there is no adoption here.
    void insertAt(unsigned int index, Templates::auto_ptr<SimpleDataType> element);

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};

// The ordered collection.
class Array : public Collection
{
public:
    VELLUM_CLASS_ALLOCATION
    explicit Array(int elementSize);
    Array(KLV::Value & value, Identifiers::Identifier elementType);
    Array(Array const & other);
    Array & operator=(Array const & other);
    ~Array() override;

    using Collection::insertAt;

    Templates::auto_ptr<Collection> clone() const override;
    VELLUM_VISITABLE
};

// The unordered collection. It keeps the order of insertion in memory all the same.
class Batch : public Collection
{
public:
    VELLUM_CLASS_ALLOCATION
    explicit Batch(int elementSize);
    Batch(KLV::Value & value, Identifiers::Identifier elementType);
    Batch(Batch const & other);
    Batch & operator=(Batch const & other);
    ~Batch() override;

    Templates::auto_ptr<Collection> clone() const override;
    VELLUM_VISITABLE
};
} // namespace Types
} // namespace Vellum
