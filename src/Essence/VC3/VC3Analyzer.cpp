#include "Essence/VC3/VC3Analyzer.h"

#include "Essence/Analyzers/PictureDescriptors.h"
#include "Exceptions/Exceptions.h"
#include "Metadata/PartitionMetadata.h"
#include "Metadata/Structural/DataDefinitionULs.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/StructuralVisitors.h"

namespace Vellum
{
namespace Essence
{
namespace VC3
{
using Templates::Rational;

struct VC3Analyzer::Impl
{
    VELLUM_CLASS_ALLOCATION
    template <class Source>
    explicit Impl(Templates::SharedPtr<Source> source) : buffer(source), parser(buffer)
    {
    }

    StreamBuffer buffer;
    VC3Parser parser;
};

VC3Analyzer::VC3Analyzer(Templates::SharedPtr<DataIO::SliceSource> source, Rational<int> const & editRate)
    : impl_(new Impl(source))
{
    editRate_ = editRate;
}

VC3Analyzer::VC3Analyzer(Templates::SharedPtr<DataIO::DataSource> source, Rational<int> const & editRate)
    : impl_(new Impl(source))
{
    editRate_ = editRate;
}

VC3Analyzer::~VC3Analyzer() {}

bool VC3Analyzer::preload()
{
    checkEditRate();
    if (!impl_->parser.readHeader())
        return false;
    unsigned char const container[16] = {0x06, 0x0E, 0x2B, 0x34, 0x04, 0x01, 0x01, 0x0A,
                                         0x0D, 0x01, 0x03, 0x01, 0x02, 0x11, 0x01, 0x00};
    containerLabel_ = Analyzers::label(container);
    itemType_ = Analyzers::GC_PICTURE_ITEM;
    elementType_ = Analyzers::VC3_FRAME_WRAPPED;
    constantSize_ = header().frameSize;
    return true;
}

bool VC3Analyzer::nextEditUnit(GenericContainer::EditUnit & unit)
{
    unit.valid = false;
    unit.data.clear();
    return endUnit(unit, !done_ && preload() && impl_->parser.next(&unit.data));
}

VC3Header const & VC3Analyzer::header() const
{
    return impl_->parser.header();
}

Types::UniversalLabel VC3Analyzer::pictureEssenceCoding() const
{
    uint32 id = header().compressionId;
    bool older = id <= 1253 && id != 1244;
    unsigned char const bytes[16] = {0x06, 0x0E, 0x2B, 0x34, 0x04, 0x01, 0x01, (unsigned char)(older ? 0x0A : 0x0D),
                                     0x04, 0x01, 0x02, 0x02, 0x71, (unsigned char)(id - 1234), 0x00, 0x00};
    return Analyzers::label(bytes);
}

Metadata::Structural::FileDescriptor * VC3Analyzer::makeDescriptor(Metadata::PartitionMetadata & metadata)
{
    using namespace Metadata::Structural;
    CDCIEssenceDescriptor * d =
        metadataSetAs<CDCIEssenceDescriptor>(metadata.createMetadataSet(StructuralMetadataKeys::cdciEssenceDescriptor()));
    THROW_UNLESS(InvalidMetadataSet, d != nullptr, "The dictionary has no CDCI descriptor");
    VC3Header const & h = header();
    bool interlaced = h.info->interlaced;
    // An interlaced header counts the lines of one field. The fixed-size IDs are all 16:9 pictures;
    // the resolution-independent ones have square samples.
    Rational<int> aspect = h.info->frameSize != 0 ? Rational<int>(16, 9) : Rational<int>(int(h.width), int(h.height));
    Analyzers::PictureLayout layout = {h.width, h.height, (unsigned char)(interlaced ? 1 : 0), aspect};
    Analyzers::describePicture(*d, layout, pictureEssenceCoding());
    Analyzers::describeComponents(*d, h.info->bitDepth, h.info->chroma444 ? 1 : 2, 1);
    return d;
}

Types::UniversalLabel const & VC3Analyzer::dataDefinition() const
{
    return Metadata::Structural::DataDefinitionULs::picture();
}
} // namespace VC3
} // namespace Essence
} // namespace Vellum
