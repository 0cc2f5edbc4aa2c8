#pragma once
// A value that the dictionary knows, found in a set whose description does not hold it.

#include "MetaMetadata/AbstractMetaAttribute.h"

namespace Vellum
{
namespace MetaMetadata
{
class MetaElement;

class MisplacedAttribute : public AbstractMetaAttribute
{
public:
    VELLUM_CLASS_ALLOCATION
    // The element is not owned and must outlive the attribute.
    explicit MisplacedAttribute(MetaElement const & element);
    MisplacedAttribute(MisplacedAttribute const & other);
    MisplacedAttribute & operator=(MisplacedAttribute const & other);
    ~MisplacedAttribute() override;

    MetaElement const & metaElement() const;

    void accept(AbstractMetaAttributeVisitor & visitor) const override;

private:
    MetaElement const * element_;
};

// The same element object.
bool operator==(MisplacedAttribute const & a, MisplacedAttribute const & b);
bool operator!=(MisplacedAttribute const & a, MisplacedAttribute const & b);
} // namespace MetaMetadata
} // namespace Vellum
