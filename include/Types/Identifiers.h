#pragma once
// The numbered type identifiers by which the schema names the type of a value.

#include "Platform/Types.h"

namespace Vellum
{
namespace Types
{
namespace Identifiers
{
// Each enumerator is named after its text in identifierToString.
enum Identifier
{
    Array = 0,
    Batch = 1,
    Boolean = 2,
    DataStream = 3,
    DUMMY_TO_REPLACE_EDIT_RATE = 4,
    Int16 = 5,
    Int32 = 6,
    Int64 = 7,
    Int8 = 8,
    ISO7bitCharString = 9,
    Key = 10,
    Length = 11,
    LocalTag = 12,
    Position = 13,
    ProductVersionType = 14,
    Rational = 15,
    TimestampType = 16,
    UInt16 = 17,
    UInt32 = 18,
    UInt64 = 19,
    UInt8 = 20,
    UMID32 = 21,
    UMID64 = 22,
    UL = 23,
    Unknown = 24,
    UTF16 = 25,
    UTF16CharString = 26,
    UUID = 27,
    VersionType = 28,
    StrongReference = 29,
    WeakReference = 30,
    DeltaEntryType = 31,
    IndexEntryType = 32,
    Orientation = 33,
    RGBALayout = 34,
    SignalStandard = 35,
    DataValue = 36,
    J2KPictureComponentType = 37,
    J2KCodingStyleDefault = 38,
    J2KQuantisationDefault = 39
};

// How many identifiers there are; the name table holds one more, empty, entry behind them.
unsigned int const identifierCount = 40;

// The type's name ("UInt32", "UL", ...). Anything at or past identifierCount gives "".
unsigned short const * identifierToString(Identifier identifier);

// The size of a value of the type on the wire. A type of variable size throws InvalidType
// "Type has a variable size."; an identifier past the table throws InvalidType "Unknown type
// identifier.".
uint64 typeSize(Identifier identifier);
} // namespace Identifiers
} // namespace Types
} // namespace Vellum
