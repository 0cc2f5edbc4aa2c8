#include "Types/Identifiers.h"

#include "Exceptions/Exceptions.h"
#include "Templates/Containers.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace Types
{
namespace Identifiers
{
namespace
{
struct TypeEntry
{
    char const * name;
    // 0 for a type of variable size.
    unsigned char size;
};

// Indexed by Identifier; the last entry closes the table.
TypeEntry const typeTable[identifierCount + 1] = {
    {"Array", 0},
    {"Batch", 0},
    {"Boolean", 1},
    {"DataStream", 0},
    {"DUMMY_TO_REPLACE_EDIT_RATE", 0},
    {"Int16", 2},
    {"Int32", 4},
    {"Int64", 8},
    {"Int8", 1},
    {"ISO7bitCharString", 0},
    {"Key", 16},
    {"Length", 8},
    {"LocalTag", 2},
    {"Position", 8},
    {"ProductVersionType", 10},
    {"Rational", 8},
    {"TimestampType", 8},
    {"UInt16", 2},
    {"UInt32", 4},
    {"UInt64", 8},
    {"UInt8", 1},
    {"UMID32", 32},
    {"UMID64", 64},
    {"UL", 16},
    {"Unknown", 0},
    {"UTF16", 2},
    {"UTF16CharString", 0},
    {"UUID", 16},
    {"VersionType", 2},
    {"StrongReference", 16},
    {"WeakReference", 16},
    {"DeltaEntryType", 0},
    {"IndexEntryType", 0},
    {"Orientation", 4},
    {"RGBALayout", 16},
    {"SignalStandard", 1},
    {"DataValue", 0},
    {"J2KPictureComponentType", 3},
    {"J2KCodingStyleDefault", 0},
    {"J2KQuantisationDefault", 0},
    {"", 0},
};

// The names as interface text, converted once.
struct NameTable
{
    Templates::wstring names[identifierCount + 1];

    NameTable()
    {
        for (unsigned int i = 0; i <= identifierCount; ++i)
            names[i] = Utils::wide(typeTable[i].name);
    }
};

NameTable const & nameTable()
{
    static NameTable const table;
    return table;
}
} // namespace

unsigned short const * identifierToString(Identifier identifier)
{
    unsigned int index = static_cast<unsigned int>(identifier);
    if (index > identifierCount)
        index = identifierCount;
    return nameTable().names[index].c_str();
}

uint64 typeSize(Identifier identifier)
{
    unsigned int index = static_cast<unsigned int>(identifier);
    if (index >= identifierCount)
        VELLUM_THROW(InvalidType, "Unknown type identifier.");
    if (typeTable[index].size == 0)
        VELLUM_THROW(InvalidType, "Type has a variable size.");
    return typeTable[index].size;
}
} // namespace Identifiers
} // namespace Types
} // namespace Vellum
