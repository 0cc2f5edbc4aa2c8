// Which classes may be copied: the handles on a file, a stream or a graph of objects may not; the
// values copy deeply.

#include <type_traits>

#include <gtest/gtest.h>

#include "DataIO/BitSliceReader.h"
#include "DataIO/BufferAlignDataSource.h"
#include "DataIO/BufferSliceSource.h"
#include "DataIO/File/FileDataSink.h"
#include "DataIO/File/FileDataSource.h"
#include "DataIO/File/FileSliceSource.h"
#include "DataIO/SliceReader.h"
#include "DataIO/SliceSourceTee.h"
#include "Exceptions/Exceptions.h"
#include "IndexTables/DeltaEntryArray.h"
#include "IndexTables/IndexEntryArray.h"
#include "IndexTables/IndexTable.h"
#include "IndexTables/IndexTableSegmentWithGOPInfo.h"
#include "KLV/Key.h"
#include "KLV/Packet.h"
#include "KLV/Reader.h"
#include "KLV/Value.h"
#include "Metadata/ArrayElement.h"
#include "Metadata/ArrayReferenceElement.h"
#include "Metadata/BatchElement.h"
#include "Metadata/BatchReferenceElement.h"
#include "Metadata/DarkMetadataSet.h"
#include "Metadata/Listeners/DefaultMetadataIndexListener.h"
#include "Metadata/Listeners/GenerationUIDWriterListener.h"
#include "Metadata/Listeners/LastModifiedDateUpdaterListener.h"
#include "Metadata/Listeners/MetadataSetRelationshipManager.h"
#include "Metadata/MetadataSet.h"
#include "Metadata/PartitionDictionary.h"
#include "Metadata/PartitionMetadata.h"
#include "Metadata/ReferenceElement.h"
#include "Metadata/SimpleElement.h"
#include "MetaMetadata/Dictionary.h"
#include "MetaMetadata/MetaAttribute.h"
#include "MetaMetadata/MetaCollection.h"
#include "MetaMetadata/MetaMetadataSet.h"
#include "MetaMetadata/MetaReferenceCollection.h"
#include "MetaMetadata/MetaReferenceElement.h"
#include "MetaMetadata/MetaSimpleElement.h"
#include "MetaMetadata/MisplacedAttribute.h"
#include "MetaMetadata/UnknownAttribute.h"
#include "MXFIO/ContentStorageReader.h"
#include "MXFIO/EssenceReader.h"
#include "MXFIO/IndexTableProvider.h"
#include "MXFIO/Partition.h"
#include "MXFIO/PartitionProvider.h"
#include "MXFIO/Reader2.h"
#include "MXFIO/Seeker.h"
#include "MXFIO/SequentialReader.h"
#include "Packs/PartitionPack.h"
#include "Packs/PrimerPack.h"
#include "Packs/RandomIndexPack.h"
#include "Platform/Synchronization.h"
#include "Types/Boolean.h"
#include "Types/Collection.h"
#include "Types/DataStream.h"
#include "Types/DataValue.h"
#include "Types/ISO7String.h"
#include "Types/Integers.h"
#include "Types/J2KParameters.h"
#include "Types/LocalTag.h"
#include "Types/Orientation.h"
#include "Types/ProductVersion.h"
#include "Types/RGBALayout.h"
#include "Types/Rational.h"
#include "Types/References.h"
#include "Types/SignalStandard.h"
#include "Types/Timestamp.h"
#include "Types/UMID.h"
#include "Types/UTF16.h"
#include "Types/UTF16String.h"
#include "Types/UUID.h"
#include "Types/UniversalLabel.h"
#include "Types/Unknown.h"
#include "Types/VersionType.h"
#include "Utils/SMPTETimeCode.h"

using namespace Vellum;

namespace
{
template <class... T>
struct Handles
{
    static constexpr bool none = (... && (!std::is_copy_constructible<T>::value && !std::is_copy_assignable<T>::value));
};

template <class... T>
struct Values
{
    static constexpr bool all = (... && (std::is_copy_constructible<T>::value && std::is_copy_assignable<T>::value));
};

static_assert(Handles<DataIO::BitSliceReader, DataIO::BufferAlignDataSource, DataIO::BufferSliceSource,
                      DataIO::File::FileDataSink, DataIO::File::FileDataSource, DataIO::File::FileSliceSource,
                      DataIO::SliceReader, DataIO::SliceSourceTee>::none,
              "a data handle is copyable");
static_assert(Handles<IndexTables::IndexTable, IndexTables::IndexTableSegment,
                      IndexTables::IndexTableSegmentWithGOPInfo>::none,
              "an index table handle is copyable");
static_assert(Handles<KLV::Packet, KLV::Reader, KLV::Value>::none, "a KLV handle is copyable");
static_assert(Handles<MXFIO::AbstractPartition, MXFIO::Partition, MXFIO::Reader, MXFIO::Reader2,
                      MXFIO::ContentStorageReader, MXFIO::EssenceReader, MXFIO::Seeker,
                      MXFIO::IndexTableProvider, MXFIO::IndexTableCache, MXFIO::IndexTableCompleteCache,
                      MXFIO::IndexTableProviderBase, MXFIO::IndexTableNullProvider,
                      MXFIO::IndexTableFullFileParseProvider, MXFIO::IndexTableParseOnRequestProvider,
                      MXFIO::IndexTablePositionEstimateProvider, MXFIO::IndexTableStreamingProvider,
                      MXFIO::PartitionProvider, MXFIO::BasicPartitionProvider, MXFIO::BaseRandomPartitionProvider,
                      MXFIO::EstimatePartitionProvider, MXFIO::FixedEditUnitCountPartitionProvider,
                      MXFIO::StreamingPartitionProvider>::none,
              "a reading handle is copyable");
static_assert(Handles<MetaMetadata::Dictionary, MetaMetadata::MetaAttribute>::none, "a dictionary handle is copyable");
static_assert(Handles<Metadata::Element, Metadata::SimpleElement, Metadata::ArrayElement, Metadata::BatchElement,
                      Metadata::ReferenceElement, Metadata::ArrayReferenceElement, Metadata::BatchReferenceElement,
                      Metadata::MetadataSet, Metadata::DarkMetadataSet, Metadata::PartitionDictionary,
                      Metadata::PartitionMetadata, Metadata::Listeners::BaseMetadataIndexListener,
                      Metadata::Listeners::DefaultMetadataIndexListener,
                      Metadata::Listeners::GenerationUIDWriterListener,
                      Metadata::Listeners::LastModifiedDateUpdaterListener, Metadata::Listeners::ReferenceEntry,
                      Metadata::Listeners::MetadataSetRelationshipManager>::none,
              "a metadata handle is copyable");
static_assert(Handles<Platform::Synchronization::Mutex, DataIO::SliceSource,
                      Metadata::PartitionMetadataListener, Metadata::MetadataSetOwner>::none,
              "a lock or an interface of handles is copyable");

static_assert(Values<Exceptions::InvalidLength, IndexTables::DeltaEntry,
                     IndexTables::DeltaEntryArray, IndexTables::IndexEntry, IndexTables::IndexEntryArray, KLV::Key,
                     Packs::PartitionPack, Packs::PrimerPack, Packs::RandomIndexPack, Utils::TimeCode,
                     Utils::TimeCodeExtended>::all,
              "a value lost its copy");
static_assert(Values<MetaMetadata::PropertyMap, MetaMetadata::MetaValueHolder,
                     MetaMetadata::MetaReferenceHolder,
                     MetaMetadata::MetaSimpleElement, MetaMetadata::MetaReferenceElement, MetaMetadata::MetaCollection,
                     MetaMetadata::MetaReferenceCollection, MetaMetadata::MetaMetadataSet,
                     MetaMetadata::UnknownAttribute, MetaMetadata::MisplacedAttribute>::all,
              "a schema value lost its copy");
static_assert(Values<Types::UUID, Types::UniversalLabel, Types::LocalTag, Types::UMID32, Types::UMID64,
                     Types::StrongReference, Types::WeakReference, Types::Array, Types::Batch, Types::Boolean,
                     Types::DataStream, Types::DataValue, Types::ISO7String, Types::Int8, Types::Int16, Types::Int32,
                     Types::Int64, Types::UInt8, Types::UInt16, Types::UInt32, Types::UInt64, Types::Length,
                     Types::Position, Types::J2KPictureComponent, Types::J2KCodingStyleDefault,
                     Types::J2KQuantisationDefault, Types::Orientation, Types::ProductVersion, Types::RGBALayout,
                     Types::Rational, Types::SignalStandard, Types::Timestamp, Types::UTF16, Types::UTF16String,
                     Types::Unknown, Types::VersionType>::all,
              "a value type lost its copy");
} // namespace

// Each copy owns its own state: changing it leaves the original alone, and both are freed once.
TEST(Ownership, CopiesOfValuesAreIndependent)
{
    Types::Array array(1);
    array.append(Templates::auto_ptr<Types::SimpleDataType>(new Types::UInt8(1)));
    Types::Array arrayCopy(array);
    arrayCopy.append(Templates::auto_ptr<Types::SimpleDataType>(new Types::UInt8(2)));
    arrayCopy = array;
    arrayCopy.remove(0);
    EXPECT_EQ(1u, array.size());
    EXPECT_EQ(0u, arrayCopy.size());

    Packs::PrimerPack primer;
    primer.add(Types::LocalTag(0x3C0A), Types::UniversalLabel());
    Packs::PrimerPack primerCopy(primer);
    primerCopy = primer;
    EXPECT_TRUE(primerCopy.remove(Types::UniversalLabel()));
    EXPECT_EQ(1u, primer.count());

    Utils::TimeCodeExtended timeCode(25, 1, 2, 3, 4, false, false);
    Utils::TimeCodeExtended timeCodeCopy(timeCode);
    timeCodeCopy.colorFrame(true);
    timeCodeCopy.hours(9);
    EXPECT_FALSE(timeCode.colorFrame());
    EXPECT_EQ(1, timeCode.hours());

    unsigned char const bytes[] = {1, 2, 3};
    Exceptions::InvalidLength error(bytes, sizeof bytes, "short", __FILE__, __LINE__);
    Exceptions::InvalidLength errorCopy(error);
    errorCopy = Exceptions::InvalidLength("other", __FILE__, __LINE__);
    EXPECT_EQ(3u, error.readDataLength());
    EXPECT_EQ(0u, errorCopy.readDataLength());
}
