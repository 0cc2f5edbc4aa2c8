// Every set of the RegXML rendering of each sample is found in the header metadata that the
// library reads from the sample, by its instance UID, with equal values for the elements that
// both know.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "Metadata/Structural/HeaderLoading.h"

#include "MetaMetadata/Helpers.h"
#include "MetaMetadata/MetaMetadataSet.h"
#include "Metadata/ArrayElement.h"
#include "Metadata/ArrayReferenceElement.h"
#include "Metadata/BatchElement.h"
#include "Metadata/BatchReferenceElement.h"
#include "Metadata/ReferenceElement.h"
#include "Metadata/Structural/StructuralClasses.h"
#include "Types/Boolean.h"
#include "Types/Collection.h"
#include "Types/ISO7String.h"
#include "Types/Integers.h"
#include "Types/ProductVersion.h"
#include "Types/Rational.h"
#include "Types/References.h"
#include "Types/Timestamp.h"
#include "Types/UMID.h"
#include "Types/UTF16String.h"
#include "Types/UniversalLabel.h"
#include "Types/VersionType.h"
#include "Types/Visitors.h"

using namespace Vellum;
using namespace Vellum::StructuralTest;

namespace
{
// The rendering as a tree of elements with their local names and, for leaves, their text. The
// XML is parsed by python3, which lists every element as depth, name and escaped text; the
// rendering writes characters that XML cannot hold as "$#xHH;".

struct XmlNode
{
    std::string name;
    std::string text;
    std::vector<std::unique_ptr<XmlNode>> children;

    XmlNode const * child(std::string const & local) const
    {
        for (auto const & c : children)
            if (c->name == local)
                return c.get();
        return nullptr;
    }
};

char const LIST_ELEMENTS[] = R"(import re, sys, xml.etree.ElementTree as ET
sys.stdout.reconfigure(encoding='utf-8')
def walk(e, depth):
    kids = list(e)
    text = '' if kids else re.sub(r'\$#x([0-9a-fA-F]+);', lambda m: chr(int(m.group(1), 16)), e.text or '')
    text = text.replace('\\', '\\\\').replace('\n', '\\n').replace('\t', '\\t')
    sys.stdout.write('%d\t%s\t%s\n' % (depth, e.tag.split('}')[-1], text))
    for k in kids:
        walk(k, depth + 1)
walk(ET.parse(sys.argv[1]).getroot(), 0)
)";

std::string unescape(std::string const & text)
{
    std::string out;
    for (size_t i = 0; i < text.size(); ++i)
        if (text[i] == '\\' && i + 1 < text.size())
        {
            char const c = text[++i];
            out += c == 'n' ? '\n' : c == 't' ? '\t' : c;
        }
        else
            out += text[i];
    return out;
}

std::unique_ptr<XmlNode> readRendering(std::string const & path)
{
    std::string const script = VellumTest::temporaryPath(".py");
    std::ofstream(script) << LIST_ELEMENTS;
    FILE * pipe = ::popen(("python3 '" + script + "' '" + path + "'").c_str(), "r");
    std::string listing;
    char buffer[1 << 16];
    for (size_t got; pipe && (got = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;)
        listing.append(buffer, got);
    if (pipe)
        ::pclose(pipe);
    std::remove(script.c_str());
    std::unique_ptr<XmlNode> root;
    std::vector<XmlNode *> open;
    std::istringstream lines(listing);
    for (std::string line; std::getline(lines, line);)
    {
        size_t const tab = line.find('\t'), second = line.find('\t', tab + 1);
        size_t const depth = std::stoul(line.substr(0, tab));
        std::unique_ptr<XmlNode> node(new XmlNode{line.substr(tab + 1, second - tab - 1), unescape(line.substr(second + 1)), {}});
        open.resize(depth);
        XmlNode * made = node.get();
        if (depth == 0)
            root = std::move(node);
        else
            open.back()->children.push_back(std::move(node));
        open.push_back(made);
    }
    return root;
}

// ---------------------------------------------------------------------------------------------
// Values in the text forms of the rendering

std::string hex(unsigned char const * bytes, unsigned size, unsigned group)
{
    static char const digits[] = "0123456789abcdef";
    std::string text;
    for (unsigned i = 0; i < size; ++i)
    {
        if (i != 0 && i % group == 0)
            text += '.';
        text += digits[bytes[i] >> 4];
        text += digits[bytes[i] & 15];
    }
    return text;
}

std::string uuidText(unsigned char const * b)
{
    std::string h = hex(b, 16, 16);
    return "urn:uuid:" + h.substr(0, 8) + "-" + h.substr(8, 4) + "-" + h.substr(12, 4) + "-" + h.substr(16, 4) + "-" +
           h.substr(20);
}

std::string two(unsigned value)
{
    char buffer[8];
    std::snprintf(buffer, sizeof buffer, "%02u", value);
    return buffer;
}

// The text that the rendering gives a value of these types; empty for any other type.
class RegXmlText : public Types::Visitors::NullVisitor
{
public:
    std::string text;

    void visit(Types::UUID const & v) override { text = uuidText(v.rawBuffer()); }
    void visit(Types::StrongReference const & v) override { text = uuidText(v.rawBuffer()); }
    void visit(Types::WeakReference const & v) override { text = uuidText(v.rawBuffer()); }
    void visit(Types::UMID32 const & v) override { text = "urn:smpte:umid:" + hex(v.rawBuffer(), 32, 4); }
    // An AUID whose first byte has its high bit clear is a label; any other is a UUID with its two
    // halves swapped.
    void visit(Types::UniversalLabel const & v) override
    {
        unsigned char const * b = v.rawBuffer();
        if ((b[0] & 0x80) == 0)
        {
            text = "urn:smpte:ul:" + hex(b, 16, 4);
            return;
        }
        unsigned char swapped[16];
        for (unsigned i = 0; i < 16; ++i)
            swapped[i] = b[(i + 8) % 16];
        text = uuidText(swapped);
    }
    void visit(Types::Int8 const & v) override { text = std::to_string(int(v.value())); }
    void visit(Types::Int16 const & v) override { text = std::to_string(v.value()); }
    void visit(Types::Int32 const & v) override { text = std::to_string(v.value()); }
    void visit(Types::Int64 const & v) override { text = std::to_string(v.value()); }
    void visit(Types::UInt8 const & v) override { text = std::to_string(unsigned(v.value())); }
    void visit(Types::UInt16 const & v) override { text = std::to_string(v.value()); }
    void visit(Types::UInt32 const & v) override { text = std::to_string(v.value()); }
    void visit(Types::UInt64 const & v) override { text = std::to_string(v.value()); }
    void visit(Types::Length const & v) override { text = std::to_string(v.value()); }
    void visit(Types::Position const & v) override { text = std::to_string(v.value()); }
    void visit(Types::Boolean const & v) override { text = v.value() ? "True" : "False"; }
    void visit(Types::Rational const & v) override
    {
        text = std::to_string(v.numerator()) + "/" + std::to_string(v.denominator());
    }
    void visit(Types::VersionType const & v) override
    {
        text = std::to_string(v.major()) + "." + std::to_string(v.minor());
    }
    void visit(Types::Timestamp const & v) override
    {
        text = std::to_string(v.year()) + "-" + two(v.month()) + "-" + two(v.day()) + "T" + two(v.hour()) + ":" +
               two(v.minute()) + ":" + two(v.second());
        if (v.milliSecond() != 0)
        {
            char buffer[8];
            std::snprintf(buffer, sizeof buffer, ".%03u", unsigned(v.milliSecond()));
            text += buffer;
        }
        text += "Z";
    }
    void visit(Types::UTF16String const & v) override { text = n(v.value()); }
    void visit(Types::ISO7String const & v) override { text = v.value(); }
};

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

std::string propertyName(MetaMetadata::PropertyMap const & object)
{
    for (auto i = object.propertiesBegin(); i != object.propertiesEnd(); ++i)
        if (i->first == w("name"))
            return n(i->second);
    return std::string();
}

std::string elementName(Metadata::Element const & element)
{
    MetaMetadata::MetaElement const * meta = MetaMetadata::Helpers::abstractMetaAttributeToMetaElement(element.metaAttribute());
    return meta ? propertyName(*meta) : std::string();
}

bool isSet(XmlNode const & node) { return node.child("InstanceID") != nullptr; }

char const * const BUILD_TYPES[] = {"VersionUnknown", "VersionReleased", "VersionDebug", "VersionPatched",
                                    "VersionBeta", "VersionPrivateBuild"};

// ---------------------------------------------------------------------------------------------
// The comparison

class Comparison
{
public:
    explicit Comparison(Metadata::PartitionMetadata const & metadata) : sets(0), values(0), metadata_(metadata) {}

    void compareAll(XmlNode const & node)
    {
        if (isSet(node))
            compareSet(node);
        for (auto const & child : node.children)
            compareAll(*child);
    }

    std::vector<std::string> failures;
    // How often each element was compared, by its register symbol.
    std::map<std::string, unsigned> compared;
    unsigned sets;
    unsigned values;

private:
    void fail(std::string const & what) { failures.push_back(what); }

    Metadata::MetadataSet * findSet(std::string const & uid)
    {
        Types::UUID const wanted(w(uid.substr(9).c_str()).c_str(), Types::RFC4122);
        Templates::vector<Metadata::MetadataSet *> found = metadata_.find(Metadata::MetadataULs::instanceUID(), wanted);
        return found.empty() ? nullptr : found.front();
    }

    void compareSet(XmlNode const & node)
    {
        std::string const uid = node.child("InstanceID")->text;
        Metadata::MetadataSet * set = findSet(uid);
        if (!set)
        {
            fail(node.name + " " + uid + " not found");
            return;
        }
        ++sets;
        MetaMetadata::MetaMetadataSet const * description = set->metaMetadataSet();
        if (!description || propertyName(*description) != node.name)
            fail(uid + ": " + node.name + " read as " + (description ? propertyName(*description) : "an unknown set"));

        std::map<std::string, Metadata::Element const *> elements;
        for (auto i = set->begin(); i != set->end(); ++i)
            elements[elementName(*i->second)] = i->second;
        for (auto i = set->invalidBegin(); i != set->invalidEnd(); ++i)
            if (!elementName(**i).empty())
                elements.insert(std::make_pair(elementName(**i), *i));

        for (auto const & property : node.children)
        {
            auto found = elements.find(property->name);
            if (found == elements.end())
                continue;
            compareProperty(uid + " " + node.name + "." + property->name, *property, *found->second);
        }
    }

    void compareProperty(std::string const & where, XmlNode const & property, Metadata::Element const & element)
    {
        ElementValue value;
        element.accept(value);
        if (!value.single && !value.collection)
        {
            fail(where + ": empty, the rendering has a value");
            return;
        }
        if (value.collection)
        {
            std::vector<std::string> ours, theirs;
            for (unsigned i = 0; i < value.collection->size(); ++i)
            {
                RegXmlText text;
                value.collection->at(i).accept(text);
                ours.push_back(text.text);
            }
            for (auto const & member : property.children)
                theirs.push_back(isSet(*member) ? member->child("InstanceID")->text : member->text);
            if (!ours.empty() && ours.front().empty())
                return;
            count(property.name);
            if (ours != theirs)
                fail(where + ": " + std::to_string(ours.size()) + " members against " + std::to_string(theirs.size()) +
                     (ours.empty() || theirs.empty() ? std::string() : ", first " + ours.front() + " against " + theirs.front()));
            return;
        }
        if (Types::ProductVersion const * version = Types::Visitors::getAs<Types::ProductVersion>(*value.single))
        {
            compareVersion(where, property, *version);
            return;
        }
        RegXmlText text;
        value.single->accept(text);
        if (text.text.empty())
            return;
        std::string theirs = property.text;
        if (!property.children.empty() && isSet(*property.children.front()))
            theirs = property.children.front()->child("InstanceID")->text;
        else if (Types::Visitors::getAs<Types::WeakReference>(*value.single))
        {
            // A weak reference is rendered by the unique identifier of its target.
            Metadata::MetadataSet * target = findSet(text.text);
            if (theirs.compare(0, 15, "urn:smpte:umid:") == 0 && target)
            {
                Metadata::Structural::GenericPackage const * package =
                    Metadata::Structural::metadataSetAs<Metadata::Structural::GenericPackage>(target);
                RegXmlText umid;
                if (package && package->packageUID())
                    package->packageUID()->accept(umid);
                text.text = umid.text;
            }
            else if (theirs.compare(0, 9, "urn:uuid:") != 0)
                return;
        }
        else if (Types::Visitors::getAs<Types::Boolean>(*value.single) == nullptr && !theirs.empty() &&
                 text.text[0] >= '0' && text.text[0] <= '9' && !(theirs[0] == '-' || (theirs[0] >= '0' && theirs[0] <= '9')))
            return; // an enumeration rendered by its name
        count(property.name);
        if (text.text != theirs)
            fail(where + ": " + text.text + " against " + theirs);
    }

    void compareVersion(std::string const & where, XmlNode const & property, Types::ProductVersion const & version)
    {
        char const * const parts[] = {"Major", "Minor", "Tertiary", "PatchLevel"};
        unsigned const ours[] = {version.major(), version.minor(), version.patch(), version.build()};
        for (unsigned i = 0; i < 4; ++i)
        {
            XmlNode const * part = property.child(parts[i]);
            if (part && part->text != std::to_string(ours[i]))
                fail(where + "." + parts[i] + ": " + std::to_string(ours[i]) + " against " + part->text);
        }
        XmlNode const * build = property.child("BuildType");
        unsigned const release = static_cast<unsigned>(version.releaseVersion());
        if (build && release < 6 && build->text != BUILD_TYPES[release])
            fail(where + ".BuildType: " + BUILD_TYPES[release] + " against " + build->text);
        count(property.name);
    }

    void count(std::string const & name)
    {
        ++compared[name];
        ++values;
    }

    Metadata::PartitionMetadata const & metadata_;
};

} // namespace

TEST(StructuralRegXml, EverySetOfTheRenderingIsReadWithEqualValues)
{
    VELLUM_REQUIRE_SHARED();
    if (std::system("command -v python3 >/dev/null 2>&1") != 0)
        GTEST_SKIP() << "python3 is not installed";
    std::vector<std::string> const samples = VellumTest::sampleFiles();
    ASSERT_FALSE(samples.empty());
    std::map<std::string, unsigned> compared;
    for (std::string const & sample : samples)
    {
        SCOPED_TRACE(sample);
        std::string const rendering = sample.substr(0, sample.size() - 4) + ".regxml.xml";
        std::unique_ptr<XmlNode> root = readRendering(rendering);
        ASSERT_TRUE(root && root->name == "Preface") << rendering;

        LoadedHeader loaded = loadHeader(sample);
        ASSERT_TRUE(loaded.metadata.get() != nullptr);
        Comparison comparison(*loaded.metadata);
        comparison.compareAll(*root);
        for (std::string const & failure : comparison.failures)
            ADD_FAILURE() << failure;
        EXPECT_GT(comparison.sets, 10u);
        EXPECT_GT(comparison.values, 2 * comparison.sets);
        for (auto const & c : comparison.compared)
            compared[c.first] += c.second;
    }
    // What the comparison must have covered, over all the samples.
    for (char const * symbol :
         {"InstanceID", "PackageID", "TrackID", "EssenceTrackNumber", "EditRate", "Origin", "ComponentLength",
          "StartPosition", "SourcePackageID", "SourceTrackID", "ComponentDataDefinition", "ContainerFormat",
          "EssenceContainers", "OperationalPattern", "LinkedTrackID", "SampleRate", "ChannelCount",
          "QuantizationBits", "AudioSampleRate", "StoredWidth", "StoredHeight", "EssenceLength",
          "ApplicationSupplierName", "ApplicationName", "ApplicationVersionString", "ApplicationPlatform",
          "ApplicationVersion", "FileLastModified", "FormatVersion", "Packages", "PackageTracks",
          "ComponentObjects", "EssenceStreamID", "IndexStreamID", "LinkedPackageID", "PrimaryPackage",
          "FramesPerSecond", "StartTimecode", "DropFrame", "PackageName", "TrackName"})
        EXPECT_GT(compared[symbol], 0u) << symbol;
}
