// Elementary streams to finished MXF files: multiplexer or clip wrapper, creator, operational
// pattern builder, and the second pass that closes every partition.

#include "OPBuilders/FileWrapper.h"

#include "DataIO/File/FileDataSink.h"
#include "Exceptions/Exceptions.h"
#include "GenericContainer/ClipWrapper/Wrapper.h"
#include "GenericContainer/Multiplexer/Mux.h"
#include "GenericContainer/RP224UniversalLabels.h"
#include "GenericContainer/Source.h"
#include "MetaMetadata/Dictionary.h"
#include "Metadata/PartitionMetadata.h"
#include "Metadata/Structural/SourcePackage.h"
#include "Metadata/Structural/Wrappings.h"
#include "MXFIO/Creator.h"
#include "OPBuilders/GenericOPBuilder.h"
#include "OPBuilders/OPAtomBuilder.h"
#include "Platform/Version.h"
#include "Types/ProductVersion.h"
#include "Types/UTF16String.h"
#include "Types/UUID.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace OPBuilders
{
typedef Templates::SharedPtr<GenericContainer::EssenceAnalyzer> Analyzer;
typedef Templates::Rational<int> Rate;

FileWrapper::Options::Options()
    : opAtom(false), clipWrap(false), partitionSeconds(10), kagSize(1), metadataSpareSpace(64 * 1024)
{
}

namespace
{
// The identity of the product that writes the files.
struct Product
{
    Product()
        : company(Utils::wide("Vellum")), name(Utils::wide("vellum")), version(Version::versionString()),
          productVersion(Version::major(), Version::minor(), Version::patch(), Version::build(), Version::releaseVersion())
    {
        // A fixed identifier of this product, the same in every file it writes.
        unsigned char const bytes[16] = {0x5b, 0x1f, 0x0c, 0x6e, 0x9d, 0x4a, 0x4f, 0x27,
                                         0x8e, 0x31, 0x52, 0xa0, 0x76, 0x0d, 0xc3, 0x19};
        uid = Types::UUID(bytes);
    }
    Templates::wstring company, name, version;
    Types::ProductVersion productVersion;
    Types::UUID uid;
};

// Bytes written so far, told to the host now and then.
void runUntil(MXFIO::Creator & creator, MXFIO::PullCreator::Status until, DataIO::DataSink & sink,
              FileWrapper::Progress const & progress)
{
    unsigned calls = 0;
    while (creator.status() < until)
    {
        creator.writeUnit(false);
        if (progress && (++calls % 64) == 0)
            progress(sink.absoluteOffset());
    }
}

// Closes every partition with the final metadata, then patches clip lengths.
void closeFile(MXFIO::Creator & creator, DataIO::File::FileDataSink & sink)
{
    MXFIO::Creator::PartitionPacks const packs = creator.partitionPacks();
    for (MXFIO::Creator::PartitionPacks::const_iterator i = packs.begin(); i != packs.end(); ++i)
        THROW_UNLESS(InvalidState, creator.updatePartition(i->first, Packs::PartitionPack::ClosedComplete),
                     "the final header metadata does not fit in the space kept for it");
    creator.finishWork(sink);
    sink.flush();
}
} // namespace

struct FileWrapper::Impl
{
    Impl(Templates::SharedPtr<MetaMetadata::Dictionary> d, Options const & o) : dictionary(d), options(o) {}

    // The rate of the container: the first picture stream's.
    Rate containerRate() const
    {
        for (Analyzer const & a : streams)
            if (a->essenceAnalyzerType() == GenericContainer::EssenceAnalyzer::Picture)
                return a->editRate();
        return streams.front()->editRate();
    }

    Templates::auto_ptr<GenericContainer::Source> makeSource(Templates::SharedPtr<Metadata::PartitionMetadata> metadata,
                                                             Templates::vector<Analyzer> const & analyzers,
                                                             Rate const & rate) const;
    // One file: essence up to the footer; the rest happens in finish().
    struct File
    {
        Templates::auto_ptr<DataIO::File::FileDataSink> sink;
        Templates::auto_ptr<MXFIO::Creator> creator;
    };
    typedef Templates::vector<Templates::auto_ptr<GenericContainer::Source>> Sources;
    Templates::auto_ptr<File> start(Templates::wstring const & path, Templates::SharedPtr<Metadata::PartitionMetadata> metadata,
                                    Sources & sources, Rate const & rate, Progress const & progress) const;

    Templates::vector<Templates::wstring> writeOP1a(Templates::wstring const & path, Progress const & progress);
    Templates::vector<Templates::wstring> writeOPAtom(Templates::wstring const & folder, Progress const & progress);

    Templates::SharedPtr<MetaMetadata::Dictionary> dictionary;
    Options options;
    // Names the Material Package as the options say.
    void nameMaterialPackage(MaterialPackageProxy & material) const
    {
        if (options.packageName.empty())
            return;
        Types::UTF16String const name(options.packageName.c_str());
        material.package()->packageName(&name);
    }

    Product product;
    Templates::vector<Analyzer> streams;
    Templates::vector<Templates::wstring> names;
};

Templates::auto_ptr<GenericContainer::Source>
FileWrapper::Impl::makeSource(Templates::SharedPtr<Metadata::PartitionMetadata> metadata,
                              Templates::vector<Analyzer> const & analyzers, Rate const & rate) const
{
    // OP-Atom files hold their one stream as a clip, as the readers of such files expect.
    bool const clip = options.clipWrap || options.opAtom;
    Types::UniversalLabel const label =
        analyzers.size() > 1
            ? Metadata::Structural::Wrappings::multipleWrapping()
            : GenericContainer::RP224UniversalLabels::withWrapping(
                  analyzers.front()->universalLabel(),
                  clip ? GenericContainer::RP224UniversalLabels::ClipWrapped : GenericContainer::RP224UniversalLabels::FrameWrapped);
    Utils::TimeCode const & tc = options.start;
    bool const hasStart = tc.isDefined();
    if (clip)
    {
        namespace Labels = GenericContainer::RP224UniversalLabels;
        for (Analyzer const & a : analyzers)
        {
            Types::UniversalLabel const own = a->universalLabel();
            THROW_UNLESS(InvalidValue,
                         Labels::essenceContainerInfo(Labels::withWrapping(own, Labels::ClipWrapped)).wrapping !=
                             Labels::FrameWrapped,
                         "the essence of a stream has frame wrapping only and cannot be written as a clip");
        }
        GenericContainer::ClipWrapper::Wrapper wrapper(metadata, label, rate,
                                                       Templates::SharedPtr<DataIO::BufferSliceSource>(), 0);
        for (Analyzer const & a : analyzers)
            wrapper.addAnalyzer(a);
        wrapper.kagSize(options.kagSize);
        if (hasStart)
            wrapper.defaultStartTimecode(true, tc.hours(), tc.minutes(), tc.seconds(), tc.frames());
        return wrapper.commit();
    }
    GenericContainer::Multiplexer::Mux mux(metadata, label, rate);
    for (Analyzer const & a : analyzers)
        mux.addAnalyzer(a, false, Templates::Rational<int64>(0));
    mux.kagSize(options.kagSize);
    if (hasStart)
        mux.defaultStartTimecode(true, tc.hours(), tc.minutes(), tc.seconds(), tc.frames());
    return mux.commit();
}

Templates::auto_ptr<FileWrapper::Impl::File>
FileWrapper::Impl::start(Templates::wstring const & path, Templates::SharedPtr<Metadata::PartitionMetadata> metadata,
                         Sources & sources, Rate const & rate, Progress const & progress) const
{
    Templates::auto_ptr<File> file(new File);
    file->sink.reset(new DataIO::File::FileDataSink(path.c_str(), false, 1 << 20));
    file->creator.reset(new MXFIO::Creator(metadata, *file->sink, options.metadataSpareSpace, 0));
    MXFIO::Creator & creator = *file->creator;
    creator.footerHasMetadata(true);
    creator.headerPartitionHasEssence(false);
    Templates::Rational<int64> const units =
        options.partitionSeconds * Templates::Rational<int64>(rate.numerator(), rate.denominator());
    int64 const perPartition = units.numerator() / units.denominator();
    creator.masterEditUnitsPerPartition(perPartition > 0 ? static_cast<unsigned int>(perPartition) : 0);
    for (Templates::auto_ptr<GenericContainer::Source> & source : sources)
        creator.addEssenceContainer(std::move(source), MXFIO::IndexTableGenerationNotWritten,
                                    MXFIO::IndexTableGenerationAll, false, MXFIO::IndexSegmentChoose);
    runUntil(creator, MXFIO::PullCreator::FooterNext, *file->sink, progress);
    return file;
}

Templates::vector<Templates::wstring> FileWrapper::Impl::writeOP1a(Templates::wstring const & path,
                                                                   Progress const & progress)
{
    Rate const rate = containerRate();
    GenericOPBuilder builder(dictionary, product.company.c_str(), product.name.c_str(), product.version.c_str(),
                             product.uid, &product.productVersion, 0, false, false);
    MaterialPackageProxy * material =
        builder.createMaterialPackage(options.start.isDefined() ? options.start : Utils::TimeCode(25, 0, false), rate);
    nameMaterialPackage(*material);
    // Clips go one behind the other, each in an essence container of its own; frames of all
    // streams share one container.
    Sources sources;
    for (size_t i = 0; i < streams.size(); i += options.clipWrap ? 1 : streams.size())
    {
        Templates::vector<Analyzer> const group(streams.begin() + i,
                                                options.clipWrap ? streams.begin() + i + 1 : streams.end());
        sources.push_back(makeSource(builder.metadata(), group, rate));
        Metadata::Structural::SourcePackage & package = sources.back()->sourcePackage();
        MaterialPackageProxy::TrackProxies tracks;
        material->createTracks(tracks, &package, package);
    }
    builder.update();
    Templates::auto_ptr<File> file = start(path, builder.metadata(), sources, rate, progress);
    builder.update();
    runUntil(*file->creator, MXFIO::PullCreator::Finished, *file->sink, progress);
    builder.update();
    closeFile(*file->creator, *file->sink);
    return Templates::vector<Templates::wstring>(1, path);
}

Templates::vector<Templates::wstring> FileWrapper::Impl::writeOPAtom(Templates::wstring const & folder,
                                                                     Progress const & progress)
{
    Rate const rate = containerRate();
    Templates::vector<Templates::auto_ptr<OPAtomBuilder>> builders;
    Templates::vector<Templates::auto_ptr<File>> files;
    Templates::vector<Templates::wstring> paths;
    OPAtomAggregator aggregator;
    for (size_t i = 0; i < streams.size(); ++i)
    {
        builders.push_back(Templates::auto_ptr<OPAtomBuilder>(
            new OPAtomBuilder(dictionary, product.company.c_str(), product.name.c_str(), product.version.c_str(),
                              product.uid, &product.productVersion, 0)));
        OPAtomBuilder & builder = *builders.back();
        Sources sources;
        sources.push_back(makeSource(builder.metadata(), Templates::vector<Analyzer>(1, streams[i]), rate));
        Metadata::Structural::SourcePackage & package = sources.back()->sourcePackage();
        MaterialPackageProxy::TrackProxies tracks;
        MaterialPackageProxy * material =
            builder.createMaterialPackage(options.start.isDefined() ? options.start : Utils::TimeCode(25, 0, false), rate);
        nameMaterialPackage(*material);
        material->createTracks(tracks, &package, package);
        builder.topLevelFilePackage(package);
        builder.update();
        aggregator.addOPAtomBuilder(&builder);
        paths.push_back(folder + Utils::wide("/") + names[i] + Utils::wide(".mxf"));
        files.push_back(start(paths.back(), builder.metadata(), sources, rate, progress));
    }
    for (Templates::auto_ptr<OPAtomBuilder> const & builder : builders)
        builder->update();
    if (builders.size() > 1)
        aggregator.commit();
    for (size_t i = 0; i < files.size(); ++i)
    {
        runUntil(*files[i]->creator, MXFIO::PullCreator::Finished, *files[i]->sink, progress);
        closeFile(*files[i]->creator, *files[i]->sink);
    }
    return paths;
}

FileWrapper::FileWrapper(Templates::SharedPtr<MetaMetadata::Dictionary> dictionary, Options const & options)
    : impl_(new Impl(dictionary, options))
{
}

FileWrapper::~FileWrapper() {}

void FileWrapper::addStream(Analyzer analyzer, Templates::wstring const & name)
{
    analyzer->preload();
    impl_->streams.push_back(analyzer);
    impl_->names.push_back(name);
}

Templates::vector<Templates::wstring> FileWrapper::write(Templates::wstring const & target, Progress const & progress)
{
    THROW_UNLESS(InvalidState, !impl_->streams.empty(), "no stream to wrap");
    return impl_->options.opAtom ? impl_->writeOPAtom(target, progress) : impl_->writeOP1a(target, progress);
}
} // namespace OPBuilders
} // namespace Vellum
