#include <gtest/gtest.h>

#include "KLV/FixedLengthIdentificationType.h"
#include "KLV/KLVTestSupport.h"

using namespace Vellum;
using namespace Vellum::KLVTest;

namespace
{
unsigned const UL_PREFIX[] = {1, 3, 53};
unsigned char const UL_FIXED[] = {0x06, 0x0e, 0x2b, 0x34};
unsigned const KEY_PREFIX[] = {1, 3, 53, 2};
unsigned char const KEY_FIXED[] = {0x06, 0x0e, 0x2b, 0x34, 0x02};
unsigned const UUID_HYPHENS[] = {3, 5, 7, 9};

// A two-byte identifier that reads and writes only its hexadecimal form, as a local tag does.
struct Tag : public KLV::FixedLengthIdentificationType<2>
{
    void loadFromString(unsigned short const * text, Types::StringRepresentationEncodingType kind) override
    {
        if (kind != Types::Hexadecimal && kind != Types::TypeDefault)
            VELLUM_THROW(InvalidFormat, KLV::unknownLoadFormText("LocalTag"));
        KLV::loadFromStringHexadecimal(text, value_, 2);
    }
    Templates::wstring toString(Types::StringRepresentationEncodingType kind) const override
    {
        if (kind != Types::Hexadecimal && kind != Types::TypeDefault)
            VELLUM_THROW(InvalidFormat, KLV::unknownRenderFormText("LocalTag"));
        return KLV::toStringHexadecimal(value_, 2);
    }
};

Bytes loadOID(char const * text, unsigned const * prefix, unsigned prefixCount, unsigned char const * fixed,
              unsigned fixedCount)
{
    Bytes out(16, 0xEE);
    KLV::loadFromStringOID(w(text).c_str(), out.data(), 16, prefix, prefixCount, fixed, fixedCount);
    return out;
}
} // namespace

TEST(FixedLengthIdentificationType, RootRefusesEveryForm)
{
    KLV::FixedLengthIdentificationType<16> plain;
    Thrown t = thrownBy([&] { plain.loadFromString(w("06").c_str(), Types::TypeDefault); });
    EXPECT_EQ(Exceptions::InvalidValue::ERROR_CODE, t.code);
    EXPECT_EQ("Can't retrieve in the requested type for the given StringRepresentationEncodingType", t.message);
    t = thrownBy([&] { plain.toString(Types::OID); });
    EXPECT_EQ(Exceptions::InvalidValue::ERROR_CODE, t.code);
    EXPECT_EQ("Can't represent the requested type in the given StringRepresentationEncodingType", t.message);

    // A derived identifier names itself in its refusals, and keeps the dotted form.
    Tag tag;
    tag.loadFromString(w("0x12aB").c_str(), Types::TypeDefault);
    EXPECT_EQ("0x12ab", n(tag.toString(Types::Hexadecimal)));
    EXPECT_EQ("12.ab", n(tag.toStringDotted()));
    t = thrownBy([&] { tag.loadFromString(w("1.2").c_str(), Types::OID); });
    EXPECT_EQ(Exceptions::InvalidFormat::ERROR_CODE, t.code);
    EXPECT_EQ("Don't know how to initialize LocalTag in the given string representation format", t.message);
    t = thrownBy([&] { tag.toString(Types::RFC4122); });
    EXPECT_EQ("Don't know how to represent LocalTag in the given string representation format", t.message);
}

TEST(FixedLengthIdentificationType, OIDRoundTripsAndHidesTrailingZeros)
{
    Bytes key = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01, 0x01, 0x0d, 0x01, 0x01, 0x01, 0x01, 0x01, 0x2f, 0x00};
    std::string text = n(KLV::toStringOID(key.data(), KEY_PREFIX, 4, 5, 16));
    EXPECT_EQ("1.3.53.2.83.1.1.13.1.1.1.1.1.47", text);
    EXPECT_EQ(key, loadOID(text.c_str(), KEY_PREFIX, 4, KEY_FIXED, 5));

    // Zeros inside the value are written; only those at the end are held back.
    Bytes inner = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x00, 0x00, 0x07, 0, 0, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ("1.3.53.2.0.0.7", n(KLV::toStringOID(inner.data(), KEY_PREFIX, 4, 5, 16)));
    EXPECT_EQ(inner, loadOID("1.3.53.2.0.0.7", KEY_PREFIX, 4, KEY_FIXED, 5));

    Bytes allZero = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ("1.3.53.2", n(KLV::toStringOID(allZero.data(), KEY_PREFIX, 4, 5, 16)));
    EXPECT_EQ(allZero, loadOID("1.3.53.2", KEY_PREFIX, 4, KEY_FIXED, 5));

    // A universal label has one number less in front and one byte more behind it.
    Bytes label = {0x06, 0x0e, 0x2b, 0x34, 0x04, 0x01, 0x01, 0x01, 0x0d, 0x01, 0x03, 0x01, 0x02, 0x01, 0x01, 0xff};
    EXPECT_EQ("1.3.53.4.1.1.1.13.1.3.1.2.1.1.255", n(KLV::toStringOID(label.data(), UL_PREFIX, 3, 4, 16)));
    EXPECT_EQ(label, loadOID("1.3.53.4.1.1.1.13.1.3.1.2.1.1.255", UL_PREFIX, 3, UL_FIXED, 4));
}

TEST(FixedLengthIdentificationType, OIDLoadingRefusesBadTextAndLeavesTheValue)
{
    struct Case
    {
        char const * text;
        int code;
        char const * message;
    };
    Case const cases[] = {
        {"", Exceptions::InvalidLength::ERROR_CODE, "Not enough data"},
        {"1.3", Exceptions::InvalidLength::ERROR_CODE, "Not enough data"},
        {"1.3.52.2.1", Exceptions::InvalidLabel::ERROR_CODE, "OID contains initial values not according to type"},
        {"1.3.53.3", Exceptions::InvalidLabel::ERROR_CODE, "OID contains initial values not according to type"},
        {"1.x.53.2", Exceptions::InvalidLabel::ERROR_CODE, "OID contains initial values not according to type"},
        {"1.3.53.2.256", Exceptions::InvalidLabel::ERROR_CODE, "OID contains values not in [0 - 255]."},
        {"1.3.53.2.99999999999999", Exceptions::InvalidLabel::ERROR_CODE, "OID contains values not in [0 - 255]."},
        {"1.3.53.2.1..2", Exceptions::InvalidLabel::ERROR_CODE, "OID contains values not in [0 - 255]."},
        {"1.3.53.2.1.", Exceptions::InvalidLabel::ERROR_CODE, "OID contains values not in [0 - 255]."},
        {"1.3.53.2.-1", Exceptions::InvalidLabel::ERROR_CODE, "OID contains values not in [0 - 255]."},
        {"1.3.53.2.1.2.3.4.5.6.7.8.9.10.11.12", Exceptions::InvalidLength::ERROR_CODE,
         "OID contains more elements than expected"},
    };
    for (Case const & c : cases)
    {
        Bytes out(16, 0xEE);
        Thrown t = thrownBy([&] {
            KLV::loadFromStringOID(w(c.text).c_str(), out.data(), 16, KEY_PREFIX, 4, KEY_FIXED, 5);
        });
        EXPECT_EQ(c.code, t.code) << c.text;
        EXPECT_EQ(c.message, t.message) << c.text;
        EXPECT_EQ(Bytes(16, 0xEE), out) << c.text;
    }
    // Eleven elements fill the key exactly.
    Bytes full = loadOID("1.3.53.2.1.2.3.4.5.6.7.8.9.10.11", KEY_PREFIX, 4, KEY_FIXED, 5);
    EXPECT_EQ(11, full[15]);
}

TEST(FixedLengthIdentificationType, DottedForm)
{
    Bytes value = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x05, 0x01, 0x01, 0x0d, 0x01, 0x02, 0x01, 0x01, 0x02, 0x04, 0x00};
    EXPECT_EQ("06.0e.2b.34.02.05.01.01.0d.01.02.01.01.02.04.00", n(KLV::toStringDotted(value.data(), 16)));

    Bytes out(16, 0);
    // Upper-case digits are read; the separators are not looked at.
    KLV::loadFromStringDotted(w("06.0E.2B.34-02 05/01.01.0d.01.02.01.01.02.04.00").c_str(), out.data(), 16);
    EXPECT_EQ(value, out);

    Bytes untouched(16, 0xEE);
    Thrown t = thrownBy([&] {
        KLV::loadFromStringDotted(w("06.0e.2b.34.02.05.01.01.0d.01.02.01.01.02.04.0").c_str(), untouched.data(), 16);
    });
    EXPECT_EQ(Exceptions::InvalidLength::ERROR_CODE, t.code);
    EXPECT_EQ("Not enough data", t.message);
    t = thrownBy([&] {
        KLV::loadFromStringDotted(w("06.0e.2b.34.02.05.01.01.0d.01.02.01.01.02.04.0g").c_str(), untouched.data(), 16);
    });
    EXPECT_EQ(Exceptions::InvalidLabel::ERROR_CODE, t.code);
    EXPECT_EQ("Label contains non Hexadecimal characters", t.message);
    EXPECT_EQ(Bytes(16, 0xEE), untouched);
    EXPECT_EQ("Not enough data", thrownBy([&] { KLV::loadFromStringDotted(nullptr, untouched.data(), 16); }).message);
}

TEST(FixedLengthIdentificationType, HexadecimalForm)
{
    Bytes value = {0x00, 0x7f, 0xa0, 0xff};
    EXPECT_EQ("0x007fa0ff", n(KLV::toStringHexadecimal(value.data(), 4)));
    Bytes out(4, 0);
    KLV::loadFromStringHexadecimal(w("0x007FA0fF").c_str(), out.data(), 4);
    EXPECT_EQ(value, out);

    Bytes untouched(4, 0xEE);
    struct Case
    {
        char const * text;
        int code;
        char const * message;
    };
    Case const cases[] = {
        {"0x007fa0f", Exceptions::InvalidLength::ERROR_CODE, "Not enough data"},
        {"0x007fa0fff", Exceptions::InvalidLength::ERROR_CODE, "Not enough data"},
        {"007fa0ff", Exceptions::InvalidLength::ERROR_CODE, "Not enough data"},
        {"00007fa0ff", Exceptions::InvalidLabel::ERROR_CODE,
         "Expecting 0x in the start of the plain hexadecimal string representation"},
        {"0X007fa0ff", Exceptions::InvalidLabel::ERROR_CODE,
         "Expecting 0x in the start of the plain hexadecimal string representation"},
        {"0x007fa0fz", Exceptions::InvalidLabel::ERROR_CODE, "Label contains non Hexadecimal characters"},
    };
    for (Case const & c : cases)
    {
        Thrown t = thrownBy([&] { KLV::loadFromStringHexadecimal(w(c.text).c_str(), untouched.data(), 4); });
        EXPECT_EQ(c.code, t.code) << c.text;
        EXPECT_EQ(c.message, t.message) << c.text;
    }
    EXPECT_EQ(Bytes(4, 0xEE), untouched);
}

TEST(FixedLengthIdentificationType, RFC4122Form)
{
    Bytes value = {0x12, 0x34, 0x56, 0x78, 0x9a, 0xbc, 0xde, 0xf0, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08};
    std::string text = n(KLV::toStringRFC4122(value.data(), 16, UUID_HYPHENS, 4));
    EXPECT_EQ("12345678-9abc-def0-0102-030405060708", text);
    Bytes out(16, 0);
    KLV::loadFromStringRFC4122(w(text.c_str()).c_str(), out.data(), 16, UUID_HYPHENS, 4);
    EXPECT_EQ(value, out);
    // Any separator that is not a digit will do.
    KLV::loadFromStringRFC4122(w("12345678_9ABC{DEF0 0102.030405060708").c_str(), out.data(), 16, UUID_HYPHENS, 4);
    EXPECT_EQ(value, out);

    Bytes untouched(16, 0xEE);
    Thrown t = thrownBy([&] {
        KLV::loadFromStringRFC4122(w("12345678-9abc-def0-0102-03040506070").c_str(), untouched.data(), 16,
                                   UUID_HYPHENS, 4);
    });
    EXPECT_EQ(Exceptions::InvalidLength::ERROR_CODE, t.code);
    EXPECT_EQ("Not enough data", t.message);
    t = thrownBy([&] {
        KLV::loadFromStringRFC4122(w("123456789-abc-def0-0102-030405060708").c_str(), untouched.data(), 16,
                                   UUID_HYPHENS, 4);
    });
    EXPECT_EQ(Exceptions::InvalidLabel::ERROR_CODE, t.code);
    EXPECT_EQ("Expections an separator that was not a hexadecimal character", t.message);
    t = thrownBy([&] {
        KLV::loadFromStringRFC4122(w("12345678-9abc-def0-0102-03040506070x").c_str(), untouched.data(), 16,
                                   UUID_HYPHENS, 4);
    });
    EXPECT_EQ(Exceptions::InvalidLabel::ERROR_CODE, t.code);
    EXPECT_EQ("Label contains non Hexadecimal characters", t.message);
    EXPECT_EQ(Bytes(16, 0xEE), untouched);
}
