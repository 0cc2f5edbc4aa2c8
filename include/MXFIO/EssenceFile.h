#pragma once
// An MXF file opened for its essence: the source, a reader over it, the most complete header
// metadata the file holds (the first closed partition's, else the header partition's), its Preface
// and the package to read: the first Material Package, else the first package whose essence the
// file holds.

#include "MXFIO/EssenceReader.h"
#include "Platform/MallocAlloc.h"
#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"
#include "Templates/SharedPtr.h"

namespace Vellum
{
namespace MetaMetadata
{
class Dictionary;
}

namespace Metadata
{
class PartitionMetadata;
namespace Structural
{
class ContentStorage;
}
} // namespace Metadata

namespace MXFIO
{
class Reader2;

class EssenceFile
{
public:
    VELLUM_CLASS_ALLOCATION

    // Throws NotFound when the file has no header metadata, no content storage or no package with
    // essence, and what the source and reader throw for a file they cannot read. Without a
    // dictionary the standard one is made.
    explicit EssenceFile(Templates::wstring const & path, int bufferSize = 1 << 20,
                         Templates::SharedPtr<MetaMetadata::Dictionary> dictionary =
                             Templates::SharedPtr<MetaMetadata::Dictionary>());
    ~EssenceFile();

    uint64 fileSize() const;
    Reader2 & reader();
    Templates::SharedPtr<Metadata::PartitionMetadata> metadata() const;
    Metadata::Structural::Preface & preface() const;
    Metadata::Structural::ContentStorage & contentStorage() const;
    Metadata::Structural::GenericPackage & package() const;
    // A reader of the package's essence, by time through the index.
    Templates::auto_ptr<EssenceReader> essenceReader();

private:
    EssenceFile(EssenceFile const &) = delete;
    EssenceFile & operator=(EssenceFile const &) = delete;

    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};

// The package to read in a content storage: the first Material Package, else the first package
// whose essence container data the storage holds; null without either.
Metadata::Structural::GenericPackage * packageToRead(Metadata::Structural::ContentStorage & storage);
} // namespace MXFIO
} // namespace Vellum
