#include <gtest/gtest.h>

#include "Types/Identifiers.h"
#include "ValueTestSupport.h"

using namespace Vellum;
using namespace ValueTest;
namespace Id = Vellum::Types::Identifiers;

TEST(TypeIdentifiers, NamesAndSizesFollowTheTable)
{
    struct Row
    {
        Id::Identifier id;
        char const * name;
        int size; // 0 for variable
    };
    Row const rows[] = {
        {Id::Array, "Array", 0}, {Id::Batch, "Batch", 0}, {Id::Boolean, "Boolean", 1},
        {Id::DataStream, "DataStream", 0}, {Id::DUMMY_TO_REPLACE_EDIT_RATE, "DUMMY_TO_REPLACE_EDIT_RATE", 0},
        {Id::Int16, "Int16", 2}, {Id::Int32, "Int32", 4}, {Id::Int64, "Int64", 8}, {Id::Int8, "Int8", 1},
        {Id::ISO7bitCharString, "ISO7bitCharString", 0}, {Id::Key, "Key", 16}, {Id::Length, "Length", 8},
        {Id::LocalTag, "LocalTag", 2}, {Id::Position, "Position", 8},
        {Id::ProductVersionType, "ProductVersionType", 10}, {Id::Rational, "Rational", 8},
        {Id::TimestampType, "TimestampType", 8}, {Id::UInt16, "UInt16", 2}, {Id::UInt32, "UInt32", 4},
        {Id::UInt64, "UInt64", 8}, {Id::UInt8, "UInt8", 1}, {Id::UMID32, "UMID32", 32}, {Id::UMID64, "UMID64", 64},
        {Id::UL, "UL", 16}, {Id::Unknown, "Unknown", 0}, {Id::UTF16, "UTF16", 2},
        {Id::UTF16CharString, "UTF16CharString", 0}, {Id::UUID, "UUID", 16}, {Id::VersionType, "VersionType", 2},
        {Id::StrongReference, "StrongReference", 16}, {Id::WeakReference, "WeakReference", 16},
        {Id::DeltaEntryType, "DeltaEntryType", 0}, {Id::IndexEntryType, "IndexEntryType", 0},
        {Id::Orientation, "Orientation", 4}, {Id::RGBALayout, "RGBALayout", 16},
        {Id::SignalStandard, "SignalStandard", 1}, {Id::DataValue, "DataValue", 0},
        {Id::J2KPictureComponentType, "J2KPictureComponentType", 3},
        {Id::J2KCodingStyleDefault, "J2KCodingStyleDefault", 0},
        {Id::J2KQuantisationDefault, "J2KQuantisationDefault", 0},
    };
    ASSERT_EQ(Id::identifierCount, sizeof(rows) / sizeof(rows[0]));
    for (unsigned i = 0; i < Id::identifierCount; ++i)
    {
        SCOPED_TRACE(rows[i].name);
        EXPECT_EQ(i, static_cast<unsigned>(rows[i].id));
        EXPECT_EQ(rows[i].name, narrow(Id::identifierToString(rows[i].id)));
        if (rows[i].size == 0)
        {
            EXPECT_EQ(thrown<Exceptions::InvalidType>("Type has a variable size."),
                      thrownBy([&] { Id::typeSize(rows[i].id); }));
        }
        else
        {
            EXPECT_EQ(uint64(rows[i].size), Id::typeSize(rows[i].id));
        }
    }
}

TEST(TypeIdentifiers, PastTheTable)
{
    // The closing entry is empty, and so is anything past it.
    EXPECT_EQ("", narrow(Id::identifierToString(static_cast<Id::Identifier>(40))));
    EXPECT_EQ("", narrow(Id::identifierToString(static_cast<Id::Identifier>(1000))));
    EXPECT_EQ(thrown<Exceptions::InvalidType>("Unknown type identifier."),
              thrownBy([] { Id::typeSize(static_cast<Id::Identifier>(40)); }));
}
