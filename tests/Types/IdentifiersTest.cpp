// Behaviour that every identifier class shares: bytes, copies, clones, visits, order, reading
// from a value, and the text forms it accepts or refuses.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "DataIO/Memory/MemoryDataSink.h"
#include "Types/IdentifierTestSupport.h"
#include "Types/LocalTag.h"
#include "Types/References.h"
#include "Types/UMID.h"
#include "Types/UUID.h"
#include "Types/UniversalLabel.h"

using namespace Vellum;
using namespace Vellum::IdentifierTest;
using Types::StringRepresentationEncodingType;

namespace
{
template <class T>
struct Traits;

template <>
struct Traits<Types::UniversalLabel>
{
    static char const * textName() { return "UniversalLabel"; }
    static char const * className() { return "UniversalLabel"; }
    static StringRepresentationEncodingType ownForm() { return Types::OID; }
    // The OID form stands only for labels behind the SMPTE prefix.
    static void prepare(Bytes & bytes)
    {
        unsigned char const prefix[] = {0x06, 0x0e, 0x2b, 0x34};
        std::memcpy(bytes.data(), prefix, 4);
    }
};

template <>
struct Traits<Types::UUID>
{
    static char const * textName() { return "UUID"; }
    static char const * className() { return "UUID"; }
    static StringRepresentationEncodingType ownForm() { return Types::RFC4122; }
    static void prepare(Bytes &) {}
};

template <>
struct Traits<Types::UMID32>
{
    static char const * textName() { return "UMID32"; }
    static char const * className() { return "UMID32"; }
    static StringRepresentationEncodingType ownForm() { return Types::Hexadecimal; }
    static void prepare(Bytes &) {}
};

template <>
struct Traits<Types::UMID64>
{
    static char const * textName() { return "UMID64"; }
    static char const * className() { return "UMID64"; }
    static StringRepresentationEncodingType ownForm() { return Types::Hexadecimal; }
    static void prepare(Bytes &) {}
};

template <>
struct Traits<Types::LocalTag>
{
    static char const * textName() { return "LocalTag"; }
    static char const * className() { return "LocalTag"; }
    static StringRepresentationEncodingType ownForm() { return Types::Hexadecimal; }
    static void prepare(Bytes &) {}
};

// References read and write their text as the UUID they carry.
template <>
struct Traits<Types::StrongReference>
{
    static char const * textName() { return "UUID"; }
    static char const * className() { return "StrongReference"; }
    static StringRepresentationEncodingType ownForm() { return Types::RFC4122; }
    static void prepare(Bytes &) {}
};

template <>
struct Traits<Types::WeakReference>
{
    static char const * textName() { return "UUID"; }
    static char const * className() { return "WeakReference"; }
    static StringRepresentationEncodingType ownForm() { return Types::RFC4122; }
    static void prepare(Bytes &) {}
};

template <class T>
class IdentifierCommonTest : public ::testing::Test
{
protected:
    IdentifierCommonTest() : generator(20240611) {}

    Bytes sample()
    {
        Bytes bytes = randomBytes(generator, T::SIZE);
        Traits<T>::prepare(bytes);
        return bytes;
    }

    std::mt19937 generator;
};

typedef ::testing::Types<Types::UniversalLabel, Types::UUID, Types::UMID32, Types::UMID64, Types::LocalTag,
                         Types::StrongReference, Types::WeakReference>
    IdentifierClasses;
TYPED_TEST_SUITE(IdentifierCommonTest, IdentifierClasses);
} // namespace

TYPED_TEST(IdentifierCommonTest, HoldsCopiesAndWritesItsBytes)
{
    Bytes bytes = this->sample();
    Bytes original = bytes;
    TypeParam id(original.data());
    std::fill(original.begin(), original.end(), 0xEE); // the identifier keeps its own copy
    EXPECT_EQ(unsigned(TypeParam::SIZE), id.size());
    EXPECT_EQ(unsigned(TypeParam::SIZE), id.serializedSize());
    EXPECT_EQ(bytes, bytesOf(id.rawBuffer(), TypeParam::SIZE));

    DataIO::Memory::MemoryDataSink sink;
    id.serialize(sink);
    ASSERT_EQ(uint64(TypeParam::SIZE), sink.serializedSize());
    EXPECT_EQ(bytes, bytesOf(sink.rawBuffer(), TypeParam::SIZE));

    // Copies are deep, in both directions.
    TypeParam copy(id);
    TypeParam assigned;
    EXPECT_NE(id, assigned);
    assigned = id;
    EXPECT_EQ(id, copy);
    EXPECT_EQ(id, assigned);
    EXPECT_NE(id.rawBuffer(), copy.rawBuffer());
    EXPECT_NE(id.rawBuffer(), assigned.rawBuffer());
    assigned = TypeParam();
    EXPECT_EQ(Bytes(TypeParam::SIZE, 0), bytesOf(assigned.rawBuffer(), TypeParam::SIZE));
    EXPECT_EQ(bytes, bytesOf(id.rawBuffer(), TypeParam::SIZE));
    TypeParam const & alias = id;
    id = alias;
    EXPECT_EQ(bytes, bytesOf(id.rawBuffer(), TypeParam::SIZE));

    Templates::auto_ptr<Types::SimpleDataType> clone = id.clone();
    ASSERT_NE(nullptr, clone.get());
    ASSERT_NE(nullptr, dynamic_cast<TypeParam *>(clone.get()));
    EXPECT_EQ(id, *dynamic_cast<TypeParam *>(clone.get()));
    EXPECT_NE(id.rawBuffer(), clone->rawBuffer());

    NameVisitor visitor;
    static_cast<Types::SimpleDataType const &>(*clone).accept(static_cast<Types::Visitors::Visitor &>(visitor));
    EXPECT_EQ(Traits<TypeParam>::className(), visitor.seen);
    clone->accept(static_cast<Types::Visitors::NonConstVisitor &>(visitor));
    EXPECT_EQ(std::string("non-const ") + Traits<TypeParam>::className(), visitor.seen);
}

TYPED_TEST(IdentifierCommonTest, ComparesByUnsignedBytes)
{
    Bytes low(TypeParam::SIZE, 0x10);
    Bytes high = low;
    high[TypeParam::SIZE - 1] = 0x80; // above 0x7f only when bytes are unsigned
    Bytes other = low;
    other[TypeParam::SIZE - 1] = 0x7F;
    TypeParam a(low.data()), b(high.data()), c(other.data()), a2(low.data());

    EXPECT_TRUE(a == a2);
    EXPECT_FALSE(a != a2);
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(a != b);
    EXPECT_TRUE(a < b);
    EXPECT_FALSE(b < a);
    EXPECT_FALSE(a < a2);
    EXPECT_TRUE(c < b);
    EXPECT_FALSE(b < c);

    // The first byte outweighs all later ones.
    Bytes first = low;
    first[0] = 0x11;
    first[TypeParam::SIZE - 1] = 0x00;
    EXPECT_TRUE(b < TypeParam(first.data()));
}

TYPED_TEST(IdentifierCommonTest, ReadsItsBytesFromAValue)
{
    Bytes bytes = this->sample();
    Bytes longer = bytes;
    longer.push_back(0xAA);
    ValueOver over(longer);
    TypeParam id(over.value);
    EXPECT_EQ(bytes, bytesOf(id.rawBuffer(), TypeParam::SIZE));
    EXPECT_EQ(1u, over.value.remaining());

    // A value one byte short.
    Bytes shorter(bytes.begin(), bytes.end() - 1);
    ValueOver shortOver(shorter);
    Thrown thrown = thrownBy([&] { TypeParam fail(shortOver.value); });
    EXPECT_EQ(int(Exceptions::InvalidLength::ERROR_CODE), thrown.code);
    EXPECT_EQ("Invalid data size in Value", thrown.message);
    EXPECT_EQ(uint64(TypeParam::SIZE - 1), thrown.readDataLength);
}

TYPED_TEST(IdentifierCommonTest, TextRoundTripsInEveryAcceptedForm)
{
    StringRepresentationEncodingType const forms[] = {Types::Dotted, Traits<TypeParam>::ownForm(), Types::TypeDefault};
    for (int round = 0; round < 40; ++round)
    {
        Bytes bytes = this->sample();
        TypeParam id(bytes.data());
        for (StringRepresentationEncodingType form : forms)
        {
            Templates::wstring text = id.toString(form);
            TypeParam back(text.c_str(), form);
            EXPECT_EQ(bytes, bytesOf(back.rawBuffer(), TypeParam::SIZE)) << n(text) << " form " << int(form);
        }
        // The default form is the type's own, and toString() without a form gives it.
        EXPECT_EQ(id.toString(Traits<TypeParam>::ownForm()), id.toString(Types::TypeDefault));
        EXPECT_EQ(id.toString(Types::TypeDefault), id.toString());
    }
}

TYPED_TEST(IdentifierCommonTest, DottedFormIsLowerCasePairs)
{
    Bytes bytes(TypeParam::SIZE);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<unsigned char>(i * 37 + 10);
    std::string expected;
    char const digits[] = "0123456789abcdef";
    for (std::size_t i = 0; i < bytes.size(); ++i)
    {
        if (i != 0)
            expected += '.';
        expected += digits[bytes[i] >> 4];
        expected += digits[bytes[i] & 15];
    }
    TypeParam id(bytes.data());
    EXPECT_EQ(expected, n(id.toString(Types::Dotted)));

    // Upper case loads too; the separators are not looked at.
    std::string upper = expected;
    for (char & c : upper)
    {
        if (c >= 'a' && c <= 'f')
            c = static_cast<char>(c - 'a' + 'A');
        if (c == '.')
            c = ':';
    }
    EXPECT_EQ(id, TypeParam(w(upper).c_str(), Types::Dotted));

    Thrown shorter = thrownBy([&] { TypeParam t(w(expected.substr(1)).c_str(), Types::Dotted); });
    EXPECT_EQ(int(Exceptions::InvalidLength::ERROR_CODE), shorter.code);
    EXPECT_EQ("Not enough data", shorter.message);
    Thrown longer = thrownBy([&] { TypeParam t(w(expected + "0").c_str(), Types::Dotted); });
    EXPECT_EQ(int(Exceptions::InvalidLength::ERROR_CODE), longer.code);
    EXPECT_EQ("Not enough data", longer.message);

    std::string bad = expected;
    bad[bad.size() - 1] = 'g';
    Thrown wrongDigit = thrownBy([&] { TypeParam t(w(bad).c_str(), Types::Dotted); });
    EXPECT_EQ(int(Exceptions::InvalidLabel::ERROR_CODE), wrongDigit.code);
    EXPECT_EQ("Label contains non Hexadecimal characters", wrongDigit.message);
}

TYPED_TEST(IdentifierCommonTest, RefusesFormsItDoesNotKnow)
{
    std::string const load =
        std::string("Don't know how to initialize ") + Traits<TypeParam>::textName() + " in the given string representation format";
    std::string const render =
        std::string("Don't know how to represent ") + Traits<TypeParam>::textName() + " in the given string representation format";

    Bytes bytes = this->sample();
    TypeParam id(bytes.data());
    Templates::wstring ownText = id.toString();

    StringRepresentationEncodingType const all[] = {Types::Hexadecimal, Types::OID, Types::RFC4122,
                                                    StringRepresentationEncodingType(5),
                                                    StringRepresentationEncodingType(7)};
    for (StringRepresentationEncodingType form : all)
    {
        if (form == Traits<TypeParam>::ownForm())
            continue;
        Thrown loading = thrownBy([&] { TypeParam t(ownText.c_str(), form); });
        EXPECT_EQ(int(Exceptions::InvalidFormat::ERROR_CODE), loading.code) << int(form);
        EXPECT_EQ(load, loading.message) << int(form);
        Thrown rendering = thrownBy([&] { id.toString(form); });
        EXPECT_EQ(int(Exceptions::InvalidFormat::ERROR_CODE), rendering.code) << int(form);
        EXPECT_EQ(render, rendering.message) << int(form);
    }
}
