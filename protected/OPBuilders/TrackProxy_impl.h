#pragma once
// The proxies of both builders: a Material Package with its time code track, its tracks, and
// the clips of each track with the durations that update() derives from their sources.

#include "OPBuilders/BasicOPBuilder_impl.h"
#include "OPBuilders/Proxies.h"
#include "Templates/AutoPtr.h"
#include "Utils/SMPTETimeCode.h"

namespace Vellum
{
namespace Types
{
class UMID32;
}

namespace OPBuilders
{
// What every proxy reaches: the builder's metadata, Preface, Identification and label record.
struct ProxyBase
{
    explicit ProxyBase(BasicOPBuilder_impl & builder) : builder_(builder) {}
    BasicOPBuilder_impl & builder_;
};

// One clip of a material track over a whole source track.
class ClipData : public ProxyBase
{
public:
    VELLUM_CLASS_ALLOCATION
    ClipData(BasicOPBuilder_impl & builder, Metadata::Structural::SourcePackage * source,
             Metadata::Structural::Track * track, Templates::Rational<int> const & editRate);
    virtual ~ClipData() {}

    // Derives the duration (seconds) from the source track, then length and data definition.
    virtual void update();
    Templates::Rational<int64> const & duration() const { return duration_; }
    Metadata::Structural::SourceClip * clip() const { return clip_; }
    Metadata::Structural::SourcePackage * source() const { return source_; }

protected:
    void setLength(int64 length);
    // The sum of the source clips of the source track, in seconds; -1/1 when one is unknown.
    Templates::Rational<int64> sourceDuration() const;

    Metadata::Structural::SourcePackage * source_;
    Metadata::Structural::TimelineTrack * sourceTrack_;
    Metadata::Structural::Sequence * sourceSequence_;
    Templates::Rational<int> editRate_;
    Templates::Rational<int64> duration_;
    Metadata::Structural::SourceClip * clip_;

private:
    ClipData(ClipData const &) = delete;
    ClipData & operator=(ClipData const &) = delete;
};

// A clip over part of a source track: a fixed start and duration.
class SubClipData : public ClipData
{
public:
    SubClipData(BasicOPBuilder_impl & builder, Metadata::Structural::SourcePackage * source,
                Metadata::Structural::Track * track, Templates::Rational<int> const & editRate, int64 start,
                Templates::Rational<int64> const & duration);
    void update() override;

private:
    int64 start_;
};

class TrackProxy_impl : public TrackProxy, public ProxyBase
{
public:
    TrackProxy_impl(BasicOPBuilder_impl & builder, Metadata::Structural::MaterialPackage & package, unsigned int index,
                    unsigned int number, int64 origin, Templates::Rational<int> const * editRate);
    ~TrackProxy_impl() override;

    void addSubClip(Metadata::Structural::SourcePackage * source, Metadata::Structural::Track * track, int64 position,
                    int64 duration) override;
    void addClip(Metadata::Structural::SourcePackage * source, Metadata::Structural::Track * track) override;
    Metadata::Structural::TimelineTrack * track() const override { return track_; }

    void update();
    // -1/1 while unknown.
    Templates::Rational<int64> const & duration() const { return duration_; }
    int64 origin() const { return origin_; }
    Templates::Rational<int> const & editRate() const { return editRate_; }
    // The first clip, or null.
    ClipData const * firstClip() const { return clips_.empty() ? 0 : clips_.front().get(); }

private:
    void takeRateAndDefinition(Metadata::Structural::Track * track);
    void appendClip(Templates::auto_ptr<ClipData> clip);

    int64 origin_;
    unsigned int number_;
    Metadata::Structural::TimelineTrack * track_;
    Metadata::Structural::Sequence * sequence_;
    Templates::Rational<int> editRate_;
    Types::UniversalLabel dataDefinition_;
    Templates::Rational<int64> duration_;
    Templates::vector<Templates::auto_ptr<ClipData>> clips_;
};

class MaterialPackageProxy_impl : public MaterialPackageProxy, public ProxyBase
{
public:
    MaterialPackageProxy_impl(BasicOPBuilder_impl & builder, Utils::TimeCode const & start,
                              Templates::Rational<int> const & editRate, Types::UMID32 const * packageUID);
    ~MaterialPackageProxy_impl() override;

    TrackProxy * createTrack(int64 origin, Templates::Rational<int> const * editRate) override;
    void createTracks(TrackProxies & out, Metadata::Structural::SourcePackage * source,
                      Metadata::Structural::GenericPackage & package) override;
    Metadata::Structural::MaterialPackage * package() const override { return package_; }

    void update();
    // The proxies of the tracks, in creation order.
    Templates::vector<Templates::auto_ptr<TrackProxy_impl>> const & tracks() const { return tracks_; }

private:
    Metadata::Structural::MaterialPackage * package_;
    Templates::vector<Templates::auto_ptr<TrackProxy_impl>> tracks_;
    Templates::Rational<int> editRate_;
    Utils::TimeCode start_;
    Metadata::Structural::TimelineTrack * timecodeTrack_;
    Metadata::Structural::Sequence * timecodeSequence_;
    Metadata::Structural::TimecodeComponent * timecodeComponent_;
};

// Whether the label is the data definition of picture, sound or data.
bool isEssenceDefinition(Types::UniversalLabel const * dataDefinition);
// The rational of a track's edit rate; 0/1 when it has none.
Templates::Rational<int> trackEditRate(Metadata::Structural::TimelineTrack const & track);
} // namespace OPBuilders
} // namespace Vellum
