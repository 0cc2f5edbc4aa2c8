#pragma once
// The analyzer of a VC-3 (DNxHD, DNxHR) stream: frame wrapped, one frame per edit unit, all of the
// same size. The stream carries no rate: the host gives it.

#include "DataIO/DataSource.h"
#include "DataIO/SliceSource.h"
#include "Essence/Analyzers/BasicAnalyzer.h"
#include "Essence/VC3/VC3Parser.h"
#include "Templates/SharedPtr.h"

namespace Vellum
{
namespace Essence
{
namespace VC3
{
class VC3Analyzer : public Analyzers::BasicAnalyzer<GenericContainer::PictureAnalyzer>
{
public:
    VELLUM_CLASS_ALLOCATION
    VC3Analyzer(Templates::SharedPtr<DataIO::SliceSource> source, Templates::Rational<int> const & editRate);
    VC3Analyzer(Templates::SharedPtr<DataIO::DataSource> source, Templates::Rational<int> const & editRate);
    ~VC3Analyzer() override;

    // Reads the first frame header; throws InvalidFormat for a stream that is no VC-3 or has an
    // unknown compression ID.
    bool preload() override;
    bool nextEditUnit(GenericContainer::EditUnit & unit) override;

    VC3Header const & header() const;
    // The picture essence coding label of the compression ID.
    Types::UniversalLabel pictureEssenceCoding() const;

protected:
    Metadata::Structural::FileDescriptor * makeDescriptor(Metadata::PartitionMetadata & metadata) override;
    Types::UniversalLabel const & dataDefinition() const override;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace VC3
} // namespace Essence
} // namespace Vellum
