#pragma once
// The rows of the generated table of register facts that the tests check the library against.

#include <cstddef>

#include "KLV/Key.h"
#include "Metadata/DMS1/DMS1MetadataKeys.h"
#include "Metadata/DMS1/DMS1MetadataULs.h"
#include "Metadata/MetadataKeys.h"
#include "Metadata/MetadataULs.h"
#include "Metadata/Structural/DataDefinitionULs.h"
#include "Metadata/Structural/IndexTablesULs.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/StructuralMetadataULs.h"
#include "Metadata/Structural/Wrappings.h"
#include "Types/UniversalLabel.h"

namespace Vellum
{
namespace RegisterTable
{
struct NamedKeyRow
{
    KLV::Key const & (*function)();
    char const * name;
    char const * dotted;
};

struct NamedLabelRow
{
    Types::UniversalLabel const & (*function)();
    char const * name;
    char const * dotted;
};

struct RegisteredMember
{
    char const * label;
    unsigned tag;
    bool optional;
};

struct RegisteredSet
{
    char const * symbol;
    char const * key;
    RegisteredMember const * members;
    std::size_t count;
};

struct RegisteredTag
{
    unsigned tag;
    char const * label;
};

#include "StandardRegisterTestTable.inc"
} // namespace RegisterTable
} // namespace Vellum
