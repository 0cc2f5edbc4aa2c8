// vellum meta FILE [--json]: the header metadata of the header partition as a tree from the
// Preface down by strong references: each set with its class, instance UID and elements; invalid
// elements, dark sets and orphans marked.

#include <cstdio>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "Commands.h"
#include "DataIO/File/FileDataSource.h"
#include "Exceptions/Exceptions.h"
#include "JsonValue.h"
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

// A run-in is at most 64 KiB long.
uint64 const MAXIMUM_RUN_IN = 65535;
// Opaque values are shown up to this many bytes.
unsigned const SHOWN_BYTES = 32;

std::string narrow(Templates::wstring const & text) { return Utils::narrow(text).c_str(); }
std::string narrow(unsigned short const * text) { return Utils::narrow(text).c_str(); }

std::string hexBytes(unsigned char const * bytes, unsigned size, char const * separator)
{
    static char const digits[] = "0123456789abcdef";
    std::string text;
    for (unsigned i = 0; i < size; ++i)
    {
        if (i != 0)
            text += separator;
        text += digits[bytes[i] >> 4];
        text += digits[bytes[i] & 15];
    }
    return text;
}

std::string dotted(unsigned char const * bytes) { return hexBytes(bytes, 16, "."); }

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

std::string twoDigits(unsigned value)
{
    char buffer[8];
    std::snprintf(buffer, sizeof buffer, "%02u", value % 100);
    return buffer;
}

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
    void visit(Types::Timestamp const & v) override
    {
        char buffer[48];
        std::snprintf(buffer, sizeof buffer, "%04u-%s-%sT%s:%s:%s.%03uZ", unsigned(v.year()),
                      twoDigits(v.month()).c_str(), twoDigits(v.day()).c_str(), twoDigits(v.hour()).c_str(),
                      twoDigits(v.minute()).c_str(), twoDigits(v.second()).c_str(), unsigned(v.milliSecond()));
        text_ = buffer;
    }
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
    void visit(Types::ProductVersion const & v) override
    {
        text_ = std::to_string(v.major()) + "." + std::to_string(v.minor()) + "." + std::to_string(v.patch()) + "." +
                std::to_string(v.build()) + "." + std::to_string(static_cast<int>(v.releaseVersion()));
    }
    void visit(Types::UUID const & v) override { text_ = "urn:uuid:" + narrow(v.toString(Types::RFC4122)); }
    void visit(Types::UMID32 const & v) override { text_ = "urn:smpte:umid:" + hexBytes(v.rawBuffer(), 32, ""); }
    void visit(Types::UMID64 const & v) override { text_ = "urn:smpte:umid:" + hexBytes(v.rawBuffer(), 64, ""); }
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
        text_ = "urn:uuid:" + narrow(Types::UUID(v.rawBuffer()).toString(Types::RFC4122));
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
        node.key = dotted(set.key().rawBuffer());
        Types::UUID const * uid = set.instanceUID();
        if (uid)
            node.instanceUID = "urn:uuid:" + narrow(uid->toString(Types::RFC4122));
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

std::string json(std::string const & text) { return JsonValue::quote(text); }

void printJson(Node const & node, std::string const & indent)
{
    std::string inner = indent + "  ";
    std::printf("{\n%s\"class\": %s,\n%s\"key\": %s,\n%s\"instanceUID\": %s", inner.c_str(),
                json(node.className).c_str(), inner.c_str(), json(node.key).c_str(), inner.c_str(),
                node.instanceUID.empty() ? "null" : json(node.instanceUID).c_str());
    if (node.repeated)
        std::printf(",\n%s\"repeated\": true", inner.c_str());
    std::printf(",\n%s\"elements\": [", inner.c_str());
    for (size_t i = 0; i < node.items.size(); ++i)
    {
        Item const & item = node.items[i];
        std::string member = inner + "  ";
        std::printf("%s\n%s{\"name\": %s, \"value\": %s", i != 0 ? "," : "", member.c_str(), json(item.name).c_str(),
                    json(item.value).c_str());
        if (!item.invalid.empty())
            std::printf(", \"invalid\": %s", json(item.invalid).c_str());
        if (!item.children.empty())
        {
            std::printf(", \"sets\": [");
            for (size_t c = 0; c < item.children.size(); ++c)
            {
                std::printf("%s\n%s  ", c != 0 ? "," : "", member.c_str());
                printJson(item.children[c], member + "  ");
            }
            std::printf("\n%s]", member.c_str());
        }
        std::printf("}");
    }
    std::printf("%s]\n%s}", node.items.empty() ? "" : ("\n" + inner).c_str(), indent.c_str());
}

// ---------------------------------------------------------------------------------------------
// Reading

struct Loaded
{
    std::unique_ptr<PartitionMetadata> metadata;
    // Sets that could not be read, with the reason.
    std::vector<std::string> skipped;
};

// Reads the header partition pack, the Primer and the header metadata behind it.
Loaded load(std::string const & path, Templates::SharedPtr<MetaMetadata::Dictionary> const & dictionary)
{
    Loaded loaded;
    Templates::wstring widePath = Utils::wide(path.c_str());
    DataIO::File::FileDataSource source(widePath.c_str(), 1 << 20);
    uint64 const fileSize = source.remaining();
    KLV::Reader reader(source);
    uint64 skipped = 0;
    Templates::auto_ptr<KLV::Packet> first = reader.nextKLV(skipped, MAXIMUM_RUN_IN);
    if (!Packs::isPartitionPack(first->key()) || first->key()[13] != 0x02)
        VELLUM_THROW(NotFound, "the file does not begin with a header partition pack");
    Packs::PartitionPack const pack(*first);
    uint64 const headerEnd = first->keyAbsoluteOffset() + first->klvLength() + pack.headerByteCount();
    first.reset();

    while (!source.endOfStream())
    {
        uint64 here = 0;
        Templates::auto_ptr<KLV::Packet> packet = reader.nextKLV(skipped, 0);
        here = packet->keyAbsoluteOffset();
        if (packet->klvLength() > fileSize - here)
            VELLUM_THROW(InvalidFormat, "a packet of the header metadata runs past the end of the file");
        if (loaded.metadata && pack.headerByteCount() != 0 && here >= headerEnd)
            break;
        KLV::Key const key = packet->key();
        if (KLV::isFillItem(key))
            continue;
        if (Packs::isPrimerPack(key))
        {
            if (loaded.metadata)
                break;
            Templates::auto_ptr<Packs::PrimerPack> primer(new Packs::PrimerPack(*packet));
            loaded.metadata.reset(new PartitionMetadata(Templates::auto_ptr<Metadata::PartitionDictionary>(
                new Metadata::PartitionDictionary(dictionary, std::move(primer)))));
            continue;
        }
        if (!loaded.metadata || Packs::isPartitionPack(key) || KLV::isEssence(key) || KLV::isIndexTableKlvSegment(key))
            break;
        try
        {
            loaded.metadata->load(*packet);
        }
        catch (Exceptions::BaseException const & e)
        {
            loaded.skipped.push_back(dotted(key.rawBuffer()) + " at " + std::to_string(here) + ": " +
                                     Utils::narrow(e.message()).c_str());
        }
    }
    if (!loaded.metadata)
        VELLUM_THROW(NotFound, "the header partition has no Primer");
    return loaded;
}
} // namespace

int metaCommand(Arguments const & arguments)
{
    std::string path;
    bool asJson = false;
    for (std::string const & argument : arguments)
    {
        if (argument == "--json")
            asJson = true;
        else if (path.empty() && argument.compare(0, 2, "--") != 0)
            path = argument;
        else
        {
            std::fprintf(stderr, "usage: vellum meta FILE [--json]\n");
            return 2;
        }
    }
    if (path.empty())
    {
        std::fprintf(stderr, "usage: vellum meta FILE [--json]\n");
        return 2;
    }

    try
    {
        Metadata::Structural::initialize();
        Templates::SharedPtr<MetaMetadata::Dictionary> dictionary = MetaMetadata::createStandardDictionary();
        Loaded loaded = load(path, dictionary);
        PartitionMetadata const & metadata = *loaded.metadata;
        LabelNames names(*dictionary);
        TreeBuilder builder(metadata, names);

        std::vector<Node> roots;
        Templates::vector<MetadataSet *> prefaces = metadata.find(Metadata::Structural::StructuralMetadataKeys::preface());
        for (MetadataSet * preface : prefaces)
            roots.push_back(builder.build(*preface));
        // Sets that the Prefaces do not reach. Each is shown under an unreached parent if it has
        // one, so only the tops of the unreached trees stand at the first level.
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
        std::vector<std::string> dark;
        for (PartitionMetadata::const_dark_iterator i = metadata.darkBegin(); i != metadata.darkEnd(); ++i)
            dark.push_back(dotted((*i)->key().rawBuffer()) + " (" + std::to_string((*i)->serializedSize()) + " bytes)");

        if (asJson)
        {
            std::printf("{\n  \"file\": %s,\n  \"sets\": %llu,\n  \"prefaces\": [", json(path).c_str(),
                        static_cast<unsigned long long>(metadata.size()));
            for (size_t i = 0; i < roots.size(); ++i)
            {
                std::printf("%s\n    ", i != 0 ? "," : "");
                printJson(roots[i], "    ");
            }
            std::printf("%s],\n  \"orphans\": [", roots.empty() ? "" : "\n  ");
            for (size_t i = 0; i < orphans.size(); ++i)
            {
                std::printf("%s\n    ", i != 0 ? "," : "");
                printJson(orphans[i], "    ");
            }
            std::printf("%s],\n  \"dark\": [", orphans.empty() ? "" : "\n  ");
            for (size_t i = 0; i < dark.size(); ++i)
                std::printf("%s%s", i != 0 ? ", " : "", json(dark[i]).c_str());
            std::printf("],\n  \"skipped\": [");
            for (size_t i = 0; i < loaded.skipped.size(); ++i)
                std::printf("%s%s", i != 0 ? ", " : "", json(loaded.skipped[i]).c_str());
            std::printf("]\n}\n");
        }
        else
        {
            std::printf("file: %s\nsets: %llu\n", path.c_str(), static_cast<unsigned long long>(metadata.size()));
            if (roots.empty())
                std::printf("no Preface\n");
            for (Node const & root : roots)
                printText(root, 0, "");
            if (!orphans.empty())
            {
                std::printf("orphans: %zu\n", orphans.size());
                for (Node const & orphan : orphans)
                    printText(orphan, 1, "orphan ");
            }
            if (!dark.empty())
            {
                std::printf("dark sets: %zu\n", dark.size());
                for (std::string const & d : dark)
                    std::printf("  dark %s\n", d.c_str());
            }
            for (std::string const & s : loaded.skipped)
                std::printf("skipped set %s\n", s.c_str());
        }
    }
    catch (Exceptions::BaseException const & e)
    {
        std::fprintf(stderr, "vellum meta: %s\n", e.whatUtf8().c_str());
        return 1;
    }
    return 0;
}
} // namespace VellumTool
