#include "MetaMetadata/MetaMetadataSet.h"

#include "Exceptions/Exceptions.h"
#include "MetaMetadata/MetaElement.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace MetaMetadata
{
struct MetaMetadataSet::Impl
{
    VELLUM_CLASS_ALLOCATION
    explicit Impl(KLV::Key const & k) : key(k) {}
    KLV::Key key;
    Attributes attributes;
    Templates::vector<KLV::Key> ancestors;
};

MetaMetadataSet::MetaMetadataSet(KLV::Key const & key) : PropertyMap(), impl_(new Impl(key)) {}

MetaMetadataSet::MetaMetadataSet(MetaMetadataSet const & other) : PropertyMap(other), impl_(new Impl(*other.impl_))
{
}

MetaMetadataSet & MetaMetadataSet::operator=(MetaMetadataSet const & other)
{
    if (this != &other)
    {
        Attributes copy(other.impl_->attributes);
        Templates::vector<KLV::Key> ancestors(other.impl_->ancestors);
        PropertyMap::operator=(other);
        impl_->key = other.impl_->key;
        impl_->attributes.swap(copy);
        impl_->ancestors.swap(ancestors);
    }
    return *this;
}

MetaMetadataSet::~MetaMetadataSet() = default;

KLV::Key const & MetaMetadataSet::key() const { return impl_->key; }

void MetaMetadataSet::addMetaAttribute(Templates::SharedPtr<MetaAttribute> attribute)
{
    Types::UniversalLabel const & label = attribute->metaElement().universalLabel();
    Attributes::iterator at = impl_->attributes.lower_bound(label);
    if (at != impl_->attributes.end() && !(label < at->first))
        VELLUM_THROW(AlreadySet, Utils::wide("A MetaAttribute with UL ") + label.toString() +
                                     Utils::wide(" already exists in this MetaMetadataSet\n"));
    impl_->attributes.insert(at, Attributes::value_type(label, attribute));
}

Templates::SharedPtr<MetaAttribute> MetaMetadataSet::findMetaAttribute(Types::UniversalLabel const & label) const
{
    Attributes::const_iterator found = impl_->attributes.find(label);
    if (found == impl_->attributes.end())
        return Templates::SharedPtr<MetaAttribute>();
    return found->second;
}

unsigned int MetaMetadataSet::metaAttributeCount() const { return static_cast<unsigned int>(impl_->attributes.size()); }

MetaMetadataSet::const_iterator MetaMetadataSet::metaAttributesBegin() const { return impl_->attributes.begin(); }

MetaMetadataSet::const_iterator MetaMetadataSet::metaAttributesEnd() const { return impl_->attributes.end(); }

void MetaMetadataSet::ancestors(Templates::vector<KLV::Key> const & keys)
{
    impl_->ancestors = keys;
}

Templates::vector<KLV::Key> const & MetaMetadataSet::ancestors() const
{
    return impl_->ancestors;
}

bool operator==(MetaMetadataSet const & a, MetaMetadataSet const & b)
{
    if (a.key() != b.key() || a.metaAttributeCount() != b.metaAttributeCount())
        return false;
    MetaMetadataSet::const_iterator j = b.metaAttributesBegin();
    for (MetaMetadataSet::const_iterator i = a.metaAttributesBegin(); i != a.metaAttributesEnd(); ++i, ++j)
        if (!(*i->second == *j->second))
            return false;
    return static_cast<PropertyMap const &>(a) == static_cast<PropertyMap const &>(b);
}

bool operator!=(MetaMetadataSet const & a, MetaMetadataSet const & b) { return !(a == b); }
} // namespace MetaMetadata
} // namespace Vellum
