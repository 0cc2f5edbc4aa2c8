#pragma once
// A change to bytes that have gone out already, such as the length of a clip's KLV packet, which
// is known only once the clip has ended. A writer that can seek runs it when the data is final.

#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"

namespace Vellum
{
namespace DataIO
{
class Chain;
}

namespace MXFIO
{
class FutureUpdater
{
public:
    VELLUM_CLASS_ALLOCATION

    FutureUpdater() {}
    virtual ~FutureUpdater() {}

    // `position` is where the data that produced this updater went (its offset in the sink).
    // Appends the bytes to write over what went out to `patch` and gives the offset at which
    // they go.
    virtual uint64 apply(uint64 position, DataIO::Chain & patch) = 0;
    // True while there is a patch to apply; called before `apply`.
    virtual bool pending() const = 0;

private:
    FutureUpdater(FutureUpdater const &) = delete;
    FutureUpdater & operator=(FutureUpdater const &) = delete;
};
}
}
