#pragma once
// The analyzer of an MPEG-2 video elementary stream: one edit unit per coded frame, frame wrapped
// as MPEG-2 long GOP or intra-only, or as D-10 when the stream is intra 4:2:2 at 30, 40 or 50 Mb/s
// in 625 or 525 lines. The index flags and temporal references of the units let the index
// generator work out temporal and key frame offsets.

#include "DataIO/DataSource.h"
#include "DataIO/SliceSource.h"
#include "Essence/Analyzers/BasicAnalyzer.h"
#include "Essence/MPEG/MPEG2VideoParser.h"
#include "Templates/SharedPtr.h"

namespace Vellum
{
namespace Essence
{
namespace MPEG
{
class MPEG2VideoAnalyzer : public Analyzers::BasicAnalyzer<GenericContainer::PictureAnalyzer>
{
public:
    VELLUM_CLASS_ALLOCATION
    enum
    {
        // Frames read ahead by preload to tell an intra-only stream.
        LOOKAHEAD = 32
    };

    // Reads the source in blocks of `blockSize` bytes (0: the StreamBuffer's default).
    explicit MPEG2VideoAnalyzer(Templates::SharedPtr<DataIO::SliceSource> source, uint64 blockSize = 0);
    explicit MPEG2VideoAnalyzer(Templates::SharedPtr<DataIO::DataSource> source, uint64 blockSize = 0);
    ~MPEG2VideoAnalyzer() override;

    // Reads the first frames; false for a stream without a frame. Throws InvalidFormat for a
    // stream that is no MPEG-2 video.
    bool preload() override;
    bool nextEditUnit(GenericContainer::EditUnit & unit) override;
    // Also writes what the stream showed of its groups of pictures to the descriptor: closed,
    // identical, the longest group and the longest run of B pictures.
    bool finalize() override;
    bool containsTemporalDependencies() const override;

    MPEG2SequenceInfo const & sequence() const;
    bool isD10() const;
    // The picture essence coding label of the stream.
    Types::UniversalLabel pictureEssenceCoding() const;
    // The index entry flags of a frame: random access for an I picture with a sequence header
    // that nothing before it depends on, the sequence header bit, and the prediction bits.
    static unsigned char indexFlags(MPEG2Frame const & frame);

protected:
    Metadata::Structural::FileDescriptor * makeDescriptor(Metadata::PartitionMetadata & metadata) override;
    Types::UniversalLabel const & dataDefinition() const override;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;

    void chooseWrapping();
    // The next frame, from the frames read ahead first; false at the end.
    bool nextFrame(MPEG2Frame & frame, DataIO::Chain & data);
};
} // namespace MPEG
} // namespace Essence
} // namespace Vellum
