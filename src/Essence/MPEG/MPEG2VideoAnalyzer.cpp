#include "Essence/MPEG/MPEG2VideoAnalyzer.h"

#include <algorithm>

#include <cstring>

#include "DataIO/Memory/MemoryBlock.h"
#include "Exceptions/Exceptions.h"
#include "Metadata/PartitionMetadata.h"
#include "Metadata/Structural/DataDefinitionULs.h"
#include "Metadata/Structural/MPEG2VideoDescriptor.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/StructuralVisitors.h"
#include "Types/Rational.h"

namespace Vellum
{
namespace Essence
{
namespace MPEG
{
using Templates::Rational;

namespace
{
struct Pending
{
    VELLUM_CLASS_ALLOCATION
    MPEG2Frame frame;
    DataIO::Chain data;
};

// The picture coding labels of the profiles and levels: bytes 7, 13, and 14 for intra-only and
// for long GOP streams.
struct CodingLabel
{
    unsigned profileAndLevel;
    unsigned char version;
    unsigned char family;
    unsigned char intraOnly;
    unsigned char longGop;
};

CodingLabel const codingLabels[] = {
    {0x48, 0x03, 0x01, 0x10, 0x11}, // MP@ML
    {0x85, 0x03, 0x02, 0x02, 0x03}, // 422P@ML
    {0x44, 0x03, 0x03, 0x02, 0x03}, // MP@HL
    {0x82, 0x03, 0x04, 0x02, 0x03}, // 422P@HL
    {0x46, 0x08, 0x05, 0x02, 0x03}, // MP@H14
    {0x18, 0x09, 0x06, 0x02, 0x03}, // HP@ML
    {0x14, 0x09, 0x07, 0x02, 0x03}, // HP@HL
    {0x16, 0x09, 0x08, 0x02, 0x03}, // HP@H14
};

bool is625(MPEG2SequenceInfo const & s)
{
    return s.height == 608 && s.frameRate() == Rational<int>(25, 1);
}

bool is525(MPEG2SequenceInfo const & s)
{
    return s.height == 512 && s.frameRate() == Rational<int>(30000, 1001);
}

// 1, 2 or 3 for D-10 at 50, 40 or 30 Mb/s; 0 otherwise.
unsigned d10RateIndex(MPEG2SequenceInfo const & s)
{
    switch (s.bitRate())
    {
    case 50000000:
        return 1;
    case 40000000:
        return 2;
    case 30000000:
        return 3;
    default:
        return 0;
    }
}

void setUInt32(Metadata::Structural::MPEG2VideoDescriptor & d,
               void (Metadata::Structural::GenericPictureEssenceDescriptor::*set)(Types::UInt32 const *), uint32 value)
{
    Types::UInt32 const v(value);
    (d.*set)(&v);
}
} // namespace

struct MPEG2VideoAnalyzer::Impl
{
    VELLUM_CLASS_ALLOCATION
    template <class Source>
    Impl(Templates::SharedPtr<Source> source, uint64 blockSize) : buffer(source, blockSize), parser(buffer), preloaded(false),
                                                          intraOnly(true), d10(false)
    {
    }

    // What the descriptor says of the groups of pictures, gathered picture by picture.
    struct Groups
    {
        Groups() : count(0), headers(false), allClosed(true), identical(true), longest(0), bRun(0), longestBRun(0) {}
        // A picture in coded order: a group starts at a group header, or at an I picture while the
        // stream has shown none.
        void add(MPEG2Frame const & frame)
        {
            headers = headers || frame.gopHeader;
            bool const starts = frame.gopHeader || (!headers && frame.codingType == I_PICTURE);
            if (starts || count == 0)
            {
                close();
                ++count;
                if (frame.gopHeader && !frame.closedGop)
                    allClosed = false;
            }
            current += static_cast<char>('0' + frame.codingType);
            bRun = frame.codingType == B_PICTURE ? bRun + 1 : 0;
            longestBRun = std::max(longestBRun, bRun);
        }
        // Ends the group being gathered; the last may be shorter than the first and still alike.
        void close(bool last = false)
        {
            if (current.empty())
                return;
            longest = std::max<unsigned>(longest, unsigned(current.size()));
            if (first.empty())
                first = current;
            else if (last ? first.compare(0, current.size(), current) != 0 : current != first)
                identical = false;
            current.clear();
        }
        unsigned count;
        bool headers;
        bool allClosed;
        bool identical;
        unsigned longest;
        unsigned bRun;
        unsigned longestBRun;
        Templates::string first, current;
    } groups;
    Metadata::Structural::MPEG2VideoDescriptor * descriptor = nullptr;

    StreamBuffer buffer;
    MPEG2VideoParser parser;
    Templates::list<Templates::auto_ptr<Pending>> ahead;
    bool preloaded;
    bool intraOnly;
    bool d10;
    // Zeros that fill a D-10 frame up to its constant size.
    DataIO::BlockHolder stuffing;
};

MPEG2VideoAnalyzer::MPEG2VideoAnalyzer(Templates::SharedPtr<DataIO::SliceSource> source, uint64 blockSize)
    : impl_(new Impl(source, blockSize))
{
}

MPEG2VideoAnalyzer::MPEG2VideoAnalyzer(Templates::SharedPtr<DataIO::DataSource> source, uint64 blockSize)
    : impl_(new Impl(source, blockSize))
{
}

MPEG2VideoAnalyzer::~MPEG2VideoAnalyzer() {}

bool MPEG2VideoAnalyzer::preload()
{
    if (impl_->preloaded)
        return true;
    while (impl_->ahead.size() < LOOKAHEAD)
    {
        Templates::auto_ptr<Pending> pending(new Pending);
        if (!impl_->parser.next(pending->frame, &pending->data))
            break;
        impl_->intraOnly = impl_->intraOnly && pending->frame.codingType == I_PICTURE;
        bool stop = !impl_->intraOnly;
        impl_->ahead.push_back(std::move(pending));
        if (stop)
            break;
    }
    if (impl_->ahead.empty())
        return false;
    impl_->preloaded = true;
    editRate_ = sequence().frameRate();
    chooseWrapping();
    return true;
}

void MPEG2VideoAnalyzer::chooseWrapping()
{
    MPEG2SequenceInfo const & s = sequence();
    unsigned rateIndex = d10RateIndex(s);
    uint64 size = s.bitRate() / 8 * uint64(editRate_.denominator()) / uint64(editRate_.numerator());
    bool d10 = impl_->intraOnly && s.profileAndLevel == 0x85 && s.chromaFormat == 2 && s.width == 720 &&
               (is625(s) || is525(s)) && rateIndex != 0;
    for (auto const & pending : impl_->ahead)
        d10 = d10 && pending->frame.size <= size;
    impl_->d10 = d10;
    if (d10)
    {
        unsigned char const container[16] = {0x06, 0x0E, 0x2B, 0x34, 0x04, 0x01, 0x01, 0x01, 0x0D, 0x01, 0x03, 0x01,
                                             0x02, 0x01, (unsigned char)(2 * (rateIndex - 1) + (is625(s) ? 1 : 2)), 0x01};
        containerLabel_ = Analyzers::label(container);
        itemType_ = Analyzers::CP_PICTURE_ITEM;
        elementType_ = Analyzers::D10_PICTURE;
        constantSize_ = unsigned(size);
        impl_->stuffing = DataIO::Memory::MemoryBlockFactory::instance().create(size);
        std::memset(impl_->stuffing->data(), 0, size);
    }
    else
    {
        unsigned char const container[16] = {0x06, 0x0E, 0x2B, 0x34, 0x04, 0x01, 0x01, 0x02,
                                             0x0D, 0x01, 0x03, 0x01, 0x02, 0x04, 0x60, 0x01};
        containerLabel_ = Analyzers::label(container);
        itemType_ = Analyzers::GC_PICTURE_ITEM;
        elementType_ = Analyzers::MPEG_FRAME_WRAPPED;
    }
}

bool MPEG2VideoAnalyzer::nextFrame(MPEG2Frame & frame, DataIO::Chain & data)
{
    if (impl_->ahead.empty())
        return impl_->parser.next(frame, &data);
    frame = impl_->ahead.front()->frame;
    data.push_back(impl_->ahead.front()->data);
    impl_->ahead.pop_front();
    return true;
}

bool MPEG2VideoAnalyzer::nextEditUnit(GenericContainer::EditUnit & unit)
{
    unit.valid = false;
    unit.data.clear();
    MPEG2Frame frame;
    if (done_ || !preload() || !nextFrame(frame, unit.data))
        return endUnit(unit, false);
    if (impl_->d10)
    {
        THROW_UNLESS(InvalidFormat, frame.codingType == I_PICTURE, "A D-10 stream holds a picture that is not intra coded");
        THROW_UNLESS(InvalidFormat, frame.size <= constantSize_, "A D-10 frame is larger than the constant edit unit size");
        unit.data.push_back(Templates::auto_ptr<DataIO::Slice>(
            new DataIO::Slice(impl_->stuffing.block(), 0, constantSize_ - frame.size)));
    }
    unit.temporalReference = static_cast<signed char>(frame.temporalReference < 127 ? frame.temporalReference : 127);
    unit.flags = indexFlags(frame);
    impl_->groups.add(frame);
    return endUnit(unit, true);
}

unsigned char MPEG2VideoAnalyzer::indexFlags(MPEG2Frame const & frame)
{
    if (frame.codingType == P_PICTURE)
        return 0x22;
    if (frame.codingType == B_PICTURE)
        return 0x33;
    unsigned char flags = frame.sequenceHeader ? 0x40 : 0x00;
    // Leading B pictures of an open group refer to the group before: only an I picture shown
    // first, or one of a closed group or behind a broken link, starts a decodable run.
    if (frame.sequenceHeader && (frame.closedGop || frame.brokenLink || frame.temporalReference == 0))
        flags |= 0x80;
    return flags;
}

bool MPEG2VideoAnalyzer::containsTemporalDependencies() const
{
    return !impl_->intraOnly;
}

MPEG2SequenceInfo const & MPEG2VideoAnalyzer::sequence() const
{
    return impl_->parser.sequence();
}

bool MPEG2VideoAnalyzer::isD10() const
{
    return impl_->d10;
}

Types::UniversalLabel MPEG2VideoAnalyzer::pictureEssenceCoding() const
{
    MPEG2SequenceInfo const & s = sequence();
    unsigned char bytes[16] = {0x06, 0x0E, 0x2B, 0x34, 0x04, 0x01, 0x01, 0x03, 0x04, 0x01, 0x02, 0x02, 0x01, 0x01, 0x11, 0x00};
    if (impl_->d10)
    {
        bytes[7] = 0x01;
        bytes[13] = 0x02;
        bytes[14] = 0x01;
        bytes[15] = (unsigned char)(2 * (d10RateIndex(s) - 1) + (is625(s) ? 1 : 2));
        return Analyzers::label(bytes);
    }
    for (CodingLabel const & c : codingLabels)
        if (c.profileAndLevel == s.profileAndLevel)
        {
            bytes[7] = c.version;
            bytes[13] = c.family;
            bytes[14] = impl_->intraOnly ? c.intraOnly : c.longGop;
        }
    return Analyzers::label(bytes);
}

Metadata::Structural::FileDescriptor * MPEG2VideoAnalyzer::makeDescriptor(Metadata::PartitionMetadata & metadata)
{
    using namespace Metadata::Structural;
    MPEG2VideoDescriptor * d =
        metadataSetAs<MPEG2VideoDescriptor>(metadata.createMetadataSet(StructuralMetadataKeys::mpeg2VideoDescriptor()));
    THROW_UNLESS(InvalidMetadataSet, d != nullptr, "The dictionary has no MPEG-2 video descriptor");
    MPEG2SequenceInfo const & s = sequence();
    bool progressive = s.progressiveSequence;
    uint32 height = progressive ? s.height : s.height / 2;
    setUInt32(*d, &GenericPictureEssenceDescriptor::storedWidth, (s.width + 15) / 16 * 16);
    setUInt32(*d, &GenericPictureEssenceDescriptor::storedHeight, progressive ? (s.height + 15) / 16 * 16 : (s.height + 31) / 32 * 16);
    setUInt32(*d, &GenericPictureEssenceDescriptor::sampledWidth, s.width);
    setUInt32(*d, &GenericPictureEssenceDescriptor::sampledHeight, height);
    setUInt32(*d, &GenericPictureEssenceDescriptor::displayWidth, s.width);
    setUInt32(*d, &GenericPictureEssenceDescriptor::displayHeight, height);
    Types::UInt8 const layout(progressive ? 0 : 3);
    d->frameLayout(&layout);
    Types::Rational const aspect(s.aspectRatio());
    d->aspectRatio(&aspect);
    Types::UniversalLabel const coding = pictureEssenceCoding();
    d->pictureEssenceCoding(&coding);
    Types::UInt32 const depth(8), horizontal(s.chromaFormat == 3 ? 1 : 2), vertical(s.chromaFormat == 1 ? 2 : 1);
    d->componentDepth(&depth);
    d->horizontalSubsampling(&horizontal);
    d->verticalSubsampling(&vertical);
    Types::UInt8 const profile(s.profileAndLevel), content(progressive ? 1 : 2);
    d->profileAndLevel(&profile);
    d->codedContentType(&content);
    Types::UInt32 const bitRate(uint32(s.bitRate()));
    d->bitRate(&bitRate);
    Types::Boolean const lowDelay(s.lowDelay);
    d->lowDelay(&lowDelay);
    impl_->descriptor = d;
    return d;
}

bool MPEG2VideoAnalyzer::finalize()
{
    BasicAnalyzer<GenericContainer::PictureAnalyzer>::finalize();
    Impl::Groups & g = impl_->groups;
    g.close(true);
    if (impl_->descriptor == nullptr || g.count == 0)
        return true;
    Types::Boolean const closed(g.allClosed), identical(g.identical);
    Types::UInt16 const longest(static_cast<unsigned short>(std::min(g.longest, 0xFFFFu)));
    Types::UInt16 const bPictures(static_cast<unsigned short>(std::min(g.longestBRun, 0xFFFFu)));
    impl_->descriptor->closedGOP(&closed);
    impl_->descriptor->identicalGOP(&identical);
    impl_->descriptor->maxGOP(&longest);
    impl_->descriptor->bPictureCount(&bPictures);
    return true;
}

Types::UniversalLabel const & MPEG2VideoAnalyzer::dataDefinition() const
{
    return Metadata::Structural::DataDefinitionULs::picture();
}
} // namespace MPEG
} // namespace Essence
} // namespace Vellum
