#include <gtest/gtest.h>

#include "Types/Collection.h"
#include "Types/Factories/BaseTypeFactory.h"
#include "Types/Integers.h"
#include "Types/Visitors.h"
#include "ValueTestSupport.h"

using namespace Vellum;
using namespace ValueTest;
namespace Id = Vellum::Types::Identifiers;
using Vellum::Types::Factories::BaseTypeFactory;

namespace
{
// Bytes that make a valid value of the type: the type's own size, or ten bytes for one of
// variable size (Orientation reads one byte).
Bytes sampleFor(Id::Identifier id)
{
    uint64 size = 10;
    if (id == Id::Orientation)
        size = 1;
    else
    {
        try
        {
            size = Id::typeSize(id);
        }
        catch (Exceptions::InvalidType const &)
        {
        }
    }
    Bytes bytes;
    for (uint64 i = 0; i < size; ++i)
        bytes.push_back(static_cast<unsigned char>(i + 1));
    return bytes;
}

Id::Identifier identifierOf(Types::Visitors::Visitable const & value)
{
    Types::Visitors::GetIdentifierVisitor visitor;
    value.accept(visitor);
    return visitor.identifier();
}

int lastMade = 0;

Templates::auto_ptr<Types::SimpleDataType> makeMarker(KLV::Value & value)
{
    lastMade = 1;
    return Templates::auto_ptr<Types::SimpleDataType>(new Types::UInt8(value));
}
} // namespace

TEST(BaseTypeFactory, MakesEachIdentifiersClass)
{
    BaseTypeFactory & factory = BaseTypeFactory::instance();
    EXPECT_EQ(&factory, &BaseTypeFactory::instance());

    for (unsigned i = 0; i < Id::identifierCount; ++i)
    {
        Id::Identifier id = static_cast<Id::Identifier>(i);
        SCOPED_TRACE(narrow(Id::identifierToString(id)));
        bool const identifierType = id == Id::Key || id == Id::LocalTag || id == Id::UMID32 || id == Id::UMID64 ||
                                    id == Id::UL || id == Id::UUID || id == Id::StrongReference ||
                                    id == Id::WeakReference;
        bool const noMaker = id == Id::DUMMY_TO_REPLACE_EDIT_RATE || id == Id::DeltaEntryType ||
                             id == Id::IndexEntryType || id == Id::Array || id == Id::Batch;
        Bytes bytes = sampleFor(id);
        ValueOver over(bytes);
        if (noMaker || (identifierType && !factory.hasFixedSizeMaker(id)))
        {
            EXPECT_FALSE(factory.hasFixedSizeMaker(id));
            Thrown t = thrownBy([&] { factory.create(over.value(), id); });
            EXPECT_EQ(Exceptions::NoFactory::ERROR_CODE, t.code);
            EXPECT_EQ("No Factory for type", t.message);
            continue;
        }
        ASSERT_TRUE(factory.hasFixedSizeMaker(id));
        Templates::auto_ptr<Types::SimpleDataType> made = factory.create(over.value(), id);
        ASSERT_NE(nullptr, made.get());
        // A key is made as a universal label.
        EXPECT_EQ(id == Id::Key ? Id::UL : id, identifierOf(*made));
        EXPECT_EQ(bytes, wire(*made));
        EXPECT_EQ(0u, over.value().remaining());
        if (identifierType)
        {
            // One byte short of the type's size.
            ValueOver shortOver(Bytes(bytes.begin(), bytes.end() - 1));
            EXPECT_EQ(thrown<Exceptions::InvalidLength>("Invalid data size in Value"),
                      thrownBy([&] { factory.create(shortOver.value(), id); }));
        }
    }
}

TEST(BaseTypeFactory, CollectionsNeedTheirElementType)
{
    BaseTypeFactory & factory = BaseTypeFactory::instance();
    EXPECT_TRUE(factory.hasVariableSizeMaker(Id::Array));
    EXPECT_TRUE(factory.hasVariableSizeMaker(Id::Batch));
    EXPECT_FALSE(factory.hasVariableSizeMaker(Id::UInt32));

    Bytes bytes = {0, 0, 0, 2, 0, 0, 0, 2, 0xAB, 0xCD, 0x00, 0x01};
    ValueOver arrayOver(bytes);
    Templates::auto_ptr<Types::BaseType> array = factory.create(arrayOver.value(), Id::Array, Id::UInt16);
    EXPECT_EQ(Id::Array, identifierOf(*array));
    EXPECT_EQ(bytes, wire(*array));
    Types::Array const * typed = Types::Visitors::getAs<Types::Array>(*array);
    ASSERT_NE(nullptr, typed);
    EXPECT_EQ(0xABCD, Types::Visitors::getAs<Types::UInt16>(typed->at(0))->value());

    ValueOver batchOver(bytes);
    Templates::auto_ptr<Types::BaseType> batch = factory.create(batchOver.value(), Id::Batch, Id::Int16);
    EXPECT_EQ(Id::Batch, identifierOf(*batch));

    // A simple type through the same call: the number is not used.
    ValueOver simpleOver(Bytes{0, 0, 0, 9});
    Templates::auto_ptr<Types::BaseType> simple = factory.create(simpleOver.value(), Id::UInt32, 12345);
    EXPECT_EQ(Id::UInt32, identifierOf(*simple));

    ValueOver none(bytes);
    EXPECT_EQ(thrown<Exceptions::NoFactory>("No Factory for type"),
              thrownBy([&] { factory.create(none.value(), Id::IndexEntryType, 4); }));
}

TEST(BaseTypeFactory, TablesAreOpen)
{
    BaseTypeFactory & factory = BaseTypeFactory::instance();
    ASSERT_FALSE(factory.hasFixedSizeMaker(Id::DUMMY_TO_REPLACE_EDIT_RATE));
    factory.registerFixedSizeMaker(Id::DUMMY_TO_REPLACE_EDIT_RATE, &makeMarker);
    EXPECT_TRUE(factory.hasFixedSizeMaker(Id::DUMMY_TO_REPLACE_EDIT_RATE));
    ValueOver over(Bytes{42});
    Templates::auto_ptr<Types::SimpleDataType> made = factory.create(over.value(), Id::DUMMY_TO_REPLACE_EDIT_RATE);
    EXPECT_EQ(1, lastMade);
    EXPECT_EQ(Bytes({42}), wire(*made));

    factory.registerFixedSizeMaker(Id::DUMMY_TO_REPLACE_EDIT_RATE, nullptr);
    EXPECT_FALSE(factory.hasFixedSizeMaker(Id::DUMMY_TO_REPLACE_EDIT_RATE));
}
