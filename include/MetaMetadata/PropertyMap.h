#pragma once
// Free annotations of a schema object: 16-bit text keys to 16-bit text values, ordered by key.

#include "Platform/MallocAlloc.h"
#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"

namespace Vellum
{
namespace MetaMetadata
{
class PropertyMap
{
public:
    VELLUM_CLASS_ALLOCATION
    typedef Templates::basic_string<unsigned short> String;
    typedef Templates::map<String, String> Properties;
    typedef Properties::const_iterator const_iterator;

    PropertyMap();
    PropertyMap(PropertyMap const & other);
    // Copies the whole map.
    virtual PropertyMap & operator=(PropertyMap const & other);
    virtual ~PropertyMap();

    // Sets the property, replacing a value that is there.
    virtual void addProperty(unsigned short const * name, unsigned short const * value);
    // The value, owned by the map; a name that is not there throws NotFound
    // "Property not found: <name>".
    virtual unsigned short const * getProperty(unsigned short const * name) const;

    const_iterator propertiesBegin() const;
    const_iterator propertiesEnd() const;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};

// Same size and, in order, equal pairs.
bool operator==(PropertyMap const & a, PropertyMap const & b);
bool operator!=(PropertyMap const & a, PropertyMap const & b);
} // namespace MetaMetadata
} // namespace Vellum
