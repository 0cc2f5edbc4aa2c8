#pragma once
// A builder's handles on what it makes: a Material Package and its tracks. They belong to the
// builder that made them and hold plain pointers into its header metadata, so a host keeps the
// builder as long as it uses them.

#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Templates/Containers.h"
#include "Templates/Rational.h"

namespace Vellum
{
namespace Metadata
{
namespace Structural
{
class GenericPackage;
class MaterialPackage;
class SourcePackage;
class TimelineTrack;
class Track;
} // namespace Structural
} // namespace Metadata

namespace OPBuilders
{
class TrackProxy
{
public:
    VELLUM_CLASS_ALLOCATION
    TrackProxy() {}
    virtual ~TrackProxy() {}

    // A clip over `duration` edit units (of this track's rate) of `track` from `position`; the
    // whole track from 0 is the same as addClip.
    virtual void addSubClip(Metadata::Structural::SourcePackage * source, Metadata::Structural::Track * track,
                            int64 position, int64 duration) = 0;
    // A clip over the whole of `track` of `source`, behind the clips already there.
    virtual void addClip(Metadata::Structural::SourcePackage * source, Metadata::Structural::Track * track) = 0;
    virtual Metadata::Structural::TimelineTrack * track() const = 0;

private:
    TrackProxy(TrackProxy const &) = delete;
    TrackProxy & operator=(TrackProxy const &) = delete;
};

class MaterialPackageProxy
{
public:
    VELLUM_CLASS_ALLOCATION
    typedef Templates::list<TrackProxy *> TrackProxies;

    MaterialPackageProxy() {}
    virtual ~MaterialPackageProxy() {}

    // A new track, numbered behind those there; without an edit rate it takes that of its first
    // clip.
    virtual TrackProxy * createTrack(int64 origin, Templates::Rational<int> const * editRate) = 0;
    // A track with one clip for each picture, sound and data track of `package` (normally the
    // source package itself), appended to `out`.
    virtual void createTracks(TrackProxies & out, Metadata::Structural::SourcePackage * source,
                              Metadata::Structural::GenericPackage & package) = 0;
    virtual Metadata::Structural::MaterialPackage * package() const = 0;

private:
    MaterialPackageProxy(MaterialPackageProxy const &) = delete;
    MaterialPackageProxy & operator=(MaterialPackageProxy const &) = delete;
};
} // namespace OPBuilders
} // namespace Vellum
