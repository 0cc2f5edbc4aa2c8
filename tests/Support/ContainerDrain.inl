// Drains a KLV source: the template part.

#include <functional>

#include "DataIO/Chain.h"
#include "MXFIO/FutureUpdater.h"
#include "Templates/SharedPtr.h"

namespace VellumTest
{
namespace Detail
{
void appendChain(Vellum::DataIO::Chain const & chain, DrainedSource & out);
void applyUpdater(Vellum::MXFIO::FutureUpdater & updater, Vellum::uint64 start, DrainedSource & out);
} // namespace Detail

template <class Finish>
DrainedSource drainSource(Vellum::MXFIO::KLVSource & source, Finish finish, std::size_t maximumCalls)
{
    using namespace Vellum;
    DrainedSource out;
    std::vector<std::pair<Templates::SharedPtr<MXFIO::FutureUpdater>, uint64>> pending;
    for (std::size_t call = 0; call < maximumCalls; ++call)
    {
        DataIO::Chain chain;
        bool atBoundary = false;
        Templates::SharedPtr<MXFIO::FutureUpdater> updater;
        Templates::Rational<int64> duration;
        bool const more = source.next(chain, atBoundary, updater, duration);
        out.starts.push_back(out.bytes.size());
        if (updater.get() != nullptr)
            pending.push_back(std::make_pair(updater, uint64(out.bytes.size())));
        Detail::appendChain(chain, out);
        out.durations.push_back(duration);
        out.boundaries.push_back(atBoundary);
        if (!more)
            break;
    }
    finish();
    out.updaters = pending.size();
    for (auto & p : pending)
        Detail::applyUpdater(*p.first, p.second, out);
    return out;
}
} // namespace VellumTest
