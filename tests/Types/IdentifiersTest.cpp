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
// The name its texts use, its class name and its own text form.
struct Trait
{
    char const * textName;
    char const * className;
    StringRepresentationEncodingType ownForm;
};
template <class T>
Trait traitOf();
template <> Trait traitOf<Types::UniversalLabel>() { return {"UniversalLabel", "UniversalLabel", Types::OID}; }
template <> Trait traitOf<Types::UUID>() { return {"UUID", "UUID", Types::RFC4122}; }
template <> Trait traitOf<Types::UMID32>() { return {"UMID32", "UMID32", Types::Hexadecimal}; }
template <> Trait traitOf<Types::UMID64>() { return {"UMID64", "UMID64", Types::Hexadecimal}; }
template <> Trait traitOf<Types::LocalTag>() { return {"LocalTag", "LocalTag", Types::Hexadecimal}; }
// References read and write their text as the UUID they carry.
template <> Trait traitOf<Types::StrongReference>() { return {"UUID", "StrongReference", Types::RFC4122}; }
template <> Trait traitOf<Types::WeakReference>() { return {"UUID", "WeakReference", Types::RFC4122}; }

template <class T>
class IdentifierCommonTest : public ::testing::Test
{
protected:
    IdentifierCommonTest() : generator(20240611) {}

    Bytes sample()
    {
        Bytes bytes = randomBytes(generator, T::SIZE);
        // The OID form stands only for labels behind the SMPTE prefix.
        if (traitOf<T>().ownForm == Types::OID)
            std::memcpy(bytes.data(), "\x06\x0e\x2b\x34", 4);
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
    assigned = TypeParam();
    EXPECT_EQ(Bytes(TypeParam::SIZE, 0), bytesOf(assigned.rawBuffer(), TypeParam::SIZE));
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
    EXPECT_EQ(traitOf<TypeParam>().className, visitor.seen);
    clone->accept(static_cast<Types::Visitors::NonConstVisitor &>(visitor));
    EXPECT_EQ(std::string("non-const ") + traitOf<TypeParam>().className, visitor.seen);
}

TYPED_TEST(IdentifierCommonTest, ComparesByUnsignedBytes)
{
    Bytes low(TypeParam::SIZE, 0x10);
    Bytes high = low;
    high[TypeParam::SIZE - 1] = 0x80; // above 0x7f only when bytes are unsigned
    Bytes other = low;
    other[TypeParam::SIZE - 1] = 0x7F;
    TypeParam a(low.data()), b(high.data()), c(other.data()), a2(low.data());

    EXPECT_TRUE(a == a2 && !(a != a2) && !(a == b) && a != b);
    EXPECT_TRUE(a < b && !(b < a) && !(a < a2) && c < b && !(b < c));

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
    TypeParam id(over.value());
    EXPECT_EQ(bytes, bytesOf(id.rawBuffer(), TypeParam::SIZE));
    EXPECT_EQ(1u, over.value().remaining());

    // A value one byte short.
    Bytes shorter(bytes.begin(), bytes.end() - 1);
    ValueOver shortOver(shorter);
    Thrown caught = thrownBy([&] { TypeParam fail(shortOver.value()); });
    EXPECT_EQ(int(Exceptions::InvalidLength::ERROR_CODE), caught.code);
    EXPECT_EQ("Invalid data size in Value", caught.message);
    EXPECT_EQ(uint64(TypeParam::SIZE - 1), caught.data.size());
}

TYPED_TEST(IdentifierCommonTest, TextRoundTripsInEveryAcceptedForm)
{
    StringRepresentationEncodingType const forms[] = {Types::Dotted, traitOf<TypeParam>().ownForm, Types::TypeDefault};
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
        EXPECT_EQ(id.toString(traitOf<TypeParam>().ownForm), id.toString(Types::TypeDefault));
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

    EXPECT_EQ(thrown<Exceptions::InvalidLength>("Not enough data"),
              thrownBy([&] { TypeParam t(w(expected.substr(1)).c_str(), Types::Dotted); }));
    EXPECT_EQ(thrown<Exceptions::InvalidLength>("Not enough data"),
              thrownBy([&] { TypeParam t(w(expected + "0").c_str(), Types::Dotted); }));

    std::string bad = expected;
    bad[bad.size() - 1] = 'g';
    EXPECT_EQ(thrown<Exceptions::InvalidLabel>("Label contains non Hexadecimal characters"),
              thrownBy([&] { TypeParam t(w(bad).c_str(), Types::Dotted); }));
}

TYPED_TEST(IdentifierCommonTest, RefusesFormsItDoesNotKnow)
{
    std::string const load =
        std::string("Don't know how to initialize ") + traitOf<TypeParam>().textName + " in the given string representation format";
    std::string const render =
        std::string("Don't know how to represent ") + traitOf<TypeParam>().textName + " in the given string representation format";

    Bytes bytes = this->sample();
    TypeParam id(bytes.data());
    Templates::wstring ownText = id.toString();

    StringRepresentationEncodingType const all[] = {Types::Hexadecimal, Types::OID, Types::RFC4122,
                                                    StringRepresentationEncodingType(5),
                                                    StringRepresentationEncodingType(7)};
    for (StringRepresentationEncodingType form : all)
    {
        if (form == traitOf<TypeParam>().ownForm)
            continue;
        Thrown loading = thrownBy([&] { TypeParam t(ownText.c_str(), form); });
        EXPECT_EQ(int(Exceptions::InvalidFormat::ERROR_CODE), loading.code) << int(form);
        EXPECT_EQ(load, loading.message) << int(form);
        Thrown rendering = thrownBy([&] { id.toString(form); });
        EXPECT_EQ(int(Exceptions::InvalidFormat::ERROR_CODE), rendering.code) << int(form);
        EXPECT_EQ(render, rendering.message) << int(form);
    }
}
