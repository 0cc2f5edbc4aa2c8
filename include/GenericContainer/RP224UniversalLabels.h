#pragma once
// What an essence container label says: the kind of essence and how it is wrapped.

#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Types/UniversalLabel.h"

namespace Vellum
{
namespace GenericContainer
{
namespace RP224UniversalLabels
{
enum Wrapping
{
    FrameWrapped = 0,
    ClipWrapped = 1,
    UnknownWrapping = 2
};

// `kind` numbers the families of essence container labels; 0 is unknown.
struct EssenceContainerInfo
{
    VELLUM_CLASS_ALLOCATION
    EssenceContainerInfo() : kind(0), wrapping(UnknownWrapping) {}
    EssenceContainerInfo(uint32 k, uint32 w) : kind(k), wrapping(w) {}
    uint32 kind;
    uint32 wrapping;
};

// Refuses a label of a known family with a wrapping byte out of its range (InvalidValue).
EssenceContainerInfo essenceContainerInfo(Types::UniversalLabel const & label);
// The label of the same essence with the asked wrapping, where its family has both; else the
// label as it is.
Types::UniversalLabel withWrapping(Types::UniversalLabel const & label, Wrapping wrapping);
} // namespace RP224UniversalLabels
} // namespace GenericContainer
} // namespace Vellum
