// Wrong use of multiplexers, wrappers, workers and index generators: the exceptions and their
// texts.

#include <functional>

#include <gtest/gtest.h>

#include "Exceptions/Exceptions.h"
#include "GenericContainer/ClipWrapper/Wrapper.h"
#include "GenericContainer/DefaultIndexTableGenerator.h"
#include "GenericContainer/Multiplexer/Mux.h"
#include "GenericContainer/RP224UniversalLabels.h"
#include "Support/ContainerDrain.h"
#include "Support/MemoryAnalyzer.h"
#include "Utils/Text.h"

namespace VellumTest
{
namespace
{
using namespace Vellum;
using Templates::Rational;
using Templates::SharedPtr;
using GC::Multiplexer::Mux;

SharedPtr<GC::EssenceAnalyzer> picture(MemoryStream const & stream = constantStream(2, 100))
{
    return SharedPtr<GC::EssenceAnalyzer>(new MemoryPicture(stream));
}

MemoryStream longGop(Rational<int> rate = Rational<int>(25, 1))
{
    MemoryStream stream = constantStream(2, 100);
    stream.temporalDependencies = true;
    stream.editRate = rate;
    return stream;
}

Rational<int64> const NONE(0, 1);

void drainMux(Mux & mux)
{
    Templates::auto_ptr<GC::Source> source = mux.commit();
    drainSource(*source);
}

struct Case
{
    char const * name;
    int code;
    char const * message;
    std::function<void()> run;
};

TEST(GenericContainerErrors, WrongUseThrowsTheClassAndText)
{
    Case const cases[] = {
        {"second system analyzer", Exceptions::AlreadySet::ERROR_CODE,
         "system_.get () == 0: Trying to add more than one SystemAnalyzer",
         [] {
             Mux mux(newHeaderMetadata(), testContainerLabel(), Rational<int>(25, 1));
             for (int i = 0; i < 2; ++i)
                 mux.addAnalyzer(SharedPtr<GC::EssenceAnalyzer>(new MemorySystem(constantStream(1, 97))), false, NONE);
         }},
        {"129th picture", Exceptions::IndexOutOfBounds::ERROR_CODE,
         "picture_.size () <= MAXIMUM_ITEM_COUNT: Trying to add more PictureAnalyzers than allowed",
         [] {
             Mux mux(newHeaderMetadata(), testContainerLabel(), Rational<int>(25, 1));
             for (int i = 0; i < 129; ++i)
                 mux.addAnalyzer(picture(), false, NONE);
         }},
        {"refused preload", Exceptions::InvalidFormat::ERROR_CODE, "isValid: The essence format is invalid",
         [] {
             MemoryStream stream = constantStream(1, 10);
             stream.preloadResult = false;
             Mux mux(newHeaderMetadata(), testContainerLabel(), Rational<int>(25, 1));
             mux.addAnalyzer(picture(stream), false, NONE);
             mux.commit();
         }},
        {"two long-GOP streams", Exceptions::InvalidFormat::ERROR_CODE,
         "temporalReordoring_ == false: Trying to set two sources with temporal reordoring to the same generic "
         "container. MXF only allows for one source with temporal reordoring.",
         [] {
             Mux mux(newHeaderMetadata(), testContainerLabel(), Rational<int>(25, 1));
             mux.addAnalyzer(picture(longGop()), false, NONE);
             mux.addAnalyzer(picture(longGop()), false, NONE);
             mux.commit();
         }},
        {"long-GOP at another rate", Exceptions::InvalidFormat::ERROR_CODE,
         "preEntry.analyzer -> editRate () == rate_: Trying to set an essence analyzer with temporal reordoring "
         "and with editRate different from the content package.",
         [] {
             Mux mux(newHeaderMetadata(), testContainerLabel(), Rational<int>(25, 1));
             mux.addAnalyzer(picture(longGop(Rational<int>(50, 1))), false, NONE);
             mux.commit();
         }},
        {"long-GOP behind the start", Exceptions::InvalidFormat::ERROR_CODE,
         "preEntry.temporalOffset.numerator () == 0: A source with temporal reordoring must start at offset zero "
         "to the essence container.",
         [] {
             Mux mux(newHeaderMetadata(), testContainerLabel(), Rational<int>(25, 1));
             mux.addAnalyzer(picture(longGop()), false, Rational<int64>(1, 25));
             mux.commit();
         }},
        {"system item above its size", Exceptions::InvalidFormat::ERROR_CODE,
         "static_cast <Platform::Int32> (entry.entryByteCount) <= systemItemMaximumSize: Trying to force into the "
         "GC a system Item maximum value smaller then the system Item size. Please increate the system item "
         "maximum size",
         [] {
             Mux mux(newHeaderMetadata(), testContainerLabel(), Rational<int>(25, 1));
             mux.paddToItem(10, 0, 0, 0, 0);
             mux.addAnalyzer(SharedPtr<GC::EssenceAnalyzer>(new MemorySystem(constantStream(1, 97))), false, NONE);
             mux.commit();
         }},
        {"constant element grown", Exceptions::InvalidLength::ERROR_CODE,
         "editUnitCurrentSize <= analyzerBytesPerEntry: One analyzer (CBE) has produced an edit unit larger than "
         "expected",
         [] {
             MemoryStream stream = constantStream(1, 200);
             stream.boundedSize = 100;
             Mux mux(newHeaderMetadata(), testContainerLabel(), Rational<int>(25, 1));
             mux.addAnalyzer(picture(stream), false, NONE);
             drainMux(mux);
         }},
        {"filler smaller than a KL", Exceptions::InvalidLength::ERROR_CODE,
         "editUnitFillItemSize >= klLength_: Not enough size to create filler in essence.",
         [] {
             MemoryStream stream = constantStream(1, 90);
             stream.boundedSize = 100;
             Mux mux(newHeaderMetadata(), testContainerLabel(), Rational<int>(25, 1));
             mux.addAnalyzer(picture(stream), false, NONE);
             drainMux(mux);
         }},
        {"item overfull", Exceptions::InvalidLength::ERROR_CODE,
         "itemSize > sliceOffset_ - lastItemSliceOffset_: Trying to store more data in the Generic Container then "
         "the edit unit can hold.",
         [] {
             MemoryStream stream = constantStream(1, 100);
             stream.cbe = false;
             Mux mux(newHeaderMetadata(), testContainerLabel(), Rational<int>(25, 1));
             mux.paddToItem(0, 0, 50, 0, 0);
             mux.addAnalyzer(picture(stream), false, NONE);
             drainMux(mux);
         }},
        {"system analyzer in a clip", Exceptions::InvalidElement::ERROR_CODE,
         "dynamic_cast <SystemAnalyzer*> (analyzer.get ()) == 0: Trying to add a SystemAnalyzer",
         [] {
             GC::ClipWrapper::Wrapper wrapper(newHeaderMetadata(), testContainerLabel(), Rational<int>(25, 1),
                                              SharedPtr<DataIO::BufferSliceSource>(), 0);
             wrapper.addAnalyzer(SharedPtr<GC::EssenceAnalyzer>(new MemorySystem(constantStream(1, 97))));
         }},
        {"index of two clips", Exceptions::NotImplemented::ERROR_CODE,
         "count <= 1: Cannot generate IndexTables for more then one Clip wrapped element. Please use OP1b or higher "
         "or discard indexTables.",
         [] {
             GC::ClipWrapper::Wrapper wrapper(newHeaderMetadata(), testContainerLabel(), Rational<int>(25, 1),
                                              SharedPtr<DataIO::BufferSliceSource>(), 0);
             wrapper.addAnalyzer(picture());
             wrapper.addAnalyzer(picture());
             Templates::auto_ptr<GC::Source> source = wrapper.commit();
             source->indexTableGenerator()->indexStrategies(MXFIO::IndexTableGenerationAll,
                                                            MXFIO::IndexTableGenerationAll, MXFIO::IndexSegmentChoose);
             drainSource(*source);
         }},
        {"layout given twice", Exceptions::InvalidState::ERROR_CODE,
         "indexSegmentInfo_.get () == 0: DefaultIndexTableGenerator was already configured.",
         [] {
             GC::DefaultIndexTableGenerator generator;
             GC::IndexSegmentInfo const info(Rational<int>(25, 1), 20, 0, GC::IndexSegmentInfo::FrameWrapped, false);
             generator.setupIndexSegments(info);
             generator.setupIndexSegments(info);
         }},
        {"segment without a layout", Exceptions::InvalidState::ERROR_CODE,
         "indexSegmentInfo_.get () != 0: Default implementation of IndexTableGenerator was already configured.",
         [] {
             GC::DefaultIndexTableGenerator generator;
             generator.indexStrategies(MXFIO::IndexTableGenerationAll, MXFIO::IndexTableGenerationAll,
                                       MXFIO::IndexSegmentVariable);
             generator.updateIndex();
         }},
        {"strategies after use", Exceptions::InvalidState::ERROR_CODE,
         "!initialized_: Unable to configue Index Segment that was already used.",
         [] {
             GC::DefaultIndexTableGenerator generator;
             generator.setupIndexSegments(
                 GC::IndexSegmentInfo(Rational<int>(25, 1), 20, 0, GC::IndexSegmentInfo::FrameWrapped, false));
             generator.updateIndex();
             generator.indexStrategies(MXFIO::IndexTableGenerationAll, MXFIO::IndexTableGenerationAll,
                                       MXFIO::IndexSegmentVariable);
         }},
    };
    for (Case const & c : cases)
    {
        SCOPED_TRACE(c.name);
        try
        {
            c.run();
            ADD_FAILURE() << "no exception";
        }
        catch (Exceptions::BaseException const & e)
        {
            EXPECT_EQ(c.code, e.errorCode());
            EXPECT_EQ(c.message, std::string(Utils::narrow(e.message()).c_str()));
        }
    }
}

// The families of essence container labels: kind and wrapping, byte 7 ignored, and the refusals.
TEST(RP224UniversalLabels, EssenceContainerInfoByFamily)
{
    struct Case
    {
        char const * label;
        unsigned int kind;
        unsigned int wrapping;
        char const * refusal;
    };
    Case const cases[] = {
        {"06.0e.2b.34.04.01.01.01.0d.01.03.01.02.02.41.01", 6, 0, nullptr},
        {"06.0e.2b.34.04.01.01.7f.0d.01.03.01.02.02.41.02", 6, 1, nullptr},
        {"06.0e.2b.34.04.01.01.01.0d.01.03.01.02.02.41.03", 0, 0, "Invalid wrap kind value 3, in the Essence Container UL, "},
        {"06.0e.2b.34.04.01.01.01.0d.01.03.01.02.01.01.01", 5, 0, nullptr},
        {"06.0e.2b.34.04.01.01.02.0d.01.03.01.02.04.60.07", 7, 2, nullptr},
        {"06.0e.2b.34.04.01.01.01.0d.01.03.01.02.05.7f.02", 10, 1, nullptr},
        {"06.0e.2b.34.04.01.01.01.0d.01.03.01.02.06.03.00", 1, 0, nullptr},
        {"06.0e.2b.34.04.01.01.01.0d.01.03.01.02.06.08.00", 4, 2, nullptr},
        {"06.0e.2b.34.04.01.01.01.0d.01.03.01.02.06.05.00", 0, 0,
         "Invalid value, byte 15, 5, in the AES/BWF Wave Essence Container UL, "},
        {"06.0e.2b.34.04.01.01.02.0d.01.03.01.02.08.e0.02", 8, 1, nullptr},
        {"06.0e.2b.34.04.01.01.03.0d.01.03.01.02.0a.03.00", 11, 2, nullptr},
        {"06.0e.2b.34.04.01.01.03.0d.01.03.01.02.0a.04.00", 0, 0, "Invalid wrap kind value 4, in the A-Law Essence Container UL, "},
        {"06.0e.2b.34.04.01.01.07.0d.01.03.01.02.0c.02.00", 12, 1, nullptr},
        {"06.0e.2b.34.04.01.01.07.0d.01.03.01.02.0c.05.00", 0, 0,
         "Invalid wrap kind value 5, in the JPEG2000 Essence Container UL, "},
        {"06.0e.2b.34.04.01.01.02.0d.01.03.01.02.10.60.01", 2, 2, nullptr},
        {"06.0e.2b.34.04.01.01.08.04.01.02.02.01.77.66.01", 13, 0, nullptr},
        {"06.0e.2b.34.04.01.01.01.0d.01.03.01.02.07.60.01", 0, 2, nullptr},
    };
    for (Case const & c : cases)
    {
        SCOPED_TRACE(c.label);
        Types::UniversalLabel const label(Utils::wide(c.label).c_str(), Types::Dotted);
        try
        {
            GC::RP224UniversalLabels::EssenceContainerInfo const info = GC::RP224UniversalLabels::essenceContainerInfo(label);
            EXPECT_EQ(nullptr, c.refusal);
            EXPECT_EQ(c.kind, info.kind);
            EXPECT_EQ(c.wrapping, info.wrapping);
        }
        catch (Exceptions::InvalidValue const & e)
        {
            ASSERT_NE(nullptr, c.refusal);
            EXPECT_EQ(std::string(c.refusal) + Utils::narrow(label.toString(Types::Dotted)).c_str(),
                      std::string(Utils::narrow(e.message()).c_str()));
        }
    }
}
} // namespace
} // namespace VellumTest
