// The source of a frame wrapped container.

#include "GenericContainer/Multiplexer/FrameWorker_impl.h"

#include "KLV/KeyConstants.h"

namespace Vellum
{
namespace GenericContainer
{
namespace Multiplexer
{
using Templates::Rational;

FrameWorker_impl::FrameWorker_impl(ContainerData const & data) : BaseWorkerImpl(data, IndexSegmentInfo::FrameWrapped)
{
    klLength_ = KLV::fillItemKey().size() + 4;
    if (data_.primaryAnalyzer != nullptr)
    {
        Rational<int> duration(-1, 1);
        for (AnalyzerEntry const & entry : data_.entries)
        {
            Rational<int> const known = entry.analyzer->getDuration();
            if (known != Rational<int>(-1, 1) && (duration == Rational<int>(-1, 1) || known < duration))
                duration = known;
        }
        data_.primaryAnalyzer->preload();
        setupTimecodeTrack(data_.primaryAnalyzer->currentTimeCode(), data_.packageRate, duration);
    }
    updateTrackOrigins();
}

FrameWorker_impl::~FrameWorker_impl() {}
} // namespace Multiplexer
} // namespace GenericContainer
} // namespace Vellum
