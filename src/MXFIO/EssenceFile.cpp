#include "MXFIO/EssenceFile.h"

#include "DataIO/File/FileDataSource.h"
#include "Exceptions/Exceptions.h"
#include "MetaMetadata/StandardDictionary.h"
#include "Metadata/PartitionMetadata.h"
#include "Metadata/Structural/ContentStorage.h"
#include "Metadata/Structural/Initialize.h"
#include "Metadata/Structural/MaterialPackage.h"
#include "Metadata/Structural/PrefaceHelpers.h"
#include "Metadata/Structural/StructuralVisitors.h"
#include "MXFIO/Reader2.h"

namespace Vellum
{
namespace MXFIO
{
namespace S = Metadata::Structural;

S::GenericPackage * packageToRead(S::ContentStorage & storage)
{
    for (unsigned i = 0; i < storage.packagesCount(); ++i)
        if (S::metadataSetAs<S::MaterialPackage>(static_cast<Metadata::MetadataSet *>(storage.package(i))))
            return storage.package(i);
    for (unsigned i = 0; i < storage.packagesCount(); ++i)
    {
        S::GenericPackage * package = storage.package(i);
        if (package && package->packageUID() && storage.essenceContainerData(*package->packageUID()))
            return package;
    }
    return nullptr;
}

struct EssenceFile::Impl
{
    VELLUM_CLASS_ALLOCATION

    Impl(Templates::wstring const & path, int bufferSize, Templates::SharedPtr<MetaMetadata::Dictionary> dictionary)
        : source(path.c_str(), bufferSize), fileSize(source.remaining()),
          reader(source, dictionary.get() != nullptr ? dictionary : MetaMetadata::createStandardDictionary(), 65536), preface(nullptr), storage(nullptr),
          package(nullptr)
    {
        S::initialize();
        metadata = reader.firstPartitionWithFinalMetadata()->metadata();
        if (!metadata.get())
            metadata = reader.headerPartition()->metadata();
        THROW_UNLESS(NotFound, metadata.get() != nullptr, "the file has no header metadata");
        preface = S::findPreface(*metadata);
        THROW_UNLESS(NotFound, preface != nullptr, "the header metadata has no Preface");
        storage = preface->contentStorage();
        THROW_UNLESS(NotFound, storage != nullptr, "the Preface has no content storage");
        package = packageToRead(*storage);
        THROW_UNLESS(NotFound, package != nullptr, "the file has no package with essence");
    }

    DataIO::File::FileDataSource source;
    uint64 fileSize;
    Reader2 reader;
    Templates::SharedPtr<Metadata::PartitionMetadata> metadata;
    S::Preface * preface;
    S::ContentStorage * storage;
    S::GenericPackage * package;
};

EssenceFile::EssenceFile(Templates::wstring const & path, int bufferSize,
                         Templates::SharedPtr<MetaMetadata::Dictionary> dictionary)
    : impl_(new Impl(path, bufferSize, dictionary))
{
}

EssenceFile::~EssenceFile() {}

uint64 EssenceFile::fileSize() const
{
    return impl_->fileSize;
}

Reader2 & EssenceFile::reader()
{
    return impl_->reader;
}

Templates::SharedPtr<Metadata::PartitionMetadata> EssenceFile::metadata() const
{
    return impl_->metadata;
}

S::Preface & EssenceFile::preface() const
{
    return *impl_->preface;
}

S::ContentStorage & EssenceFile::contentStorage() const
{
    return *impl_->storage;
}

S::GenericPackage & EssenceFile::package() const
{
    return *impl_->package;
}

Templates::auto_ptr<EssenceReader> EssenceFile::essenceReader()
{
    return Templates::auto_ptr<EssenceReader>(
        new EssenceReader(impl_->reader, *impl_->preface, *impl_->package, false, false));
}
} // namespace MXFIO
} // namespace Vellum
