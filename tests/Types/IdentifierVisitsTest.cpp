// The visitors over the identifier and reference classes.

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "Types/LocalTag.h"
#include "Types/References.h"
#include "Types/UMID.h"
#include "Types/UUID.h"
#include "Types/UniversalLabel.h"
#include "Types/Visitors.h"
#include "ValueTestSupport.h"

using namespace Vellum;
using namespace ValueTest;
namespace Id = Vellum::Types::Identifiers;
namespace V = Vellum::Types::Visitors;

namespace
{
class LevelCounter : public V::DelegateToBaseVisitor
{
public:
    using V::DelegateToBaseVisitor::visit;
    int uid = 0;
    int reference = 0;
    int simple = 0;
    void visit(Types::UID const & value) override
    {
        ++uid;
        V::DelegateToBaseVisitor::visit(value);
    }
    void visit(Types::Reference const & value) override
    {
        ++reference;
        V::DelegateToBaseVisitor::visit(value);
    }
    void visit(Types::SimpleDataType const &) override { ++simple; }
};
} // namespace

TEST(IdentifierVisits, IdentifiersAndBaseClasses)
{
    unsigned char bytes[64];
    for (unsigned i = 0; i < 64; ++i)
        bytes[i] = static_cast<unsigned char>(i + 1);
    struct Sample
    {
        std::shared_ptr<Types::SimpleDataType> value;
        Id::Identifier id;
    };
    std::vector<Sample> samples = {
        {std::make_shared<Types::UniversalLabel>(bytes), Id::UL},
        {std::make_shared<Types::UUID>(bytes), Id::UUID},
        {std::make_shared<Types::UMID32>(bytes), Id::UMID32},
        {std::make_shared<Types::UMID64>(bytes), Id::UMID64},
        {std::make_shared<Types::LocalTag>(static_cast<unsigned short>(0x3C0A)), Id::LocalTag},
        {std::make_shared<Types::StrongReference>(bytes), Id::StrongReference},
        {std::make_shared<Types::WeakReference>(bytes), Id::WeakReference},
    };
    LevelCounter counter;
    for (Sample const & sample : samples)
    {
        static_cast<Types::SimpleDataType const &>(*sample.value).accept(counter);
    }
    EXPECT_EQ(4, counter.uid);
    EXPECT_EQ(2, counter.reference);
    EXPECT_EQ(7, counter.simple);
}

TEST(IdentifierVisits, SettersAssignTheBytesOfTheSameClassOnly)
{
    unsigned char first[16] = {1};
    unsigned char second[16] = {2};
    Types::UUID const source(second);
    V::SetterVisitor setter(source);
    // A reference carries a UUID's bytes but is not a UUID.
    Types::StrongReference reference(first);
    Thrown t = thrownBy([&] { reference.accept(static_cast<V::NonConstVisitor &>(setter)); });
    EXPECT_EQ(Exceptions::InvalidType::ERROR_CODE, t.code);
    EXPECT_EQ(1, reference.rawBuffer()[0]);

    V::ValueToSetVisitor<Types::LocalTag> tagSetter(Types::LocalTag(static_cast<unsigned short>(0x8001)));
    Types::LocalTag tag(static_cast<unsigned short>(0x3C0A));
    tag.accept(static_cast<V::NonConstVisitor &>(tagSetter));
    EXPECT_EQ(Bytes({0x80, 0x01}), raw(tag));
}


