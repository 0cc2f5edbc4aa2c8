// vellum meta FILE [--json]: the header metadata of the header partition as a tree from the
// Preface down by strong references: each set with its class, instance UID and elements; invalid
// elements, dark sets and orphans marked.

#include <CLI/CLI.hpp>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "Commands.h"
#include "DataIO/File/FileDataSource.h"
#include "Exceptions/Exceptions.h"
#include "Format.h"
#include "MXFIO/PacketWalk.h"
#include "KLV/KeyPredicates.h"
#include "KLV/Packet.h"
#include "KLV/Reader.h"
#include "MetaMetadata/AbstractMetaAttribute.h"
#include "MetaMetadata/Dictionary.h"
#include "MetaMetadata/Helpers.h"
#include "MetaMetadata/MetaAttribute.h"
#include "MetaMetadata/MetaMetadataSet.h"
#include "MetaMetadata/MisplacedAttribute.h"
#include "MetaMetadata/StandardDictionary.h"
#include "MetaMetadata/UnknownAttribute.h"
#include "Metadata/ArrayElement.h"
#include "Metadata/ArrayReferenceElement.h"
#include "Metadata/BatchElement.h"
#include "Metadata/BatchReferenceElement.h"
#include "Metadata/DarkMetadataSet.h"
#include "Metadata/Element.h"
#include "Metadata/ElementVisitor.h"
#include "Metadata/ReferenceElement.h"
#include "Metadata/SimpleElement.h"
#include "Metadata/MetadataSet.h"
#include "Metadata/MetadataULs.h"
#include "Metadata/PartitionDictionary.h"
#include "Metadata/PartitionMetadata.h"
#include "Metadata/Structural/DataDefinitionULs.h"
#include "Metadata/Structural/Initialize.h"
#include "Metadata/Structural/StructuralClasses.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/StructuralVisitors.h"
#include "Packs/PartitionPack.h"
#include "Packs/PrimerPack.h"
#include "Types/Boolean.h"
#include "Types/Collection.h"
#include "Types/DataStream.h"
#include "Types/DataValue.h"
#include "Types/ISO7String.h"
#include "Types/Integers.h"
#include "Types/LocalTag.h"
#include "Types/ProductVersion.h"
#include "Types/Rational.h"
#include "Types/References.h"
#include "Types/Timestamp.h"
#include "Types/UMID.h"
#include "Types/UTF16.h"
#include "Types/UTF16String.h"
#include "Types/UUID.h"
#include "Types/UniversalLabel.h"
#include "Types/Unknown.h"
#include "Types/VersionType.h"
#include "Types/Visitors.h"
#include "Utils/Text.h"

namespace VellumTool
{
namespace
{
using namespace Vellum;
using Metadata::MetadataSet;
using Metadata::PartitionMetadata;

// Opaque values are shown up to this many bytes.
unsigned const SHOWN_BYTES = 32;

std::string propertyName(MetaMetadata::PropertyMap const & object)
{
    for (MetaMetadata::PropertyMap::const_iterator i = object.propertiesBegin(); i != object.propertiesEnd(); ++i)
        if (i->first == Utils::wide("name"))
            return narrow(i->second);
    return std::string();
}

// ---------------------------------------------------------------------------------------------
// Names of labels

// Names of the labels that the library knows: elements and sets of the dictionary, data
// definitions, operational patterns and essence container mappings. Byte 7, the register
// version, is not compared.
class LabelNames
{
public:
    explicit LabelNames(MetaMetadata::Dictionary const & dictionary)
    {
        for (MetaMetadata::Dictionary::LabelToMetaElement::const_iterator i = dictionary.metaElementBegin();
             i != dictionary.metaElementEnd(); ++i)
            add(i->first.rawBuffer(), propertyName(*i->second));
        for (MetaMetadata::Dictionary::KeyToMetaMetadataSet::const_iterator i = dictionary.metaMetadataSetBegin();
             i != dictionary.metaMetadataSetEnd(); ++i)
            add(i->first.rawBuffer(), propertyName(i->second));
        namespace DD = Metadata::Structural::DataDefinitionULs;
        add(DD::picture().rawBuffer(), "PictureEssenceTrack");
        add(DD::audio().rawBuffer(), "SoundEssenceTrack");
        add(DD::data().rawBuffer(), "DataEssenceTrack");
        add(DD::auxiliaryData().rawBuffer(), "AuxiliaryDataTrack");
        add(DD::descriptiveMetadata().rawBuffer(), "DescriptiveMetadataTrack");
        add(DD::parsedText().rawBuffer(), "ParsedTextTrack");
        add(DD::timecode12MInactive().rawBuffer(), "SMPTE12MTimecodeTrackInactiveUserBits");
        add(DD::timecode12MActive().rawBuffer(), "SMPTE12MTimecodeTrackActiveUserBits");
        add(DD::timecode309M().rawBuffer(), "SMPTE309MTimecodeTrackDatecodeUserBits");
    }

    std::string name(unsigned char const * bytes) const
    {
        std::map<std::string, std::string>::const_iterator found = names_.find(maskedKey(bytes));
        if (found != names_.end())
            return found->second;
        static unsigned char const prefix[8] = {0x06, 0x0e, 0x2b, 0x34, 0x04, 0x01, 0x01, 0x00};
        for (unsigned i = 0; i < 7; ++i)
            if (bytes[i] != prefix[i])
                return std::string();
        // Operational patterns.
        if (bytes[8] == 0x0d && bytes[9] == 0x01 && bytes[10] == 0x02 && bytes[11] == 0x01)
        {
            if (bytes[12] >= 1 && bytes[12] <= 3 && bytes[13] >= 1 && bytes[13] <= 3)
                return std::string("MXFOP") + char('0' + bytes[12]) + char('a' + bytes[13] - 1);
            if (bytes[12] == 0x10)
                return "MXFOPAtom";
        }
        // Essence container mappings of the generic container.
        if (bytes[8] == 0x0d && bytes[9] == 0x01 && bytes[10] == 0x03 && bytes[11] == 0x01 && bytes[12] == 0x02)
        {
            switch (bytes[13])
            {
            case 0x01:
                return "MXFGCD10Mappings";
            case 0x02:
                return "MXFGCDVMappings";
            case 0x04:
                return "MXFGCMPEGElementaryStreams";
            case 0x06:
                return bytes[14] == 0x02 ? "MXFGCClipWrappedBroadcastWaveAudioData" : "MXFGCFrameWrappedBroadcastWaveAudioData";
            case 0x07:
                return bytes[14] == 0x02 ? "MXFGCClipWrappedAES3AudioData" : "MXFGCFrameWrappedAES3AudioData";
            case 0x0c:
                return "MXFGCJPEG2000Pictures";
            case 0x11:
                return "MXFGCVC3Pictures";
            case 0x7f:
                return "MXFGCGenericEssenceMultipleMappings";
            default:
                break;
            }
        }
        return std::string();
    }

private:
    static std::string maskedKey(unsigned char const * bytes)
    {
        std::string key(reinterpret_cast<char const *>(bytes), 16);
        key[7] = 0;
        return key;
    }
    void add(unsigned char const * bytes, std::string const & name)
    {
        if (!name.empty())
            names_.insert(std::make_pair(maskedKey(bytes), name));
    }

    std::map<std::string, std::string> names_;
};

// ---------------------------------------------------------------------------------------------
// Values as text

std::string quoted(std::string const & text) { return "\"" + text + "\""; }

// The text of a value, and the instance UID of the set that a reference names.
class ValueText : public Types::Visitors::DelegateToBaseVisitor
{
public:
    explicit ValueText(LabelNames const & names) : names_(names), reference_(nullptr) {}

    std::string const & text() const { return text_; }
    // The target of a reference, or null.
    Types::SimpleDataType const * reference() const { return reference_; }

    using Types::Visitors::DelegateToBaseVisitor::visit;
    void visit(Types::Boolean const & v) override { text_ = v.value() ? "true" : "false"; }
    void visit(Types::Int8 const & v) override { text_ = std::to_string(int(v.value())); }
    void visit(Types::Int16 const & v) override { text_ = std::to_string(v.value()); }
    void visit(Types::Int32 const & v) override { text_ = std::to_string(v.value()); }
    void visit(Types::Int64 const & v) override { text_ = std::to_string(v.value()); }
    void visit(Types::UInt8 const & v) override { text_ = std::to_string(unsigned(v.value())); }
    void visit(Types::UInt16 const & v) override { text_ = std::to_string(v.value()); }
    void visit(Types::UInt32 const & v) override { text_ = std::to_string(v.value()); }
    void visit(Types::UInt64 const & v) override { text_ = std::to_string(v.value()); }
    void visit(Types::Length const & v) override { text_ = std::to_string(v.value()); }
    void visit(Types::Position const & v) override { text_ = std::to_string(v.value()); }
    void visit(Types::Rational const & v) override
    {
        text_ = std::to_string(v.numerator()) + "/" + std::to_string(v.denominator());
    }
    void visit(Types::Timestamp const & v) override { text_ = timestamp(v); }
    void visit(Types::UTF16String const & v) override { text_ = quoted(narrow(v.value())); }
    void visit(Types::ISO7String const & v) override { text_ = quoted(v.value()); }
    void visit(Types::UTF16 const & v) override
    {
        unsigned short const text[2] = {v.value(), 0};
        text_ = quoted(narrow(text));
    }
    void visit(Types::VersionType const & v) override
    {
        text_ = std::to_string(v.major()) + "." + std::to_string(v.minor());
    }
    void visit(Types::ProductVersion const & v) override { text_ = productVersion(v); }
    void visit(Types::UUID const & v) override { text_ = uuid(v); }
    void visit(Types::UMID32 const & v) override { text_ = umid(v.rawBuffer(), 32); }
    void visit(Types::UMID64 const & v) override { text_ = umid(v.rawBuffer(), 64); }
    void visit(Types::UniversalLabel const & v) override
    {
        text_ = dotted(v.rawBuffer());
        std::string name = names_.name(v.rawBuffer());
        if (!name.empty())
            text_ += " (" + name + ")";
    }
    void visit(Types::LocalTag const & v) override { text_ = narrow(v.toString()); }
    void visit(Types::Reference const & v) override
    {
        reference_ = &v;
        text_ = uuid(v.rawBuffer());
    }
    void visit(Types::SimpleDataType const & v) override
    {
        unsigned const size = v.serializedSize();
        text_ = "0x" + hexBytes(v.rawBuffer(), size < SHOWN_BYTES ? size : SHOWN_BYTES, "");
        if (size > SHOWN_BYTES)
            text_ += "... (" + std::to_string(size) + " bytes)";
    }
    void visit(Types::Collection const & v) override
    {
        std::string all = "[";
        for (unsigned i = 0; i < v.size(); ++i)
        {
            ValueText member(names_);
            v.at(i).accept(member);
            all += (i != 0 ? ", " : "") + member.text();
        }
        text_ = all + "]";
    }

private:
    LabelNames const & names_;
    std::string text_;
    Types::SimpleDataType const * reference_;
};

// ---------------------------------------------------------------------------------------------
// The tree

struct Node;

struct Item
{
    std::string name;
    // "", "misplaced" or "unknown tag xx.xx".
    std::string invalid;
    std::string value;
    // The sets that strong references lead to, in order.
    std::vector<Node> children;
    bool collection = false;
};

struct Node
{
    std::string className;
    std::string key;
    std::string instanceUID;
    std::vector<Item> items;
    // A strong reference back to a set already shown.
    bool repeated = false;
};

// The class of a structural set, or the dictionary's name of a plain one.
class ClassName : public Metadata::Visitors::MetadataSetVisitor
{
public:
    void visit(MetadataSet const & set) override
    {
        MetaMetadata::MetaMetadataSet const * description = set.metaMetadataSet();
        name = description ? propertyName(*description) : std::string();
        if (name.empty())
            name = description ? "MetadataSet" : "DarkParsedGroup";
    }
#define VELLUM_CLASS_NAME_VISIT(Class, Base)                                                      \
    void visit(Metadata::Structural::Class const &) override { name = #Class; }
    VELLUM_STRUCTURAL_SET_CLASSES(VELLUM_CLASS_NAME_VISIT)
#undef VELLUM_CLASS_NAME_VISIT

    std::string name;
};

// What an invalid element's attribute says of it.
class InvalidKind : public MetaMetadata::AbstractMetaAttributeVisitor
{
public:
    void visit(MetaMetadata::UnknownAttribute const & attribute) override
    {
        text = "unknown tag " + narrow(attribute.localTag().toString());
    }
    void visit(MetaMetadata::MisplacedAttribute const &) override { text = "misplaced"; }
    void visit(MetaMetadata::MetaAttribute const &) override { text = "invalid"; }

    std::string text;
};

class TreeBuilder
{
public:
    TreeBuilder(PartitionMetadata const & metadata, LabelNames const & names) : metadata_(metadata), names_(names) {}

    Node build(MetadataSet const & set)
    {
        Node node;
        ClassName className;
        set.accept(className);
        node.className = className.name;
        node.key = dotted(set.key());
        Types::UUID const * uid = set.instanceUID();
        if (uid)
            node.instanceUID = uuid(*uid);
        if (!shown_.insert(&set).second)
        {
            node.repeated = true;
            return node;
        }
        for (MetadataSet::const_iterator i = set.begin(); i != set.end(); ++i)
            if (!i->second->empty())
                node.items.push_back(item(*i->second, false));
        for (Metadata::Element * const * i = set.invalidBegin(); i != set.invalidEnd(); ++i)
            node.items.push_back(item(**i, true));
        return node;
    }

    bool shown(MetadataSet const * set) const { return shown_.count(set) != 0; }

private:
    Item item(Metadata::Element const & element, bool invalid)
    {
        Item item;
        MetaMetadata::MetaElement const * meta =
            MetaMetadata::Helpers::abstractMetaAttributeToMetaElement(element.metaAttribute());
        item.name = meta ? propertyName(*meta) : std::string();
        if (item.name.empty())
            item.name = meta ? dotted(meta->universalLabel().rawBuffer()) : "<unknown>";
        if (invalid)
        {
            InvalidKind kind;
            element.metaAttribute()->accept(kind);
            item.invalid = kind.text;
        }
        ElementValue value;
        element.accept(value);
        if (value.single)
            describe(*value.single, item);
        else if (value.collection)
        {
            item.collection = true;
            std::string all = "[";
            for (unsigned i = 0; i < value.collection->size(); ++i)
            {
                Item member;
                describe(value.collection->at(i), member);
                all += (i != 0 ? ", " : "") + member.value;
                item.children.insert(item.children.end(), member.children.begin(), member.children.end());
            }
            item.value = all + "]";
        }
        return item;
    }

    void describe(Types::SimpleDataType const & value, Item & item)
    {
        ValueText text(names_);
        value.accept(text);
        item.value = text.text();
        if (!text.reference() || !Types::Visitors::getAs<Types::StrongReference>(value))
            return;
        Templates::vector<MetadataSet *> found =
            metadata_.find(Metadata::MetadataULs::instanceUID(), Types::UUID(value.rawBuffer()));
        if (found.empty())
            item.value += " (missing)";
        else
            item.children.push_back(build(*found.front()));
    }

    // The value object of an element of any kind.
    class ElementValue : public Metadata::Visitors::ElementVisitor
    {
    public:
        void visit(Metadata::BatchReferenceElement const & e) override { collection = e.value(); }
        void visit(Metadata::ArrayReferenceElement const & e) override { collection = e.value(); }
        void visit(Metadata::ReferenceElement const & e) override { single = e.value(); }
        void visit(Metadata::BatchElement const & e) override { collection = e.value(); }
        void visit(Metadata::ArrayElement const & e) override { collection = e.value(); }
        void visit(Metadata::SimpleElement const & e) override { single = e.value(); }

        Types::SimpleDataType const * single = nullptr;
        Types::Collection const * collection = nullptr;
    };

    PartitionMetadata const & metadata_;
    LabelNames const & names_;
    std::set<MetadataSet const *> shown_;
};

// ---------------------------------------------------------------------------------------------
// Output

void printText(Node const & node, unsigned depth, std::string const & mark)
{
    std::string indent(2 * depth, ' ');
    std::printf("%s%s%s [%s]%s\n", indent.c_str(), mark.c_str(), node.className.c_str(),
                node.instanceUID.empty() ? "no instance UID" : node.instanceUID.c_str(),
                node.repeated ? " (shown above)" : "");
    for (Item const & item : node.items)
    {
        std::string label = item.name;
        if (!item.invalid.empty())
            label = "!" + label + " (" + item.invalid + ")";
        std::printf("%s  %s: %s\n", indent.c_str(), label.c_str(), item.value.c_str());
        for (Node const & child : item.children)
            printText(child, depth + 2, "");
    }
}

nlohmann::ordered_json nodeJson(Node const & node)
{
    nlohmann::ordered_json json{{"class", node.className},
                                {"key", node.key},
                                {"instanceUID", node.instanceUID.empty() ? nlohmann::ordered_json()
                                                                         : nlohmann::ordered_json(node.instanceUID)}};
    if (node.repeated)
        json["repeated"] = true;
    json["elements"] = nlohmann::ordered_json::array();
    for (Item const & item : node.items)
    {
        nlohmann::ordered_json element{{"name", item.name}, {"value", item.value}};
        if (!item.invalid.empty())
            element["invalid"] = item.invalid;
        for (Node const & child : item.children)
            element["sets"].push_back(nodeJson(child));
        json["elements"].push_back(element);
    }
    return json;
}

// ---------------------------------------------------------------------------------------------
// Reading

struct Loaded
{
    std::unique_ptr<PartitionMetadata> metadata;
    // Sets that could not be read, with the reason.
    std::vector<std::string> skipped;
};

// Whether the packet ends the header metadata that began at `primer` and counts `count` bytes.
bool behindHeaderMetadata(MXFIO::PacketPlace const & place, std::uint64_t primer, std::uint64_t count)
{
    if (count != 0 && place.offset >= primer + count)
        return true;
    return place.kind == MXFIO::PacketKind::PartitionPack || place.kind == MXFIO::PacketKind::EssenceElement ||
           place.kind == MXFIO::PacketKind::IndexSegment || place.kind == MXFIO::PacketKind::Primer;
}

void loadSet(Loaded & loaded, MXFIO::PacketPlace const & place, KLV::Packet & packet)
{
    try
    {
        loaded.metadata->load(packet);
    }
    catch (Exceptions::BaseException const & e)
    {
        loaded.skipped.push_back(dotted(place.key) + " at " + std::to_string(place.offset) + ": " + reason(e));
    }
}

// Reads the header partition pack, the Primer and the header metadata behind it: HeaderByteCount
// bytes counted from the Primer's key.
Loaded load(std::string const & path, Templates::SharedPtr<MetaMetadata::Dictionary> const & dictionary)
{
    Loaded loaded;
    DataIO::File::FileDataSource source(Utils::wide(path.c_str()).c_str(), 1 << 20);
    MXFIO::PacketWalk walk(source);
    Templates::auto_ptr<KLV::Packet> first = walk.next();
    if (!first || walk.place().kind != MXFIO::PacketKind::PartitionPack || walk.place().key[13] != 0x02)
        VELLUM_THROW(NotFound, "the file does not begin with a header partition pack");
    std::uint64_t const count = Packs::PartitionPack(*first).headerByteCount();
    std::uint64_t primer = 0;
    while (Templates::auto_ptr<KLV::Packet> packet = walk.next())
    {
        MXFIO::PacketPlace const & place = walk.place();
        if (walk.valueCutShort())
            VELLUM_THROW(InvalidFormat, "a packet of the header metadata runs past the end of the file");
        if (loaded.metadata && behindHeaderMetadata(place, primer, count))
            break;
        if (place.kind == MXFIO::PacketKind::FillItem)
            continue;
        if (place.kind != MXFIO::PacketKind::Primer && !loaded.metadata)
            break;
        if (place.kind != MXFIO::PacketKind::Primer)
        {
            loadSet(loaded, place, *packet);
            continue;
        }
        primer = place.offset;
        Templates::auto_ptr<Packs::PrimerPack> pack(new Packs::PrimerPack(*packet));
        loaded.metadata.reset(new PartitionMetadata(Templates::auto_ptr<Metadata::PartitionDictionary>(
            new Metadata::PartitionDictionary(dictionary, std::move(pack)))));
    }
    if (!loaded.metadata)
        VELLUM_THROW(NotFound, "the header partition has no Primer");
    return loaded;
}

struct MetaOptions
{
    std::string path;
    bool json = false;
};

// What the metadata shows: the trees from the Prefaces, the orphans, the dark sets.
struct Forest
{
    std::vector<Node> roots, orphans;
    std::vector<std::string> dark;
};

// Sets that the Prefaces do not reach. Each is shown under an unreached parent if it has one, so
// only the tops of the unreached trees stand at the first level.
std::vector<Node> orphansOf(PartitionMetadata const & metadata, TreeBuilder & builder)
{
    std::vector<MetadataSet const *> unreached;
    for (PartitionMetadata::const_iterator i = metadata.begin(); i != metadata.end(); ++i)
        if (!builder.shown(i->second))
            unreached.push_back(i->second);
    std::set<MetadataSet const *> const unreachedSet(unreached.begin(), unreached.end());
    std::vector<Node> orphans;
    for (MetadataSet const * set : unreached)
    {
        Templates::vector<MetadataSet const *> parents;
        metadata.parentSets(set, parents);
        bool underAnother = false;
        for (MetadataSet const * parent : parents)
            underAnother = underAnother || (parent != set && unreachedSet.count(parent) != 0);
        if (!underAnother)
            orphans.push_back(builder.build(*set));
    }
    for (MetadataSet const * set : unreached)
        if (!builder.shown(set))
            orphans.push_back(builder.build(*set));
    return orphans;
}

Forest forestOf(PartitionMetadata const & metadata, LabelNames const & names)
{
    Forest forest;
    TreeBuilder builder(metadata, names);
    for (MetadataSet * preface : metadata.find(Metadata::Structural::StructuralMetadataKeys::preface()))
        forest.roots.push_back(builder.build(*preface));
    forest.orphans = orphansOf(metadata, builder);
    for (PartitionMetadata::const_dark_iterator i = metadata.darkBegin(); i != metadata.darkEnd(); ++i)
        forest.dark.push_back(dotted((*i)->key()) + " (" + std::to_string((*i)->serializedSize()) + " bytes)");
    return forest;
}

void printForestJson(MetaOptions const & options, std::uint64_t sets, Forest const & forest,
                     std::vector<std::string> const & skipped)
{
    nlohmann::ordered_json root{{"file", options.path}, {"sets", sets}};
    root["prefaces"] = nlohmann::ordered_json::array();
    for (Node const & node : forest.roots)
        root["prefaces"].push_back(nodeJson(node));
    root["orphans"] = nlohmann::ordered_json::array();
    for (Node const & node : forest.orphans)
        root["orphans"].push_back(nodeJson(node));
    root["dark"] = forest.dark;
    root["skipped"] = skipped;
    printJson(root);
}

void printForestText(MetaOptions const & options, std::uint64_t sets, Forest const & forest,
                     std::vector<std::string> const & skipped)
{
    std::printf("file: %s\nsets: %llu\n", options.path.c_str(), static_cast<unsigned long long>(sets));
    if (forest.roots.empty())
        std::printf("no Preface\n");
    for (Node const & root : forest.roots)
        printText(root, 0, "");
    if (!forest.orphans.empty())
        std::printf("orphans: %zu\n", forest.orphans.size());
    for (Node const & orphan : forest.orphans)
        printText(orphan, 1, "orphan ");
    if (!forest.dark.empty())
        std::printf("dark sets: %zu\n", forest.dark.size());
    for (std::string const & d : forest.dark)
        std::printf("  dark %s\n", d.c_str());
    for (std::string const & s : skipped)
        std::printf("skipped set %s\n", s.c_str());
}

int meta(MetaOptions const & options)
{
    try
    {
        Metadata::Structural::initialize();
        Templates::SharedPtr<MetaMetadata::Dictionary> dictionary = MetaMetadata::createStandardDictionary();
        Loaded loaded = load(options.path, dictionary);
        LabelNames names(*dictionary);
        Forest const forest = forestOf(*loaded.metadata, names);
        if (options.json)
            printForestJson(options, loaded.metadata->size(), forest, loaded.skipped);
        else
            printForestText(options, loaded.metadata->size(), forest, loaded.skipped);
    }
    catch (Exceptions::BaseException const & e)
    {
        return fileFailure(options.path, e);
    }
    return 0;
}
} // namespace

Command addMetaCommand(CLI::App & program)
{
    auto options = std::make_shared<MetaOptions>();
    CLI::App * command = program.add_subcommand("meta", "the header metadata as a tree from the Preface down");
    command->add_option("FILE", options->path, "the MXF file")->required();
    command->add_flag("--json", options->json, "print the tree as JSON");
    return Command{command, [options] { return meta(*options); }};
}
} // namespace VellumTool
