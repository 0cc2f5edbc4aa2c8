#include "Types/Factories/TimeStamp.h"

#include "Platform/Platform.h"

namespace Vellum
{
namespace Types
{
namespace Factories
{
namespace TimeStamp
{
Types::Timestamp getCurrentDate()
{
    Platform::Time const now = Platform::utctime();
    // A leap second is folded into the last ordinary one: a time stamp has no room for it.
    int32 const second = now.seconds > 59 ? 59 : now.seconds;
    int32 const milliSecond = now.milliseconds < 0 ? 0 : (now.milliseconds > 999 ? 999 : now.milliseconds);
    return Types::Timestamp(static_cast<unsigned short>(now.year + 1900), static_cast<unsigned char>(now.month + 1),
                            static_cast<unsigned char>(now.dayOfMonth), static_cast<unsigned char>(now.hours),
                            static_cast<unsigned char>(now.minutes), static_cast<unsigned char>(second),
                            static_cast<unsigned short>(milliSecond));
}
} // namespace TimeStamp
} // namespace Factories
} // namespace Types
} // namespace Vellum
