#include "MetaMetadata/PropertyMap.h"

#include "Exceptions/Exceptions.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace MetaMetadata
{
struct PropertyMap::Impl
{
    VELLUM_CLASS_ALLOCATION
    Properties properties;
};

PropertyMap::PropertyMap() : impl_(new Impl) {}

PropertyMap::PropertyMap(PropertyMap const & other) : impl_(new Impl(*other.impl_)) {}

PropertyMap & PropertyMap::operator=(PropertyMap const & other)
{
    if (this != &other)
    {
        Properties copy(other.impl_->properties);
        impl_->properties.swap(copy);
    }
    return *this;
}

PropertyMap::~PropertyMap() = default;

void PropertyMap::addProperty(unsigned short const * name, unsigned short const * value)
{
    String key(name);
    String text(value);
    Properties::iterator found = impl_->properties.find(key);
    if (found != impl_->properties.end())
        found->second.swap(text);
    else
        impl_->properties.insert(Properties::value_type(key, text));
}

unsigned short const * PropertyMap::getProperty(unsigned short const * name) const
{
    Properties::const_iterator found = impl_->properties.find(String(name));
    if (found == impl_->properties.end())
        VELLUM_THROW(NotFound, Utils::wide("Property not found: ") + name);
    return found->second.c_str();
}

PropertyMap::const_iterator PropertyMap::propertiesBegin() const { return impl_->properties.begin(); }

PropertyMap::const_iterator PropertyMap::propertiesEnd() const { return impl_->properties.end(); }

bool operator==(PropertyMap const & a, PropertyMap const & b)
{
    PropertyMap::const_iterator i = a.propertiesBegin();
    PropertyMap::const_iterator j = b.propertiesBegin();
    for (; i != a.propertiesEnd() && j != b.propertiesEnd(); ++i, ++j)
        if (i->first != j->first || i->second != j->second)
            return false;
    return i == a.propertiesEnd() && j == b.propertiesEnd();
}

bool operator!=(PropertyMap const & a, PropertyMap const & b) { return !(a == b); }
} // namespace MetaMetadata
} // namespace Vellum
