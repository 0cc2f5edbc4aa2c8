#pragma once
// The consistency check of a whole MXF file: one walk over every KLV packet (essence values are
// stepped over, never read), then the cross checks between the partition packs, the Random Index
// Pack, the header metadata and the index tables, and what a host meets through Reader2.

#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"

namespace Vellum
{
namespace MXFIO
{
// One inconsistency: where it is (absolute byte offset in the file), a short stable code word
// ("this-partition", "rip-missing", ...) and a readable text.
struct Finding
{
    uint64 offset;
    char const * code;
    Templates::wstring message;
};

class FileChecker
{
public:
    VELLUM_CLASS_ALLOCATION
    explicit FileChecker(unsigned short const * path);
    ~FileChecker();
    FileChecker(FileChecker const &) = delete;
    FileChecker & operator=(FileChecker const &) = delete;

    // Walks the file and gives the findings in order of offset. A file that cannot be opened
    // gives the one finding "file-unreadable".
    Templates::vector<Finding> run();

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace MXFIO
} // namespace Vellum
