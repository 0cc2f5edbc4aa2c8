#pragma once
// The source of a clip wrapped container: one KLV packet per stream, its KL with an 8-byte BER
// length, fixed by a KLVLengthUpdater when the length was not known in advance.

#include "DataIO/BufferSliceSource.h"
#include "DataIO/SliceSource.h"
#include "GenericContainer/BaseWorkerImpl.h"
#include "GenericContainer/ClipWrapper/KLVLengthUpdater.h"

namespace Vellum
{
namespace GenericContainer
{
namespace ClipWrapper
{
class Worker_impl : public BaseWorkerImpl
{
public:
    Worker_impl(ContainerData const & data, Templates::SharedPtr<DataIO::BufferSliceSource> buffer, uint64 clipSize);
    ~Worker_impl() override;

    bool next(DataIO::Chain & chain, bool & atBoundary, Templates::SharedPtr<MXFIO::FutureUpdater> & updater,
              Templates::Rational<int64> & duration) override;
    bool done() const override;
    void finalize() override;

    void demultiplexerSource(Templates::SharedPtr<DataIO::SliceSource> source, unsigned int chunkSize);

protected:
    void doNextContentPackage(DataIO::Chain & chain, Templates::Rational<int64> & duration) override;

private:
    // One edit unit of the current clip; false when none came.
    bool readEditUnit(DataIO::Chain & chain, Templates::Rational<int64> & duration);
    // The clip in the making is over: its length goes to the updater, a filler behind it.
    void closeClip(DataIO::Chain & chain);
    bool nextFromBuffer(DataIO::Chain & chain, bool & atBoundary, bool more);
    void moveBuffer(DataIO::Chain & chain);
    void fillToKag(uint64 length, DataIO::Chain & chain);

    Templates::SharedPtr<DataIO::BufferSliceSource> buffer_;
    Templates::SharedPtr<DataIO::SliceSource> demultiplexer_;
    Templates::SharedPtr<MXFIO::FutureUpdater> pendingUpdater_;
    KLVLengthUpdater * pendingLength_;
    AnalyzerEntries::iterator current_;
    unsigned int chunkSize_;
    uint64 clipSize_;
    bool klSent_;
    // The current analyzer gave no unit although it didn't say it was done.
    bool clipEnded_;
};
} // namespace ClipWrapper
} // namespace GenericContainer
} // namespace Vellum
