#pragma once
// Writes the essence of an MXF file again in another layout: every essence track of the package a
// reader would read (the Material Package, else the first package with essence) goes, edit unit by
// edit unit as stored, through the file wrapper, with its descriptor, the package's name and its
// start time code carried over.

#include "OPBuilders/FileWrapper.h"

namespace Vellum
{
namespace OPBuilders
{
class FileRewrapper
{
public:
    VELLUM_CLASS_ALLOCATION

    // The options' packageName and start, when empty or undefined, are taken from the file read.
    FileRewrapper(Templates::SharedPtr<MetaMetadata::Dictionary> dictionary, FileWrapper::Options const & options);
    ~FileRewrapper();

    // Reads `source` and writes `target` as FileWrapper::write does; gives the paths written.
    // Throws NotFound for a file without essence tracks, and what reading and writing throw.
    Templates::vector<Templates::wstring> rewrap(Templates::wstring const & source, Templates::wstring const & target,
                                                 FileWrapper::Progress const & progress);

private:
    FileRewrapper(FileRewrapper const &) = delete;
    FileRewrapper & operator=(FileRewrapper const &) = delete;

    Templates::SharedPtr<MetaMetadata::Dictionary> dictionary_;
    FileWrapper::Options options_;
};
} // namespace OPBuilders
} // namespace Vellum
