#pragma once
// Delivers the essence of a package's tracks, edit unit by edit unit, in rational time. A
// Material Package is followed through its SourceClips to the file packages; a Source Package is
// read directly.

#include "Metadata/Structural/GenericPackage.h"
#include "Metadata/Structural/Preface.h"
#include "Metadata/Structural/TimelineTrack.h"
#include "MXFIO/ContainerOffsets.h"
#include "MXFIO/ContentStorageProfile.h"
#include "MXFIO/ElementReader.h"
#include "MXFIO/EssenceConversions.h"
#include "MXFIO/SystemItemKLVPacketListener.h"
#include "Platform/MallocAlloc.h"
#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"
#include "Templates/Rational.h"
#include "Templates/SharedPtr.h"

namespace Vellum
{
namespace MXFIO
{
class Reader;

enum IndexTableHandlingMode
{
    // Tracks are read by time, each positioned through the index.
    UseIndexTables = 0,
    // Packets are handed out in file order, without the index.
    FileOrder = 1
};

class EssenceReader
{
public:
    VELLUM_CLASS_ALLOCATION

    struct ElementEditUnit
    {
        VELLUM_CLASS_ALLOCATION

        unsigned int trackID;
        unsigned int trackNumber;
        // Where the unit starts, in seconds, and how long it lasts.
        Templates::Rational<int64> position;
        Templates::Rational<int64> duration;
        ElementData element;
    };

    // growing: the file may still be written; sequential: it is read in file order only.
    EssenceReader(Reader & reader, Metadata::Structural::Preface & preface,
                  Metadata::Structural::GenericPackage & package, bool growing, bool sequential,
                  Templates::SharedPtr<ContentStorageProfile> profile = Templates::SharedPtr<ContentStorageProfile>());
    ~EssenceReader();
    EssenceReader(EssenceReader const &) = delete;
    EssenceReader & operator=(EssenceReader const &) = delete;

    Templates::Rational<int64> duration() const;
    Templates::Rational<int64> indexableDuration() const;
    Templates::Rational<int64> position() const;
    bool seek(Templates::Rational<int64> const & position);
    void rewind();
    // Reads the next edit unit of the track that is furthest behind; false (no packet) at the end.
    bool nextElementEditUnit(uint64 keySearchLimit, ElementEditUnit & unit);
    Templates::vector<Metadata::Structural::TimelineTrack *> essenceTracks();
    Templates::vector<unsigned int> essenceTrackIDs();
    Metadata::Structural::GenericPackage & package();
    // False, and nothing changed, when the package's essence lies in more than one container.
    bool indexTableHandlingMode(IndexTableHandlingMode mode);
    void registerKLVPacketListener(SystemItemKLVPacketListener * listener);
    void unregisterKLVPacketListener();
    void setContentStorageProfile(Templates::SharedPtr<ContentStorageProfile> profile);
    void refreshSource();

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace MXFIO
} // namespace Vellum
