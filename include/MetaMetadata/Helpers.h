#pragma once
// Small questions asked of schema objects.

#include "MetaMetadata/AbstractMetaAttribute.h"
#include "Templates/SharedPtr.h"

namespace Vellum
{
namespace MetaMetadata
{
class MetaElement;

namespace Helpers
{
// The element behind a MetaAttribute or a MisplacedAttribute; null for an UnknownAttribute.
MetaElement const * abstractMetaAttributeToMetaElement(Templates::SharedPtr<AbstractMetaAttribute const> attribute);
} // namespace Helpers
} // namespace MetaMetadata
} // namespace Vellum
