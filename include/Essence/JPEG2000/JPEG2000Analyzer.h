#pragma once
// The analyzer of a run of JPEG 2000 codestreams, one per frame, frame wrapped. The descriptor is
// a CDCI one when the colour components are subsampled, an RGBA one otherwise. The stream carries
// no rate: the host gives it.

#include "DataIO/DataSource.h"
#include "DataIO/SliceSource.h"
#include "Essence/Analyzers/BasicAnalyzer.h"
#include "Essence/JPEG2000/CodestreamParser.h"
#include "Templates/SharedPtr.h"

namespace Vellum
{
namespace Essence
{
namespace JPEG2000
{
class JPEG2000Analyzer : public Analyzers::BasicAnalyzer<GenericContainer::PictureAnalyzer>
{
public:
    VELLUM_CLASS_ALLOCATION
    JPEG2000Analyzer(Templates::SharedPtr<DataIO::SliceSource> source, Templates::Rational<int> const & editRate);
    JPEG2000Analyzer(Templates::SharedPtr<DataIO::DataSource> source, Templates::Rational<int> const & editRate);
    ~JPEG2000Analyzer() override;

    // Reads the first codestream; false for an empty stream.
    bool preload() override;
    bool nextEditUnit(GenericContainer::EditUnit & unit) override;

    ImageSize const & imageSize() const;
    // Colour components subsampled: a CDCI descriptor describes the stream.
    bool isColourDifference() const;

protected:
    Metadata::Structural::FileDescriptor * makeDescriptor(Metadata::PartitionMetadata & metadata) override;
    Types::UniversalLabel const & dataDefinition() const override;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace JPEG2000
} // namespace Essence
} // namespace Vellum
