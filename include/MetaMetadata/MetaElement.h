#pragma once
// What a value is, whichever set holds it: its label and its type.

#include "MetaMetadata/MetaElementVisitor.h"
#include "MetaMetadata/PropertyMap.h"
#include "Templates/AutoPtr.h"
#include "Types/Identifiers.h"

namespace Vellum
{
namespace Types
{
class UniversalLabel;
} // namespace Types

namespace MetaMetadata
{
class MetaElement : public PropertyMap
{
public:
    VELLUM_CLASS_ALLOCATION
    MetaElement(Types::UniversalLabel const & label, Types::Identifiers::Identifier dataType);
    MetaElement(MetaElement const & other);
    virtual MetaElement & operator=(MetaElement const & other);
    ~MetaElement() override;

    Types::UniversalLabel const & universalLabel() const;
    Types::Identifiers::Identifier dataType() const;

    virtual void accept(Visitors::NonConstMetaElementVisitor & visitor) = 0;
    virtual void accept(Visitors::MetaElementVisitor & visitor) const = 0;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};

// Same dataType, same label, equal properties.
bool operator==(MetaElement const & a, MetaElement const & b);
bool operator!=(MetaElement const & a, MetaElement const & b);
} // namespace MetaMetadata
} // namespace Vellum
