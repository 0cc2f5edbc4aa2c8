// Opens the input as a whole file in memory and reads everything the way the sweep test does.
#include "FuzzSupport.h"

#include "Support/ReadEverything.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(uint8_t const * data, size_t size)
{
    VellumTest::ReadReport const report = VellumTest::readEverything(data, size);
    // A walk that meets a partition twice would never end in the library's hands.
    if (report.runaway)
        std::abort();
    return 0;
}
