#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "Types/ValueClasses.h"
#include "Types/Visitors.h"
#include "ValueTestSupport.h"

using namespace Vellum;
using namespace ValueTest;
namespace Id = Vellum::Types::Identifiers;
namespace V = Vellum::Types::Visitors;

namespace
{
struct Sample
{
    std::shared_ptr<Types::BaseType> value;
    Id::Identifier id;
};

// One value of every class of the module, with its identifier.
std::vector<Sample> everyValue()
{
    unsigned char const bytes[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
    unsigned short const text[] = {'a', 0};
    return {
        {std::make_shared<Types::Array>(4), Id::Array}, {std::make_shared<Types::Batch>(16), Id::Batch},
        {std::make_shared<Types::Boolean>(true), Id::Boolean},
        {std::make_shared<Types::DataStream>(bytes, 3), Id::DataStream},
        {std::make_shared<Types::DataValue>(bytes, 2), Id::DataValue},
        {std::make_shared<Types::ISO7String>("a"), Id::ISO7bitCharString},
        {std::make_shared<Types::Int16>(1), Id::Int16}, {std::make_shared<Types::Int32>(1), Id::Int32},
        {std::make_shared<Types::Int64>(1), Id::Int64}, {std::make_shared<Types::Int8>(1), Id::Int8},
        {std::make_shared<Types::J2KCodingStyleDefault>(1, 2, bytes, 5), Id::J2KCodingStyleDefault},
        {std::make_shared<Types::J2KPictureComponent>(1, 2, 3), Id::J2KPictureComponentType},
        {std::make_shared<Types::J2KQuantisationDefault>(1, bytes, 1), Id::J2KQuantisationDefault},
        {std::make_shared<Types::Length>(1), Id::Length},
        {std::make_shared<Types::Orientation>(1), Id::Orientation},
        {std::make_shared<Types::Position>(1), Id::Position},
        {std::make_shared<Types::ProductVersion>(1, 2, 3, 4, Types::ProductVersion::BETA_VERSION), Id::ProductVersionType},
        {std::make_shared<Types::RGBALayout>(), Id::RGBALayout},
        {std::make_shared<Types::Rational>(25, 1), Id::Rational},
        {std::make_shared<Types::SignalStandard>(1), Id::SignalStandard},
        {std::make_shared<Types::Timestamp>(2024, 1, 2, 3, 4, 5, static_cast<unsigned short>(6)), Id::TimestampType},
        {std::make_shared<Types::UInt16>(1), Id::UInt16}, {std::make_shared<Types::UInt32>(1), Id::UInt32},
        {std::make_shared<Types::UInt64>(1), Id::UInt64}, {std::make_shared<Types::UInt8>(1), Id::UInt8},
        {std::make_shared<Types::UTF16>(1), Id::UTF16},
        {std::make_shared<Types::UTF16String>(text), Id::UTF16CharString},
        {std::make_shared<Types::Unknown>(bytes, 4), Id::Unknown},
        {std::make_shared<Types::VersionType>(1, 2), Id::VersionType},
    };
}

// Counts the visits that reach each base level.
class LevelCounter : public V::DelegateToBaseVisitor
{
public:
    using V::DelegateToBaseVisitor::visit;
    int simple = 0;
    int collection = 0;
    int base = 0;
    void visit(Types::SimpleDataType const & value) override
    {
        ++simple;
        V::DelegateToBaseVisitor::visit(value);
    }
    void visit(Types::Collection const & value) override
    {
        ++collection;
        V::DelegateToBaseVisitor::visit(value);
    }
    void visit(Types::BaseType const &) override { ++base; }
};

class Doubler : public V::NonConstDelegateToBaseVisitor
{
public:
    using V::NonConstDelegateToBaseVisitor::visit;
    int others = 0;
    void visit(Types::UInt32 & value) override { value = Types::UInt32(value.value() * 2); }
    void visit(Types::BaseType &) override { ++others; }
};
} // namespace

TEST(ValueVisitors, GetGivesTheValueOnlyForItsOwnType)
{
    std::vector<Sample> samples = everyValue();
    int found = 0;
    for (Sample const & sample : samples)
    {
        Types::BaseType const & value = *sample.value;
        Types::UInt32 const * asUInt32 = V::getAs<Types::UInt32>(value);
        Types::Int32 const * asInt32 = V::getAs<Types::Int32>(value);
        EXPECT_EQ(sample.id == Id::UInt32, asUInt32 != nullptr);
        EXPECT_EQ(sample.id == Id::Int32, asInt32 != nullptr);
        if (asUInt32 != nullptr)
        {
            EXPECT_EQ(static_cast<void const *>(&value), static_cast<void const *>(asUInt32));
            ++found;
        }
    }
    EXPECT_EQ(1, found);

    // A visitor used twice forgets the first hit.
    V::GetVisitor<Types::Batch> visitor;
    samples[1].value->accept(static_cast<V::Visitor &>(visitor));
    EXPECT_NE(nullptr, visitor.value());
    static_cast<Types::BaseType const &>(*samples[0].value).accept(visitor);
    EXPECT_EQ(nullptr, visitor.value());

    Types::UInt16 mutableValue(5);
    Types::UInt16 * writable = V::getAs<Types::UInt16>(static_cast<Types::BaseType &>(mutableValue));
    ASSERT_NE(nullptr, writable);
    *writable = Types::UInt16(6);
    EXPECT_EQ(6, mutableValue.value());
    EXPECT_EQ(nullptr, V::getAs<Types::UInt8>(static_cast<Types::BaseType &>(mutableValue)));
}

TEST(ValueVisitors, DelegateToBaseReachesEachLevel)
{
    LevelCounter counter;
    for (Sample const & sample : everyValue())
        static_cast<Types::BaseType const &>(*sample.value).accept(counter);
    EXPECT_EQ(27, counter.simple);
    EXPECT_EQ(2, counter.collection);
    EXPECT_EQ(29, counter.base);

    Types::UInt32 number(21);
    Types::Int32 other(3);
    Doubler doubler;
    number.accept(static_cast<Types::Visitors::NonConstVisitor &>(doubler));
    other.accept(static_cast<Types::Visitors::NonConstVisitor &>(doubler));
    EXPECT_EQ(42u, number.value());
    EXPECT_EQ(3, other.value());
    EXPECT_EQ(1, doubler.others);

    // The null visitors do nothing, for any value.
    V::NullVisitor nothing;
    V::NonConstNullVisitor nothingToChange;
    for (Sample const & sample : everyValue())
    {
        Bytes before = wire(*sample.value);
        static_cast<Types::BaseType const &>(*sample.value).accept(nothing);
        sample.value->accept(static_cast<V::NonConstVisitor &>(nothingToChange));
        EXPECT_EQ(before, wire(*sample.value));
    }
}

TEST(ValueVisitors, SettersAssignOnlyTheSameType)
{
    Types::Timestamp target(2000, 1, 1, 0, 0, 0, static_cast<unsigned short>(0));
    Types::Timestamp source(2024, 5, 6, 7, 8, 9, static_cast<unsigned short>(400));
    V::SetterVisitor setter(source);
    target.accept(static_cast<V::NonConstVisitor &>(setter));
    EXPECT_EQ(wire(source), wire(target));

    Types::UInt32 number(1);
    Thrown t = thrownBy([&] { number.accept(static_cast<V::NonConstVisitor &>(setter)); });
    EXPECT_EQ(Exceptions::InvalidType::ERROR_CODE, t.code);
    EXPECT_EQ("The value to set is of another type than the value visited", t.message);
    EXPECT_EQ(1u, number.value());

    // Collections are copied deep.
    Types::Array from(2);
    from.append(Templates::auto_ptr<Types::SimpleDataType>(new Types::UInt16(9)));
    Types::Array to(4);
    V::SetterVisitor arraySetter(from);
    to.accept(static_cast<V::NonConstVisitor &>(arraySetter));
    from.remove(0);
    ASSERT_EQ(1u, to.size());
    EXPECT_EQ(2u, to.elementSize());
    EXPECT_EQ(Bytes({0, 0, 0, 1, 0, 0, 0, 2, 0, 9}), wire(to));
    Types::Batch batch(2);
    t = thrownBy([&] { batch.accept(static_cast<V::NonConstVisitor &>(arraySetter)); });
    EXPECT_EQ(Exceptions::InvalidType::ERROR_CODE, t.code);

    V::ValueToSetVisitor<Types::Rational> rationalSetter(Types::Rational(30000, 1001));
    Types::Rational rate(25, 1);
    rate.accept(static_cast<V::NonConstVisitor &>(rationalSetter));
    EXPECT_EQ(30000, rate.numerator());
    EXPECT_EQ(1001, rate.denominator());
    Types::UInt8 small(3);
    t = thrownBy([&] { small.accept(static_cast<V::NonConstVisitor &>(rationalSetter)); });
    EXPECT_EQ(Exceptions::InvalidType::ERROR_CODE, t.code);
    EXPECT_EQ(3, small.value());
}
