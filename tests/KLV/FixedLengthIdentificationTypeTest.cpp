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

namespace
{
// The text forms of identifiers, each as a load and a render over a value of `size` bytes.
enum Form
{
    KeyOID,
    LabelOID,
    Dotted,
    Hexadecimal,
    RFC4122
};

void load(Form form, char const * text, unsigned char * out, unsigned size)
{
    Templates::wstring wide = text == nullptr ? Templates::wstring() : w(text);
    unsigned short const * t = text == nullptr ? nullptr : wide.c_str();
    switch (form)
    {
    case KeyOID:
        return KLV::loadFromStringOID(t, out, size, KEY_PREFIX, 4, KEY_FIXED, 5);
    case LabelOID:
        return KLV::loadFromStringOID(t, out, size, UL_PREFIX, 3, UL_FIXED, 4);
    case Dotted:
        return KLV::loadFromStringDotted(t, out, size);
    case Hexadecimal:
        return KLV::loadFromStringHexadecimal(t, out, size);
    case RFC4122:
        return KLV::loadFromStringRFC4122(t, out, size, UUID_HYPHENS, 4);
    }
}

std::string render(Form form, Bytes const & value)
{
    switch (form)
    {
    case KeyOID:
        return n(KLV::toStringOID(value.data(), KEY_PREFIX, 4, 5, 16));
    case LabelOID:
        return n(KLV::toStringOID(value.data(), UL_PREFIX, 3, 4, 16));
    case Dotted:
        return n(KLV::toStringDotted(value.data(), unsigned(value.size())));
    case Hexadecimal:
        return n(KLV::toStringHexadecimal(value.data(), unsigned(value.size())));
    case RFC4122:
        return n(KLV::toStringRFC4122(value.data(), 16, UUID_HYPHENS, 4));
    }
    return "";
}
} // namespace

TEST(FixedLengthIdentificationType, TextFormsRoundTrip)
{
    struct Case
    {
        Form form;
        Bytes value;
        char const * text;
        // Another text that loads the same value: other case, other separators.
        char const * alternative;
    };
    Case const cases[] = {
        {KeyOID, {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01, 0x01, 0x0d, 0x01, 0x01, 0x01, 0x01, 0x01, 0x2f, 0x00},
         "1.3.53.2.83.1.1.13.1.1.1.1.1.47", nullptr},
        // Zeros inside the value are written; only those at the end are held back.
        {KeyOID, {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x00, 0x00, 0x07, 0, 0, 0, 0, 0, 0, 0, 0}, "1.3.53.2.0.0.7", nullptr},
        {KeyOID, {0x06, 0x0e, 0x2b, 0x34, 0x02, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}, "1.3.53.2", nullptr},
        {KeyOID, {0x06, 0x0e, 0x2b, 0x34, 0x02, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}, "1.3.53.2.1.2.3.4.5.6.7.8.9.10.11",
         nullptr},
        // A universal label has one number less in front and one byte more behind it.
        {LabelOID, {0x06, 0x0e, 0x2b, 0x34, 0x04, 0x01, 0x01, 0x01, 0x0d, 0x01, 0x03, 0x01, 0x02, 0x01, 0x01, 0xff},
         "1.3.53.4.1.1.1.13.1.3.1.2.1.1.255", nullptr},
        {Dotted, {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x05, 0x01, 0x01, 0x0d, 0x01, 0x02, 0x01, 0x01, 0x02, 0x04, 0x00},
         "06.0e.2b.34.02.05.01.01.0d.01.02.01.01.02.04.00", "06.0E.2B.34-02 05/01.01.0d.01.02.01.01.02.04.00"},
        {Hexadecimal, {0x00, 0x7f, 0xa0, 0xff}, "0x007fa0ff", "0x007FA0fF"},
        {RFC4122, {0x12, 0x34, 0x56, 0x78, 0x9a, 0xbc, 0xde, 0xf0, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08},
         "12345678-9abc-def0-0102-030405060708", "12345678_9ABC{DEF0 0102.030405060708"},
    };
    for (Case const & c : cases)
    {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(c.text, render(c.form, c.value));
        for (char const * text : {c.text, c.alternative})
        {
            if (text == nullptr)
                continue;
            Bytes out(c.value.size(), 0xEE);
            load(c.form, text, out.data(), unsigned(out.size()));
            EXPECT_EQ(c.value, out) << text;
        }
    }
}

TEST(FixedLengthIdentificationType, LoadingRefusesBadTextAndLeavesTheValue)
{
    int const LENGTH = Exceptions::InvalidLength::ERROR_CODE;
    int const LABEL = Exceptions::InvalidLabel::ERROR_CODE;
    char const * const INITIAL = "OID contains initial values not according to type";
    char const * const RANGE = "OID contains values not in [0 - 255].";
    char const * const NOT_HEX = "Label contains non Hexadecimal characters";
    struct Case
    {
        Form form;
        char const * text;
        unsigned size;
        int code;
        char const * message;
    };
    Case const cases[] = {
        {KeyOID, "", 16, LENGTH, "Not enough data"},
        {KeyOID, "1.3", 16, LENGTH, "Not enough data"},
        {KeyOID, "1.3.52.2.1", 16, LABEL, INITIAL},
        {KeyOID, "1.3.53.3", 16, LABEL, INITIAL},
        {KeyOID, "1.x.53.2", 16, LABEL, INITIAL},
        {KeyOID, "1.3.53.2.256", 16, LABEL, RANGE},
        {KeyOID, "1.3.53.2.99999999999999", 16, LABEL, RANGE},
        {KeyOID, "1.3.53.2.1..2", 16, LABEL, RANGE},
        {KeyOID, "1.3.53.2.1.", 16, LABEL, RANGE},
        {KeyOID, "1.3.53.2.-1", 16, LABEL, RANGE},
        {KeyOID, "1.3.53.2.1.2.3.4.5.6.7.8.9.10.11.12", 16, LENGTH, "OID contains more elements than expected"},
        {Dotted, "06.0e.2b.34.02.05.01.01.0d.01.02.01.01.02.04.0", 16, LENGTH, "Not enough data"},
        {Dotted, "06.0e.2b.34.02.05.01.01.0d.01.02.01.01.02.04.0g", 16, LABEL, NOT_HEX},
        {Dotted, nullptr, 16, LENGTH, "Not enough data"},
        {Hexadecimal, "0x007fa0f", 4, LENGTH, "Not enough data"},
        {Hexadecimal, "0x007fa0fff", 4, LENGTH, "Not enough data"},
        {Hexadecimal, "007fa0ff", 4, LENGTH, "Not enough data"},
        {Hexadecimal, "00007fa0ff", 4, LABEL, "Expecting 0x in the start of the plain hexadecimal string representation"},
        {Hexadecimal, "0X007fa0ff", 4, LABEL, "Expecting 0x in the start of the plain hexadecimal string representation"},
        {Hexadecimal, "0x007fa0fz", 4, LABEL, NOT_HEX},
        {RFC4122, "12345678-9abc-def0-0102-03040506070", 16, LENGTH, "Not enough data"},
        {RFC4122, "123456789-abc-def0-0102-030405060708", 16, LABEL,
         "Expections an separator that was not a hexadecimal character"},
        {RFC4122, "12345678-9abc-def0-0102-03040506070x", 16, LABEL, NOT_HEX},
    };
    for (Case const & c : cases)
    {
        SCOPED_TRACE(c.text == nullptr ? "(null)" : c.text);
        Bytes out(c.size, 0xEE);
        Thrown t = thrownBy([&] { load(c.form, c.text, out.data(), c.size); });
        EXPECT_EQ(c.code, t.code);
        EXPECT_EQ(c.message, t.message);
        EXPECT_EQ(Bytes(c.size, 0xEE), out);
    }
}
