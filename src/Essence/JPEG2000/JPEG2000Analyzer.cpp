#include "Essence/JPEG2000/JPEG2000Analyzer.h"

#include "Essence/Analyzers/PictureDescriptors.h"
#include "Exceptions/Exceptions.h"
#include "Metadata/PartitionMetadata.h"
#include "Metadata/Structural/DataDefinitionULs.h"
#include "Metadata/Structural/RGBAEssenceDescriptor.h"
#include "Types/RGBALayout.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/StructuralVisitors.h"
#include "Types/Integers.h"

namespace Vellum
{
namespace Essence
{
namespace JPEG2000
{
using Templates::Rational;

struct JPEG2000Analyzer::Impl
{
    VELLUM_CLASS_ALLOCATION
    template <class Source>
    explicit Impl(Templates::SharedPtr<Source> source) : buffer(source), parser(buffer), preloaded(false)
    {
    }

    StreamBuffer buffer;
    CodestreamParser parser;
    // The first codestream, read by preload.
    DataIO::Chain first;
    bool preloaded;
};

JPEG2000Analyzer::JPEG2000Analyzer(Templates::SharedPtr<DataIO::SliceSource> source, Rational<int> const & editRate)
    : impl_(new Impl(source))
{
    editRate_ = editRate;
}

JPEG2000Analyzer::JPEG2000Analyzer(Templates::SharedPtr<DataIO::DataSource> source, Rational<int> const & editRate)
    : impl_(new Impl(source))
{
    editRate_ = editRate;
}

JPEG2000Analyzer::~JPEG2000Analyzer() {}

bool JPEG2000Analyzer::preload()
{
    if (impl_->preloaded)
        return true;
    checkEditRate();
    if (!impl_->parser.next(&impl_->first))
        return false;
    impl_->preloaded = true;
    unsigned char const container[16] = {0x06, 0x0E, 0x2B, 0x34, 0x04, 0x01, 0x01, 0x07,
                                         0x0D, 0x01, 0x03, 0x01, 0x02, 0x0C, 0x01, 0x00};
    containerLabel_ = Analyzers::label(container);
    itemType_ = Analyzers::GC_PICTURE_ITEM;
    elementType_ = Analyzers::JPEG2000_FRAME_WRAPPED;
    return true;
}

bool JPEG2000Analyzer::nextEditUnit(GenericContainer::EditUnit & unit)
{
    unit.valid = false;
    unit.data.clear();
    if (done_ || !preload())
        return endUnit(unit, false);
    if (!impl_->first.empty())
    {
        unit.data.push_back(impl_->first);
        return endUnit(unit, true);
    }
    return endUnit(unit, impl_->parser.next(&unit.data));
}

ImageSize const & JPEG2000Analyzer::imageSize() const
{
    return impl_->parser.imageSize();
}

bool JPEG2000Analyzer::isColourDifference() const
{
    for (ImageSize::Component const & c : imageSize().components)
        if (c.xSubsampling != 1 || c.ySubsampling != 1)
            return true;
    return false;
}

Metadata::Structural::FileDescriptor * JPEG2000Analyzer::makeDescriptor(Metadata::PartitionMetadata & metadata)
{
    using namespace Metadata::Structural;
    ImageSize const & size = imageSize();
    uint32 width = size.width - size.xOffset, height = size.height - size.yOffset;
    unsigned char const coding[16] = {0x06, 0x0E, 0x2B, 0x34, 0x04, 0x01, 0x01, 0x07,
                                      0x04, 0x01, 0x02, 0x02, 0x03, 0x01, 0x01, 0x00};
    Analyzers::PictureLayout layout = {width, height, 0, Rational<int>(int(width), int(height))};
    unsigned depth = size.components.front().depth;
    GenericPictureEssenceDescriptor * picture = nullptr;
    if (isColourDifference())
    {
        CDCIEssenceDescriptor * d = metadataSetAs<CDCIEssenceDescriptor>(
            metadata.createMetadataSet(StructuralMetadataKeys::cdciEssenceDescriptor()));
        THROW_UNLESS(InvalidMetadataSet, d != nullptr, "The dictionary has no CDCI descriptor");
        ImageSize::Component const & chroma = size.components.size() > 1 ? size.components[1] : size.components[0];
        Analyzers::describeComponents(*d, depth, chroma.xSubsampling, chroma.ySubsampling);
        picture = d;
    }
    else
    {
        RGBAEssenceDescriptor * d = metadataSetAs<RGBAEssenceDescriptor>(
            metadata.createMetadataSet(StructuralMetadataKeys::rgbaEssenceDescriptor()));
        THROW_UNLESS(InvalidMetadataSet, d != nullptr, "The dictionary has no RGBA descriptor");
        Types::UInt32 const minimum(0), maximum(depth >= 32 ? 0xFFFFFFFFu : (1u << depth) - 1);
        d->componentMinRef(&minimum);
        d->componentMaxRef(&maximum);
        // The components in codestream order: red, green, blue, then alpha for a fourth.
        Types::RGBALayout pixels;
        static unsigned char const codes[4] = {'R', 'G', 'B', 'A'};
        for (size_t i = 0; i < size.components.size() && i < 4; ++i)
            pixels.set(unsigned(i), Types::RGBAComponent(codes[i], static_cast<unsigned char>(size.components[i].depth)));
        d->pixelLayout(&pixels);
        picture = d;
    }
    Analyzers::describePicture(*picture, layout, Analyzers::label(coding));
    return picture;
}

Types::UniversalLabel const & JPEG2000Analyzer::dataDefinition() const
{
    return Metadata::Structural::DataDefinitionULs::picture();
}
} // namespace JPEG2000
} // namespace Essence
} // namespace Vellum
