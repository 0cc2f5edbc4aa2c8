#include "MXFIO/GenericStreamPartitionWriter.h"
#include "MXFIO/WriterSupport.h"

#include "Exceptions/Exceptions.h"
#include "GenericStream/Source.h"

namespace Vellum
{
namespace MXFIO
{
using Packs::PartitionPack;

struct GenericStreamPartitionWriter::Impl
{
    Impl(Templates::auto_ptr<GenericStream::Source> source, unsigned int body)
        : source(std::move(source)), bodySID(body), bodyOffset(0)
    {
    }

    Templates::auto_ptr<GenericStream::Source> source;
    unsigned int bodySID;
    uint64 bodyOffset;
};

GenericStreamPartitionWriter::GenericStreamPartitionWriter(Templates::auto_ptr<GenericStream::Source> source,
                                                           unsigned int bodySID)
    : impl_(new Impl(std::move(source), bodySID))
{
    THROW_UNLESS(InvalidValue, impl_->source.get() != nullptr,
                 "GenericStreamPartitionWriter needs a GenericStream::Source.");
    kagSize(impl_->source->kagSize());
}

GenericStreamPartitionWriter::~GenericStreamPartitionWriter() {}

GenericStream::Source & GenericStreamPartitionWriter::source() const
{
    return *impl_->source;
}

WrittenPartition GenericStreamPartitionWriter::writeGenericStreamPartition(
    uint64 thisPartition, uint64 previousPartition, uint64 footerPartition,
    Types::UniversalLabel const & operationalPattern, Templates::auto_ptr<Types::Batch> essenceContainers,
    bool writeEssence, DataIO::Chain & chain)
{
    return writePartition(nullptr, PartitionPack::BodyPartition, PartitionPack::GenericStream, thisPartition,
                          previousPartition, footerPartition, operationalPattern, std::move(essenceContainers), false,
                          false, writeEssence, false, 0, chain);
}

WrittenPartition GenericStreamPartitionWriter::writePartition(
    Metadata::PartitionMetadata *, PartitionPack::PartitionKind partitionKind, PartitionPack::PartitionStatus,
    uint64 thisPartition, uint64 previousPartition, uint64 footerPartition,
    Types::UniversalLabel const & operationalPattern, Templates::auto_ptr<Types::Batch> essenceContainers,
    bool writeMetadata, bool, bool writeEssence, bool, uint64 runInSize, DataIO::Chain & chain)
{
    THROW_UNLESS(InvalidValue, (writeMetadata == false), "GenericStreamPartition does not contain metadata.");
    THROW_UNLESS(InvalidValue, (writeEssence == true), "GenericStreamPartition must contain essence.");
    THROW_UNLESS(InvalidValue, (runInSize == 0),
                 "GenericStreamPartition is a body partition and does not support runIn.");
    THROW_UNLESS_TEXT(InvalidValue, (partitionKind == PartitionPack::BodyPartition),
                      "(partitionKind == PartitionPack::BODY_PARTITION)",
                      "GenericStreamPartition must be a body partition.");
    return CommonPartitionWriter::writePartition(nullptr, partitionKind, PartitionPack::GenericStream, thisPartition,
                                                 previousPartition, footerPartition, operationalPattern,
                                                 std::move(essenceContainers), false, false, true, false, 0, chain);
}

unsigned int GenericStreamPartitionWriter::bodySID() const
{
    return impl_->bodySID;
}

uint64 GenericStreamPartitionWriter::bodyOffset() const
{
    return impl_->bodyOffset;
}

GenericStreamPartitionWriter::Status GenericStreamPartitionWriter::writeData(
    DataIO::Chain & chain, bool & atBoundary, Templates::SharedPtr<FutureUpdater> & updater,
    Templates::Rational<int64> & duration)
{
    DataIO::Chain own;
    if (!pullData(*impl_->source, own, atBoundary, updater, duration))
        return Finished;
    impl_->bodyOffset += own.data_size();
    chain.push_back(own);
    return status();
}

GenericStreamPartitionWriter::Status GenericStreamPartitionWriter::status() const
{
    if (!partitionWritten())
        return NoPartitionWritten;
    return impl_->source->done() ? Finished : WritingEssence;
}
} // namespace MXFIO
} // namespace Vellum
