#include "Types/LocalTag.h"

#include <gtest/gtest.h>

#include "Types/IdentifierTestSupport.h"

using namespace Vellum;
using namespace Vellum::IdentifierTest;
using Types::LocalTag;

TEST(LocalTagTest, IsBigEndianOnTheWire)
{
    LocalTag tag(static_cast<unsigned short>(0x3C0A));
    EXPECT_EQ(0x3C, tag.rawBuffer()[0]);
    EXPECT_EQ(0x0A, tag.rawBuffer()[1]);
    EXPECT_EQ(0x3C0A, tag.value());
    EXPECT_EQ("0x3c0a", n(tag.toString()));
    EXPECT_EQ("3c.0a", n(tag.toString(Types::Dotted)));

    unsigned char const wire[2] = {0x80, 0x01};
    LocalTag fromWire(wire);
    EXPECT_EQ(0x8001, fromWire.value());
    EXPECT_EQ(fromWire, LocalTag(w("0x8001").c_str(), Types::Hexadecimal));
    EXPECT_EQ(fromWire, LocalTag(w("80.01").c_str(), Types::Dotted));
    EXPECT_EQ(0, LocalTag().value());

    // Order follows the number, since the bytes are big-endian.
    EXPECT_TRUE(LocalTag(static_cast<unsigned short>(0x00FF)) < LocalTag(static_cast<unsigned short>(0x0100)));

    EXPECT_EQ(thrown<Exceptions::InvalidLength>("Not enough data"),
              thrownBy([] { LocalTag t(w("0x3c0").c_str(), Types::Hexadecimal); }));
}

TEST(LocalTagTest, StaticTagsRunFrom0100To7FFF)
{
    struct Case
    {
        unsigned short tag;
        bool isStatic;
    } const cases[] = {{0x3C0A, true},  {0x0100, true},  {0x7FFF, true},  {0x0001, false},
                       {0x00FF, false}, {0x0000, false}, {0x8000, false}, {0x8001, false},
                       {0xFFFF, false}};
    for (Case const & c : cases)
        EXPECT_EQ(c.isStatic, LocalTag(c.tag).isStaticLocalTag()) << std::hex << c.tag;
}
