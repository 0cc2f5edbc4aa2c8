#pragma once
// A producer of KLV data that a partition writer drains into its chain.

#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Templates/SharedPtr.h"
#include "Templates/Rational.h"

namespace Vellum
{
namespace DataIO
{
class Chain;
}

namespace MXFIO
{
class FutureUpdater;

class KLVSource
{
public:
    VELLUM_CLASS_ALLOCATION

    KLVSource() {}
    virtual ~KLVSource() {}

    // Appends the next KLV data to `chain`. `atBoundary` says that a partition may start behind
    // what was appended. An updater, when one is given, must be run by the writer once it can
    // seek. `duration` receives the seconds that the data covers. True while more will come.
    virtual bool next(DataIO::Chain & chain, bool & atBoundary,
                      Templates::SharedPtr<FutureUpdater> & updater,
                      Templates::Rational<int64> & duration) = 0;
    // The source has nothing more to give.
    virtual bool done() const = 0;
    // The KLV alignment grid of the data; 1 for none.
    virtual unsigned int kagSize() const = 0;

private:
    KLVSource(KLVSource const &) = delete;
    KLVSource & operator=(KLVSource const &) = delete;
};
}
}
