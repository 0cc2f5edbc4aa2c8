#pragma once
// An element as a member of one kind of set: its description, whether it is required, the value
// that stands for "not known" and the statically assigned local tag.

#include "MetaMetadata/AbstractMetaAttribute.h"
#include "MetaMetadata/AttributeRequiredStatus.h"
#include "MetaMetadata/PropertyMap.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace Types
{
class BaseType;
class LocalTag;
} // namespace Types

namespace MetaMetadata
{
class MetaElement;

class MetaAttribute : public AbstractMetaAttribute, public PropertyMap
{
public:
    VELLUM_CLASS_ALLOCATION
    // The element is not owned and must outlive the attribute. The distinguished value is
    // taken over; the tag, if any, is copied.
    MetaAttribute(MetaElement const & element, AttributeRequiredStatus::Status requiredStatus,
                  Templates::auto_ptr<Types::BaseType const> distinguishedValue, Types::LocalTag const * staticLocalTag);
    ~MetaAttribute() override;

    MetaElement const & metaElement() const;
    AttributeRequiredStatus::Status requiredStatus() const;
    // Null when there is none.
    Types::BaseType const * getDistinguishedValue() const;
    // Null when the attribute has no statically assigned tag.
    Types::LocalTag const * staticLocalTag() const;

    void accept(AbstractMetaAttributeVisitor & visitor) const override;

private:
    MetaAttribute(MetaAttribute const &) = delete;
    MetaAttribute & operator=(MetaAttribute const &) = delete;

    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};

// Same element object, same status, a tag equal to the left one's if the left has one, equal
// properties. The distinguished value is not compared.
bool operator==(MetaAttribute const & a, MetaAttribute const & b);
bool operator!=(MetaAttribute const & a, MetaAttribute const & b);
} // namespace MetaMetadata
} // namespace Vellum
