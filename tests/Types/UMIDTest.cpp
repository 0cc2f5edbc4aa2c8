#include "Types/UMID.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>

#include "Types/IdentifierTestSupport.h"

using namespace Vellum;
using namespace Vellum::IdentifierTest;
using Types::UMID32;
using Types::UMID64;

namespace
{
template <class T>
std::string hexOf(T const & id)
{
    std::string text = "0x";
    char const digits[] = "0123456789abcdef";
    for (unsigned i = 0; i < T::SIZE; ++i)
    {
        text += digits[id.rawBuffer()[i] >> 4];
        text += digits[id.rawBuffer()[i] & 15];
    }
    return text;
}

template <class T>
Thrown loadingUMID(std::string const & text, Types::StringRepresentationEncodingType form = Types::Hexadecimal)
{
    return thrownBy([&] { T id(w(text).c_str(), form); });
}
} // namespace

TEST(UMIDTest, PrintsAndLoadsPlainHexadecimal)
{
    std::mt19937 generator(7);
    Bytes bytes32 = randomBytes(generator, 32);
    bytes32[0] = 0x06;
    bytes32[31] = 0x00;
    UMID32 basic(bytes32.data());
    std::string text32 = hexOf(basic);
    ASSERT_EQ(66u, text32.size());
    EXPECT_EQ("0x06", text32.substr(0, 4));
    EXPECT_EQ("00", text32.substr(64));
    EXPECT_EQ(text32, n(basic.toString()));

    std::string upper = text32;
    std::transform(upper.begin() + 2, upper.end(), upper.begin() + 2, ::toupper);
    EXPECT_EQ(basic, UMID32(w(upper).c_str(), Types::Hexadecimal));

    Bytes bytes64 = randomBytes(generator, 64);
    UMID64 extended(bytes64.data());
    std::string text64 = hexOf(extended);
    ASSERT_EQ(130u, text64.size());
    EXPECT_EQ(text64, n(extended.toString()));
    EXPECT_EQ(extended, UMID64(w(text64).c_str(), Types::TypeDefault));
}

TEST(UMIDTest, RefusesMalformedText)
{
    std::string const good32 = "0x" + std::string(64, 'a');
    EXPECT_EQ(0, loadingUMID<UMID32>(good32).code);
    Thrown const tooShort = thrown<Exceptions::InvalidLength>("Not enough data");
    Thrown const noPrefix =
        thrown<Exceptions::InvalidLabel>("Expecting 0x in the start of the plain hexadecimal string representation");
    EXPECT_EQ(tooShort, loadingUMID<UMID32>(good32.substr(1)));
    // A basic UMID's text is too short for an extended one.
    EXPECT_EQ(tooShort, loadingUMID<UMID64>(good32));
    EXPECT_EQ(noPrefix, loadingUMID<UMID32>("1x" + std::string(64, 'a')));
    EXPECT_EQ(noPrefix, loadingUMID<UMID64>("0X" + std::string(128, 'a')));
    EXPECT_EQ(thrown<Exceptions::InvalidLabel>("Label contains non Hexadecimal characters"),
              loadingUMID<UMID64>("0x" + std::string(127, 'a') + "x"));
}
