#pragma once
// Time stamps of the present moment.

#include "Types/Timestamp.h"

namespace Vellum
{
namespace Types
{
namespace Factories
{
namespace TimeStamp
{
// The present date and time in UTC, to the 4 milliseconds of a time stamp.
Types::Timestamp getCurrentDate();
} // namespace TimeStamp
} // namespace Factories
} // namespace Types
} // namespace Vellum
