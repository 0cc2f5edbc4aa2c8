// vellum dict [SET]: the sets of the built-in dictionary with their keys, or the attributes of
// one set with their labels, static tags, types, required status and reference targets.

#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "Commands.h"
#include "MetaMetadata/AttributeRequiredStatus.h"
#include "MetaMetadata/MetaCollectionElement.h"
#include "MetaMetadata/MetaReferenceHolder.h"
#include "MetaMetadata/StandardDictionary.h"
#include "Types/Identifiers.h"
#include "Utils/Text.h"

namespace VellumTool
{
namespace
{
using namespace Vellum;
using MetaMetadata::Dictionary;
using MetaMetadata::MetaMetadataSet;

std::string text(unsigned short const * value) { return Utils::narrow(value).c_str(); }

std::string nameOf(MetaMetadata::PropertyMap const & object)
{
    for (MetaMetadata::PropertyMap::const_iterator i = object.propertiesBegin(); i != object.propertiesEnd(); ++i)
        if (i->first == Utils::wide("name"))
            return text(i->second.c_str());
    return "<unknown>";
}

std::string lower(std::string s)
{
    for (char & c : s)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return s;
}

std::string typeOf(MetaMetadata::MetaElement const & element)
{
    std::string type = text(Types::Identifiers::identifierToString(element.dataType()));
    MetaMetadata::Visitors::GetMetaElementVisitor<MetaMetadata::MetaCollectionElement> collection;
    element.accept(collection);
    if (collection.value() != nullptr)
        type += " of " + text(Types::Identifiers::identifierToString(collection.value()->dataSubType()));
    return type;
}

std::string targetsOf(Dictionary const & dictionary, MetaMetadata::MetaElement const & element)
{
    MetaMetadata::Visitors::GetMetaElementVisitor<MetaMetadata::MetaReferenceHolder> holder;
    element.accept(holder);
    if (holder.value() == nullptr)
        return std::string();
    std::string targets;
    for (KLV::Key const & key : holder.value()->allowedMetadataSets())
    {
        MetaMetadataSet const * set = dictionary.find(key);
        targets += (targets.empty() ? "" : ", ") +
                   (set != nullptr ? nameOf(*set) : text(key.toString(Types::Dotted).c_str()));
    }
    return targets;
}

int listSets(Dictionary const & dictionary)
{
    unsigned count = 0;
    for (Dictionary::KeyToMetaMetadataSet::const_iterator i = dictionary.metaMetadataSetBegin();
         i != dictionary.metaMetadataSetEnd(); ++i, ++count)
        std::printf("%s  %s\n", text(i->first.toString(Types::Dotted).c_str()).c_str(), nameOf(i->second).c_str());
    std::printf("%u sets; registers: %s\n", count, MetaMetadata::standardDictionarySnapshot());
    return 0;
}

int listSet(Dictionary const & dictionary, MetaMetadataSet const & set)
{
    std::printf("%s  %s  %u attributes\n", nameOf(set).c_str(), text(set.key().toString(Types::Dotted).c_str()).c_str(),
                set.metaAttributeCount());
    for (MetaMetadataSet::const_iterator i = set.metaAttributesBegin(); i != set.metaAttributesEnd(); ++i)
    {
        MetaMetadata::MetaAttribute const & attribute = *i->second;
        MetaMetadata::MetaElement const & element = attribute.metaElement();
        std::string tag = attribute.staticLocalTag() != nullptr
                              ? text(Utils::hexadecimal(attribute.staticLocalTag()->value(), 4).c_str())
                              : std::string("-");
        std::string status = text(MetaMetadata::AttributeRequiredStatus::instance().statusToName(attribute.requiredStatus()));
        std::string targets = targetsOf(dictionary, element);
        std::printf("  %s  %-4s  %-3s  %-40s  %s%s%s\n", text(i->first.toString(Types::Dotted).c_str()).c_str(),
                    tag.c_str(), status.c_str(), nameOf(element).c_str(), typeOf(element).c_str(),
                    targets.empty() ? "" : " -> ", targets.c_str());
    }
    return 0;
}

// By name, exactly or else ignoring case, or by key in dotted form.
int showSet(Dictionary const & dictionary, std::string const & wanted)
{
    std::vector<MetaMetadataSet const *> exact, folded;
    for (Dictionary::KeyToMetaMetadataSet::const_iterator i = dictionary.metaMetadataSetBegin();
         i != dictionary.metaMetadataSetEnd(); ++i)
    {
        std::string name = nameOf(i->second);
        if (name == wanted || text(i->first.toString(Types::Dotted).c_str()) == lower(wanted))
            exact.push_back(&i->second);
        else if (lower(name) == lower(wanted))
            folded.push_back(&i->second);
    }
    std::vector<MetaMetadataSet const *> const & found = exact.empty() ? folded : exact;
    if (found.size() == 1)
        return listSet(dictionary, *found[0]);
    if (found.empty())
        std::fprintf(stderr, "vellum dict: no set named '%s'\n", wanted.c_str());
    else
    {
        std::fprintf(stderr, "vellum dict: '%s' names several sets:", wanted.c_str());
        for (MetaMetadataSet const * set : found)
            std::fprintf(stderr, " %s", nameOf(*set).c_str());
        std::fprintf(stderr, "\n");
    }
    return 1;
}
} // namespace

Command addDictCommand(CLI::App & program)
{
    auto wanted = std::make_shared<std::string>();
    CLI::App * command = program.add_subcommand("dict", "the sets of the built-in dictionary, or one set's attributes");
    command->add_option("SET", *wanted, "a set's name (case does not matter) or key");
    return Command{command, [wanted] {
                       Templates::SharedPtr<Dictionary> dictionary = MetaMetadata::createStandardDictionary();
                       return wanted->empty() ? listSets(*dictionary) : showSet(*dictionary, *wanted);
                   }};
}
} // namespace VellumTool
