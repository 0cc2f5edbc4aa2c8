#include "MetaMetadata/Dictionary.h"

#include <utility>

#include "Exceptions/Exceptions.h"

namespace Vellum
{
namespace MetaMetadata
{
struct Dictionary::Impl
{
    VELLUM_CLASS_ALLOCATION
    LocalTagToLabel tagToLabel;
    LabelToLocalTag labelToTag;
    LabelToMetaElement elements;
    KeyToMetaMetadataSet sets;
};

namespace
{
// Replaces the entry under `key`, or makes one.
template <class Map, class Value>
void replace(Map & map, typename Map::key_type const & key, Value const & value)
{
    typename Map::iterator at = map.lower_bound(key);
    if (at != map.end() && !(key < at->first))
        map.erase(at++);
    map.insert(at, typename Map::value_type(key, value));
}

template <class Map>
typename Map::mapped_type const * lookUp(Map const & map, typename Map::key_type const & key)
{
    typename Map::const_iterator found = map.find(key);
    return found == map.end() ? nullptr : &found->second;
}

// Whether the object has the property `name` with exactly the text `value`. A missing property
// is no match.
bool hasProperty(PropertyMap const & object, unsigned short const * name, PropertyMap::String const & value)
{
    try
    {
        return PropertyMap::String(object.getProperty(name)) == value;
    }
    catch (Exceptions::NotFound const &)
    {
        return false;
    }
}
} // namespace

Dictionary::Dictionary() : LocalTagMap(), UniversalLabelMap(), impl_(new Impl) {}

Dictionary::~Dictionary() = default;

void Dictionary::add(Types::LocalTag const & tag, Types::UniversalLabel const & label)
{
    replace(impl_->tagToLabel, tag, label);
    replace(impl_->labelToTag, label, tag);
}

Types::LocalTag const * Dictionary::find(Types::UniversalLabel const & label) const
{
    return lookUp(impl_->labelToTag, label);
}

Types::UniversalLabel const * Dictionary::find(Types::LocalTag const & tag) const
{
    return lookUp(impl_->tagToLabel, tag);
}

void Dictionary::add(KLV::Key const & key, MetaMetadataSet const & set) { replace(impl_->sets, key, set); }

MetaMetadataSet const * Dictionary::find(KLV::Key const & key) const { return lookUp(impl_->sets, key); }

void Dictionary::add(Types::UniversalLabel const & label, Templates::auto_ptr<MetaElement> element)
{
    LabelToMetaElement::iterator at = impl_->elements.lower_bound(label);
    if (at != impl_->elements.end() && !(label < at->first))
        impl_->elements.erase(at++);
    impl_->elements.insert(at, LabelToMetaElement::value_type(label, std::move(element)));
}

MetaElement const * Dictionary::findMetaElement(Types::UniversalLabel const & label) const
{
    LabelToMetaElement::const_iterator found = impl_->elements.find(label);
    return found == impl_->elements.end() ? nullptr : found->second.get();
}

Templates::vector<MetaMetadataSet const *> Dictionary::findMetaMetadataSetProperty(unsigned short const * name,
                                                                                   unsigned short const * value) const
{
    PropertyMap::String wanted(value);
    Templates::vector<MetaMetadataSet const *> found;
    for (KeyToMetaMetadataSet::const_iterator i = impl_->sets.begin(); i != impl_->sets.end(); ++i)
        if (hasProperty(i->second, name, wanted))
            found.push_back(&i->second);
    return found;
}

Templates::vector<MetaElement const *> Dictionary::findMetaElementProperty(unsigned short const * name,
                                                                           unsigned short const * value) const
{
    PropertyMap::String wanted(value);
    Templates::vector<MetaElement const *> found;
    for (LabelToMetaElement::const_iterator i = impl_->elements.begin(); i != impl_->elements.end(); ++i)
        if (hasProperty(*i->second, name, wanted))
            found.push_back(i->second.get());
    return found;
}

Templates::vector<MetaMetadataSet const *> Dictionary::findMetaMetadataSetWithMetaAtributeProperty(
    unsigned short const * name, unsigned short const * value) const
{
    PropertyMap::String wanted(value);
    Templates::vector<MetaMetadataSet const *> found;
    for (KeyToMetaMetadataSet::const_iterator i = impl_->sets.begin(); i != impl_->sets.end(); ++i)
        for (MetaMetadataSet::const_iterator a = i->second.metaAttributesBegin(); a != i->second.metaAttributesEnd(); ++a)
            if (hasProperty(*a->second, name, wanted))
                found.push_back(&i->second);
    return found;
}

Dictionary::LocalTagToLabel::const_iterator Dictionary::localTag2ULBegin() const { return impl_->tagToLabel.begin(); }

Dictionary::LocalTagToLabel::const_iterator Dictionary::localTag2ULEnd() const { return impl_->tagToLabel.end(); }

Dictionary::LabelToMetaElement::const_iterator Dictionary::metaElementBegin() const { return impl_->elements.begin(); }

Dictionary::LabelToMetaElement::const_iterator Dictionary::metaElementEnd() const { return impl_->elements.end(); }

Dictionary::KeyToMetaMetadataSet::const_iterator Dictionary::metaMetadataSetBegin() const { return impl_->sets.begin(); }

Dictionary::KeyToMetaMetadataSet::const_iterator Dictionary::metaMetadataSetEnd() const { return impl_->sets.end(); }
} // namespace MetaMetadata
} // namespace Vellum
