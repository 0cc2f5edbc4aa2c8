// The type factory makes every identifier type from the bytes of a value.

#include <gtest/gtest.h>

#include "Types/Factories/BaseTypeFactory.h"
#include "Types/IdentifierTestSupport.h"
#include "Types/Identifiers.h"
#include "Types/LocalTag.h"
#include "Types/References.h"
#include "Types/UMID.h"
#include "Types/UUID.h"
#include "Types/UniversalLabel.h"

using namespace Vellum;
using namespace Vellum::IdentifierTest;
using Types::Factories::BaseTypeFactory;
namespace Id = Types::Identifiers;

TEST(IdentifierMakersTest, FactoryMakesEachIdentifierType)
{
    struct Case
    {
        Id::Identifier type;
        unsigned size;
        char const * className;
    } const cases[] = {{Id::Key, 16, "UniversalLabel"},     {Id::UL, 16, "UniversalLabel"},
                       {Id::UUID, 16, "UUID"},               {Id::UMID32, 32, "UMID32"},
                       {Id::UMID64, 64, "UMID64"},           {Id::LocalTag, 2, "LocalTag"},
                       {Id::StrongReference, 16, "StrongReference"},
                       {Id::WeakReference, 16, "WeakReference"}};
    std::mt19937 generator(5);
    BaseTypeFactory & factory = BaseTypeFactory::instance();
    for (Case const & c : cases)
    {
        SCOPED_TRACE(c.className);
        EXPECT_TRUE(factory.hasFixedSizeMaker(c.type));
        Bytes bytes = randomBytes(generator, c.size + 3);
        ValueOver over(bytes);
        Templates::auto_ptr<Types::SimpleDataType> made = factory.create(over.value, c.type);
        ASSERT_NE(nullptr, made.get());
        EXPECT_EQ(c.size, made->serializedSize());
        EXPECT_EQ(Bytes(bytes.begin(), bytes.begin() + c.size), bytesOf(made->rawBuffer(), c.size));
        EXPECT_EQ(3u, over.value.remaining());
        NameVisitor visitor;
        static_cast<Types::SimpleDataType const &>(*made).accept(static_cast<Types::Visitors::Visitor &>(visitor));
        EXPECT_EQ(c.className, visitor.seen);

        // One byte short of the type's size.
        Bytes shorter(bytes.begin(), bytes.begin() + c.size - 1);
        ValueOver shortOver(shorter);
        Thrown thrown = thrownBy([&] { factory.create(shortOver.value, c.type); });
        EXPECT_EQ(int(Exceptions::InvalidLength::ERROR_CODE), thrown.code);
        EXPECT_EQ("Invalid data size in Value", thrown.message);
    }
}
