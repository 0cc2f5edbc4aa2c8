#include <gtest/gtest.h>

#include <chrono>

#include "Types/Collection.h"
#include "Types/Integers.h"
#include "Types/Timestamp.h"
#include "ValueTestSupport.h"

using namespace Vellum;
using namespace ValueTest;
namespace Id = Vellum::Types::Identifiers;

namespace
{
Templates::auto_ptr<Types::SimpleDataType> u32(uint32 v)
{
    return Templates::auto_ptr<Types::SimpleDataType>(new Types::UInt32(v));
}

uint32 u32At(Types::Collection const & c, unsigned i)
{
    return dynamic_cast<Types::UInt32 const &>(c.at(i)).value();
}
} // namespace

TEST(Collections, ReadAndWriteBackTheSameBytes)
{
    Bytes data = {0, 0, 0, 3, 0, 0, 0, 4, 0, 0, 0, 1, 0xAA, 0xBB, 0xCC, 0xDD, 0x80, 0, 0, 0};
    ValueOver over(data);
    Types::Array array(over.value(), Id::UInt32);
    ASSERT_EQ(3u, array.size());
    EXPECT_EQ(4u, array.elementSize());
    EXPECT_EQ(0xAABBCCDDu, u32At(array, 1));
    EXPECT_EQ(data, wire(array));
    EXPECT_EQ(data.size(), array.serializedSize());

    // Bytes behind the elements are left in the value.
    Bytes longer = data;
    longer.push_back(9);
    ValueOver overLonger(longer);
    Types::Batch batch(overLonger.value(), Id::UInt32);
    EXPECT_EQ(3u, batch.size());
    EXPECT_EQ(1u, overLonger.value().remaining());

    // A zero count reads no element, whatever the type, and writes back its header.
    Bytes header{0, 0, 0, 0, 0, 0, 0, 16};
    ValueOver empty(header);
    Types::Batch none(empty.value(), Id::DeltaEntryType);
    EXPECT_EQ(0u, none.size());
    EXPECT_EQ(header, wire(none));
}

TEST(Collections, ShortDataCarriesWhatWasRead)
{
    // Not even the count.
    ValueOver twoBytes(Bytes{0, 0});
    Thrown t = thrownBy([&] { Types::Batch b(twoBytes.value(), Id::UInt32); });
    EXPECT_EQ(Exceptions::InvalidLength::ERROR_CODE, t.code);
    EXPECT_EQ("Invalid data size in collection. Not enough data to read number of elements", t.message);
    EXPECT_EQ(Bytes({0, 0}), t.data);

    // Count, but only half the element size: the eight header bytes as far as they are known.
    ValueOver sixBytes(Bytes{0, 0, 0, 2, 0, 1});
    t = thrownBy([&] { Types::Array a(sixBytes.value(), Id::UInt32); });
    EXPECT_EQ(Exceptions::InvalidLength::ERROR_CODE, t.code);
    EXPECT_EQ("Invalid data size in collection. Not enough data to read element entry size", t.message);
    EXPECT_EQ(Bytes({0, 0, 0, 2, 0, 1, 0, 0}), t.data);

    // Count 2, size 16, and 20 bytes: the header and all that remained.
    Bytes data = {0, 0, 0, 2, 0, 0, 0, 16};
    for (unsigned char i = 0; i < 20; ++i)
        data.push_back(i);
    ValueOver twenty(data);
    t = thrownBy([&] { Types::Batch b(twenty.value(), Id::UL); });
    EXPECT_EQ(Exceptions::InvalidLength::ERROR_CODE, t.code);
    EXPECT_EQ("Invalid data size in collection. Not enough data to read 2 elements of size 16", t.message);
    EXPECT_EQ(28u, t.data.size());
    EXPECT_EQ(data, t.data);
}

TEST(Collections, HostileCountsFailFastWithLittleMemory)
{
    // 2^31 elements of 16 bytes in a 20-byte value.
    Bytes data = {0x80, 0, 0, 0, 0, 0, 0, 16};
    data.resize(28, 0x11);
    ValueOver over(data);
    Thrown t = thrownBy([&] { Types::Batch b(over.value(), Id::UL); });
    EXPECT_EQ(Exceptions::InvalidLength::ERROR_CODE, t.code);
    EXPECT_EQ("Invalid data size in collection. Not enough data to read 2147483648 elements of size 16",
              t.message);

    // The largest count of 1-byte elements in a value that claims far more than its source holds:
    // the count passes the length check, and the reading stops where the bytes do.
    Bytes claimed = {0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 1, 1, 2, 3};
    ValueOver lying(claimed, uint64(1) << 40);
    auto start = std::chrono::steady_clock::now();
    t = thrownBy([&] { Types::Batch b(lying.value(), Id::UInt8); });
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
    EXPECT_EQ(Exceptions::InvalidLength::ERROR_CODE, t.code);
    EXPECT_EQ("Invalid data size in Value to create an element in the collection.", t.message);
    EXPECT_EQ(Bytes(claimed.begin(), claimed.begin() + 8), t.data);

    // Elements that take no bytes cannot make a count run on.
    Bytes zeroSized = {0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0};
    ValueOver zero(zeroSized);
    t = thrownBy([&] { Types::Batch b(zero.value(), Id::DataStream); });
    EXPECT_EQ("Invalid data size in Value to create an element in the collection.", t.message);
}

TEST(Collections, ElementFailuresBecomeInvalidLength)
{
    // A type without a maker.
    ValueOver noMaker(Bytes{0, 0, 0, 1, 0, 0, 0, 2, 1, 2});
    Thrown t = thrownBy([&] { Types::Array a(noMaker.value(), Id::DeltaEntryType); });
    EXPECT_EQ(Exceptions::InvalidLength::ERROR_CODE, t.code);
    EXPECT_EQ("Invalid data size in Value to create an element in the collection.", t.message);
    EXPECT_EQ(Bytes({0, 0, 0, 1, 0, 0, 0, 2}), t.data);

    // A header whose element size is smaller than the type's: the second element runs short.
    ValueOver tooSmall(Bytes{0, 0, 0, 2, 0, 0, 0, 3, 1, 2, 3, 4, 5, 6});
    t = thrownBy([&] { Types::Array a(tooSmall.value(), Id::UInt32); });
    EXPECT_EQ("Invalid data size in Value to create an element in the collection.", t.message);

    // Elements read from a file are taken as they are: an hour of 30 is no failure.
    ValueOver odd(Bytes{0, 0, 0, 1, 0, 0, 0, 8, 0x07, 0xE8, 1, 1, 30, 0, 0, 0});
    Types::Array times(odd.value(), Id::TimestampType);
    EXPECT_EQ(2024, dynamic_cast<Types::Timestamp const &>(times.at(0)).year());
    EXPECT_EQ(30, dynamic_cast<Types::Timestamp const &>(times.at(0)).hour());
}

TEST(Collections, AppendAdoptsOnlyTheFirstSize)
{
    Types::Batch batch(0);
    batch.append(u32(5));
    EXPECT_EQ(4u, batch.elementSize());
    EXPECT_EQ(1u, batch.size());

    Thrown t = thrownBy([&] { batch.append(Templates::auto_ptr<Types::SimpleDataType>(new Types::UInt16(1))); });
    EXPECT_EQ(Exceptions::InvalidElement::ERROR_CODE, t.code);
    EXPECT_EQ("Appending an invalid element", t.message);
    EXPECT_EQ(1u, batch.size());

    Types::Batch sixteen(16);
    EXPECT_EQ("Appending an invalid element", thrownBy([&] { sixteen.append(u32(1)); }).message);
    EXPECT_EQ(0u, sixteen.size());

    // An emptied collection keeps its size.
    batch.remove(0);
    t = thrownBy([&] { batch.append(Templates::auto_ptr<Types::SimpleDataType>(new Types::UInt16(1))); });
    EXPECT_EQ("Appending an invalid element", t.message);

    t = thrownBy([&] { batch.append(Templates::auto_ptr<Types::SimpleDataType>()); });
    EXPECT_EQ("Appending an invalid element", t.message);
}

TEST(Collections, InsertAtAndRemove)
{
    Types::Array array(4);
    array.append(u32(1));
    array.append(u32(3));
    array.insertAt(1, u32(2));
    array.insertAt(3, u32(4));
    array.insertAt(0, u32(0));
    ASSERT_EQ(5u, array.size());
    for (unsigned i = 0; i < 5; ++i)
        EXPECT_EQ(i, u32At(array, i));

    Thrown t = thrownBy([&] { array.insertAt(6, u32(9)); });
    EXPECT_EQ(Exceptions::IndexOutOfBounds::ERROR_CODE, t.code);
    EXPECT_EQ("Trying to insert an element past the end of the data", t.message);

    // The size test comes first, and there is no adoption.
    t = thrownBy([&] { array.insertAt(9, Templates::auto_ptr<Types::SimpleDataType>(new Types::UInt8(1))); });
    EXPECT_EQ(Exceptions::InvalidElement::ERROR_CODE, t.code);
    EXPECT_EQ("Trying to insert an invalid element", t.message);
    Types::Array fresh(0);
    t = thrownBy([&] { fresh.insertAt(0, u32(1)); });
    EXPECT_EQ("Trying to insert an invalid element", t.message);
    EXPECT_EQ(0u, fresh.elementSize());

    t = thrownBy([&] { array.at(5); });
    EXPECT_EQ(Exceptions::IndexOutOfBounds::ERROR_CODE, t.code);
    EXPECT_EQ("Exceptions::IndexOutOfBounds", t.message);

    array.remove(0);
    array.remove(3);
    ASSERT_EQ(3u, array.size());
    EXPECT_EQ(1u, u32At(array, 0));
    EXPECT_EQ(3u, u32At(array, 2));
    t = thrownBy([&] { array.remove(3); });
    EXPECT_EQ(Exceptions::IndexOutOfBounds::ERROR_CODE, t.code);
    EXPECT_EQ("Trying to remove an element beyond the end of data", t.message);
    EXPECT_EQ(Bytes({0, 0, 0, 3, 0, 0, 0, 4, 0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0, 3}), wire(array));
}

TEST(Collections, CopiesAndClonesAreDeep)
{
    Types::Batch batch(4);
    batch.append(u32(1));
    batch.append(u32(2));

    Templates::auto_ptr<Types::Collection> clone = batch.clone();
    ASSERT_NE(nullptr, dynamic_cast<Types::Batch *>(clone.get()));
    Types::Batch copy(batch);
    Types::Batch assigned(16);
    assigned = batch;
    batch.remove(0);
    dynamic_cast<Types::UInt32 &>(batch.at(0)) = Types::UInt32(7);

    for (Types::Collection const * c : {static_cast<Types::Collection const *>(clone.get()),
                                        static_cast<Types::Collection const *>(&copy),
                                        static_cast<Types::Collection const *>(&assigned)})
    {
        ASSERT_EQ(2u, c->size());
        EXPECT_EQ(4u, c->elementSize());
        EXPECT_EQ(1u, u32At(*c, 0));
        EXPECT_EQ(2u, u32At(*c, 1));
    }
    EXPECT_EQ(7u, u32At(batch, 0));

    Types::Array array(4);
    array.append(u32(3));
    Templates::auto_ptr<Types::Collection> arrayClone = array.clone();
    EXPECT_NE(nullptr, dynamic_cast<Types::Array *>(arrayClone.get()));
}

TEST(Collections, SerializedSizeIsSixteenBits)
{
    Types::Array array(0);
    for (unsigned i = 0; i < 16384; ++i)
        array.append(u32(i));
    // 8 + 65536 bytes do not fit the 16-bit size.
    EXPECT_EQ(8u, array.serializedSize());
    EXPECT_EQ(65544u, wire(array).size());
}
