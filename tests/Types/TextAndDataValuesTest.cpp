#include <gtest/gtest.h>

#include "Types/DataStream.h"
#include "Types/DataValue.h"
#include "Types/ISO7String.h"
#include "Types/J2KParameters.h"
#include "Types/UTF16String.h"
#include "Types/Unknown.h"
#include "ValueTestSupport.h"

using namespace Vellum;
using namespace ValueTest;

TEST(TextValues, UTF16StringWireAndNative)
{
    unsigned short const text[] = {'M', 0x00E9, 0x20AC, 0};
    Types::UTF16String s(text);
    EXPECT_EQ(Bytes({0x00, 'M', 0x00, 0xE9, 0x20, 0xAC}), wire(s));
    EXPECT_EQ(6u, s.serializedSize());
    EXPECT_EQ(3u, s.stringLength());
    EXPECT_EQ(0, s.value()[3]);

    ValueOver over(Bytes{0x00, 'O', 0x00, 'K', 0x26, 0x3A});
    Types::UTF16String read(over.value());
    ASSERT_EQ(3u, read.stringLength());
    EXPECT_EQ(0x263A, read.value()[2]);
    EXPECT_EQ(0, read.value()[3]);
    EXPECT_EQ(Bytes({0x00, 'O', 0x00, 'K', 0x26, 0x3A}), wire(read));

    // Copies are deep.
    Types::UTF16String copy(read);
    read = s;
    EXPECT_EQ(0x263A, copy.value()[2]);
    EXPECT_EQ(0x20AC, read.value()[2]);
}

TEST(TextValues, UTF16StringEdges)
{
    Types::UTF16String empty(static_cast<unsigned short const *>(nullptr));
    EXPECT_EQ(0u, empty.stringLength());
    ASSERT_NE(nullptr, empty.value());
    EXPECT_EQ(0, empty.value()[0]);
    EXPECT_EQ(Bytes(), wire(empty));

    ValueOver none(Bytes{});
    EXPECT_EQ(0, Types::UTF16String(none.value()).value()[0]);

    ValueOver odd(Bytes{0, 'a', 0});
    Thrown t = thrownBy([&] { Types::UTF16String s(odd.value()); });
    EXPECT_EQ(Exceptions::InvalidFormat::ERROR_CODE, t.code);
    EXPECT_EQ("source.remaining () % sizeof (Platform::UInt16) == 0: UTF-16 data must have a even number of bytes.",
              t.message);

    // A value that claims more than its source holds.
    ValueOver lying(Bytes{0, 'a', 0, 'b'}, 1000);
    t = thrownBy([&] { Types::UTF16String s(lying.value()); });
    EXPECT_EQ(Exceptions::InvalidLength::ERROR_CODE, t.code);
    EXPECT_EQ("Invalid data size in Value", t.message);
    EXPECT_EQ(Bytes({0, 'a', 0, 'b'}), t.data);

    // Beyond 32 bits, before any byte is read.
    ValueOver huge(Bytes{0, 'a'}, uint64(1) << 33);
    t = thrownBy([&] { Types::UTF16String s(huge.value()); });
    EXPECT_EQ(Exceptions::InvalidLength::ERROR_CODE, t.code);
    EXPECT_EQ(0u, huge.source().absoluteOffset());
}

TEST(TextValues, ISO7String)
{
    Types::ISO7String s("Vellum");
    EXPECT_EQ(Bytes({'V', 'e', 'l', 'l', 'u', 'm'}), wire(s));
    EXPECT_EQ(6u, s.stringLength());

    ValueOver over(Bytes{'a', 'b', 'c'});
    Types::ISO7String read(over.value());
    EXPECT_STREQ("abc", read.value());
    EXPECT_EQ(3u, read.serializedSize());

    Types::ISO7String empty(static_cast<char const *>(nullptr));
    EXPECT_STREQ("", empty.value());
    EXPECT_EQ(Bytes(), wire(empty));
}

TEST(OpaqueValues, KeepTheirBytes)
{
    unsigned char const bytes[] = {9, 8, 7, 6, 5};
    Types::DataStream stream(bytes, 5);
    Types::DataValue data(bytes, 3);
    Types::Unknown unknown(bytes + 1, 4);
    EXPECT_EQ(Bytes({9, 8, 7, 6, 5}), wire(stream));
    EXPECT_EQ(Bytes({9, 8, 7}), wire(data));
    EXPECT_EQ(Bytes({8, 7, 6, 5}), wire(unknown));

    Types::DataValue empty(nullptr, 0);
    EXPECT_NE(nullptr, empty.value());
    EXPECT_EQ(0u, empty.serializedSize());
    EXPECT_EQ(Bytes(), wire(empty));

    // From a value: all that remains.
    ValueOver over(Bytes{1, 2, 3, 4, 5, 6});
    unsigned char first;
    over.value().readValue(&first, 1);
    Types::Unknown rest(over.value());
    EXPECT_EQ(Bytes({2, 3, 4, 5, 6}), raw(rest));
    EXPECT_EQ(0u, over.value().remaining());

    // A length far beyond the source fails with what was there, and allocates nothing near it.
    ValueOver lying(Bytes{1, 2, 3}, uint64(1) << 50);
    Thrown t = thrownBy([&] { Types::DataStream s(lying.value()); });
    EXPECT_EQ(Exceptions::InvalidLength::ERROR_CODE, t.code);
    EXPECT_EQ("Invalid data size in Value", t.message);
    EXPECT_EQ(Bytes({1, 2, 3}), t.data);
}

TEST(OpaqueValues, J2KPictureComponent)
{
    Types::J2KPictureComponent c(7, 1, 2);
    EXPECT_EQ(Bytes({7, 1, 2}), wire(c));
    ValueOver over(Bytes{11, 2, 1});
    Types::J2KPictureComponent read(over.value());
    EXPECT_EQ(11 * 100 + 2 * 10 + 1, read.sSizi() * 100 + read.xRSizi() * 10 + read.yRSizi());
}

TEST(OpaqueValues, J2KCodingStyleDefault)
{
    ValueOver nine(Bytes(9, 1));
    Thrown t = thrownBy([&] { Types::J2KCodingStyleDefault c(nine.value()); });
    EXPECT_EQ(Exceptions::InvalidValue::ERROR_CODE, t.code);
    EXPECT_EQ("source.remaining () >= MINIMUM_J2KCODINGSTYLEDEFAULT_SIZE: J2KCodingStyleDefault size is smaller than "
              "required. J2KCodingStyleDefault must be at least 10 bytes.",
              t.message);
    // Nothing was read.
    EXPECT_EQ(9u, nine.value().remaining());

    Bytes ten = {1, 0x00, 0x01, 0x02, 0x03, 5, 6, 7, 8, 9};
    ValueOver over(ten);
    Types::J2KCodingStyleDefault read(over.value());
    EXPECT_EQ(1, read.scod());
    EXPECT_EQ(0x00010203u, read.sGcod());
    EXPECT_EQ(Bytes({5, 6, 7, 8, 9}), raw(read.spcod()));
    EXPECT_EQ(ten, wire(read));

    unsigned char const spcod[] = {5, 6, 7, 8, 9, 10};
    Types::J2KCodingStyleDefault made(1, 0x00010203u, spcod, 6);
    EXPECT_EQ(Bytes({1, 0x00, 0x01, 0x02, 0x03, 5, 6, 7, 8, 9, 10}), wire(made));

    t = thrownBy([&] { Types::J2KCodingStyleDefault c(1, 2, spcod, 4); });
    EXPECT_EQ(Exceptions::InvalidValue::ERROR_CODE, t.code);
    EXPECT_EQ("spcodBufferSize >= MINIMUM_J2KCODINGSTYLEDEFAULT_SPCOD_SIZE: J2KCodingStyleDefault Spcod item size is "
              "smaller than required. Spcod must be at least 5 bytes.",
              t.message);

    // A size that wraps the block's size around fails on the block.
    t = thrownBy([&] { Types::J2KCodingStyleDefault c(1, 2, spcod, ~uint64(0) - 2); });
    EXPECT_EQ(Exceptions::InvalidValue::ERROR_CODE, t.code);
    EXPECT_EQ("baseRawBuffer_.block () -> size () >= MINIMUM_J2KCODINGSTYLEDEFAULT_SIZE: J2KCodingStyleDefault size "
              "is smaller than required. J2KCodingStyleDefault must be at least 10 bytes.",
              t.message);

    // Copies keep their own spcod.
    Types::J2KCodingStyleDefault copy(made);
    made = read;
    EXPECT_EQ(6u, copy.spcod().size());
    EXPECT_EQ(5u, made.spcod().size());
}

TEST(OpaqueValues, J2KQuantisationDefault)
{
    ValueOver one(Bytes{1});
    Thrown t = thrownBy([&] { Types::J2KQuantisationDefault q(one.value()); });
    EXPECT_EQ(Exceptions::InvalidValue::ERROR_CODE, t.code);
    EXPECT_EQ("source.remaining () >= MINIMUM_J2KQUANTISATIONDEFAULT_SIZE: J2KQuantisationDefault size is smaller "
              "than required. J2KCodingStyleDefault must be at least 2 bytes.",
              t.message);

    ValueOver over(Bytes{0x22, 0x90, 0x98});
    Types::J2KQuantisationDefault read(over.value());
    EXPECT_EQ(0x22, read.sqcd());
    EXPECT_EQ(Bytes({0x90, 0x98}), raw(read.sPgcd()));

    unsigned char const sPgcd[] = {0x48};
    Types::J2KQuantisationDefault made(0x40, sPgcd, 1);
    EXPECT_EQ(Bytes({0x40, 0x48}), wire(made));
    t = thrownBy([&] { Types::J2KQuantisationDefault q(0x40, sPgcd, 0); });
    EXPECT_EQ(Exceptions::InvalidValue::ERROR_CODE, t.code);
    EXPECT_EQ("sPgcdBufferSize >= MINIMUM_J2KQUANTISATIONDEFAULT_SPGCD_SIZE: J2KQuantisationDefault sPgcd item size "
              "is smaller than required. Spcod must be at least 1 bytes.",
              t.message);
}
