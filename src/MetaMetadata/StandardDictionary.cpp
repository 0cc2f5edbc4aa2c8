// The built-in dictionary, made from the tables that tools/generate_dictionary.py writes from the
// SMPTE metadata registers.

#include "MetaMetadata/StandardDictionary.h"

#include "Exceptions/Exceptions.h"
#include "MetaMetadata/MetaAttribute.h"
#include "MetaMetadata/MetaCollection.h"
#include "MetaMetadata/MetaReferenceCollection.h"
#include "MetaMetadata/MetaReferenceElement.h"
#include "MetaMetadata/MetaSimpleElement.h"
#include "Types/LocalTag.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace MetaMetadata
{
namespace StandardTables
{
enum ElementKind
{
    SimpleKind,
    ReferenceKind,
    CollectionKind,
    ReferenceCollectionKind
};

struct TypeRow
{
    char const * label;
    char const * symbol;
};

struct ElementRow
{
    char const * label;
    char const * symbol;
    char const * name;
    unsigned short type;
    ElementKind kind;
    unsigned char dataType;
    unsigned char dataSubType;
    unsigned short firstTarget;
    unsigned short targetCount;
};

struct MemberRow
{
    unsigned short element;
    unsigned short tag;
    unsigned char optional;
};

struct SetRow
{
    char const * key;
    char const * symbol;
    char const * name;
    unsigned char concrete;
    unsigned int firstMember;
    unsigned int memberCount;
    int parent;
};

#include "StandardDictionaryTables.inc"

template <class T, unsigned N>
constexpr unsigned countOf(T const (&)[N])
{
    return N;
}
} // namespace StandardTables

namespace
{
using namespace StandardTables;

unsigned char hexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return static_cast<unsigned char>(c - '0');
    return static_cast<unsigned char>(c - 'a' + 10);
}

// The 16 bytes written in the table as 32 hexadecimal digits.
void parseLabel(char const * hex, unsigned char (&bytes)[16])
{
    for (unsigned i = 0; i < 16; ++i)
        bytes[i] = static_cast<unsigned char>(hexDigit(hex[2 * i]) << 4 | hexDigit(hex[2 * i + 1]));
}

Types::UniversalLabel labelOf(char const * hex)
{
    unsigned char bytes[16];
    parseLabel(hex, bytes);
    return Types::UniversalLabel(bytes);
}

KLV::Key keyOf(char const * hex)
{
    unsigned char bytes[16];
    parseLabel(hex, bytes);
    return KLV::Key(bytes);
}

Templates::auto_ptr<MetaElement> makeElement(ElementRow const & row, Templates::vector<KLV::Key> const & setKeys)
{
    Types::UniversalLabel label = labelOf(row.label);
    Types::Identifiers::Identifier dataType = static_cast<Types::Identifiers::Identifier>(row.dataType);
    Types::Identifiers::Identifier dataSubType = static_cast<Types::Identifiers::Identifier>(row.dataSubType);
    MetaReferenceHolder::Keys allowed;
    allowed.reserve(row.targetCount);
    for (unsigned i = 0; i < row.targetCount; ++i)
        allowed.push_back(setKeys[targetIndexes[row.firstTarget + i]]);
    switch (row.kind)
    {
    case ReferenceKind:
        return Templates::auto_ptr<MetaElement>(new MetaReferenceElement(label, allowed, dataType));
    case CollectionKind:
        return Templates::auto_ptr<MetaElement>(
            new MetaCollection(label, MetaCollectionElement::CollectionSizeLimits(), dataType, dataSubType));
    case ReferenceCollectionKind:
        return Templates::auto_ptr<MetaElement>(new MetaReferenceCollection(
            label, MetaCollectionElement::CollectionSizeLimits(), allowed, dataType, dataSubType));
    case SimpleKind:
    default:
        return Templates::auto_ptr<MetaElement>(new MetaSimpleElement(label, dataType));
    }
}
} // namespace

Templates::SharedPtr<Dictionary> createStandardDictionary()
{
    Templates::SharedPtr<Dictionary> dictionary(new Dictionary);
    Templates::wstring const nameProperty = Utils::wide("name");
    Templates::wstring const semanticsProperty = Utils::wide("RequiresSemanticsValidation");
    Templates::wstring const empty;

    Templates::vector<KLV::Key> setKeys;
    setKeys.reserve(countOf(setRows));
    for (SetRow const & row : setRows)
        setKeys.push_back(keyOf(row.key));

    // Elements first: the attributes of the sets point at them.
    Templates::vector<MetaElement const *> elements;
    elements.reserve(countOf(elementRows));
    for (ElementRow const & row : elementRows)
    {
        Templates::auto_ptr<MetaElement> element = makeElement(row, setKeys);
        element->addProperty(nameProperty.c_str(), Utils::wide(row.symbol).c_str());
        elements.push_back(element.get());
        Types::UniversalLabel const label = element->universalLabel();
        dictionary->add(label, std::move(element));
    }

    for (unsigned s = 0; s < countOf(setRows); ++s)
    {
        SetRow const & row = setRows[s];
        MetaMetadataSet set(setKeys[s]);
        set.addProperty(nameProperty.c_str(), Utils::wide(row.symbol).c_str());
        Templates::vector<KLV::Key> ancestors;
        for (int p = row.parent; p >= 0 && ancestors.size() < countOf(setRows); p = setRows[p].parent)
            ancestors.push_back(setKeys[unsigned(p)]);
        set.ancestors(ancestors);
        for (unsigned m = row.firstMember; m < row.firstMember + row.memberCount; ++m)
        {
            MemberRow const & member = memberRows[m];
            MetaElement const & element = *elements[member.element];
            Types::LocalTag const tag(member.tag);
            Templates::SharedPtr<MetaAttribute> attribute(new MetaAttribute(
                element, member.optional ? AttributeRequiredStatus::Optional : AttributeRequiredStatus::Required,
                Templates::auto_ptr<Types::BaseType const>(), member.tag != 0 ? &tag : nullptr));
            attribute->addProperty(semanticsProperty.c_str(), empty.c_str());
            set.addMetaAttribute(attribute);
            if (member.tag != 0)
                dictionary->add(tag, element.universalLabel());
        }
        dictionary->add(setKeys[s], set);
    }

    for (unsigned m = tagOnlyMembersBegin; m < tagOnlyMembersEnd; ++m)
        if (memberRows[m].tag != 0)
            dictionary->add(Types::LocalTag(memberRows[m].tag), elements[memberRows[m].element]->universalLabel());
    return dictionary;
}

char const * standardDictionarySnapshot() { return registerSnapshot; }
} // namespace MetaMetadata
} // namespace Vellum
