#include "Metadata/ReferenceHolder.h"

#include "Exceptions/Exceptions.h"
#include "MetaMetadata/MetaElement.h"
#include "MetaMetadata/MetaReferenceHolder.h"
#include "Metadata/MetadataSet.h"
#include "Types/UniversalLabel.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace Metadata
{
namespace
{
MetaMetadata::MetaReferenceHolder const * holderOf(MetaMetadata::MetaElement const * element)
{
    if (element == nullptr)
        return nullptr;
    MetaMetadata::Visitors::GetMetaElementVisitor<MetaMetadata::MetaReferenceHolder> visitor;
    element->accept(visitor);
    return visitor.value();
}
} // namespace

ReferenceHolder::ReferenceHolder(MetaMetadata::MetaElement const * element)
    : metaElement_(element), metaReferenceHolder_(holderOf(element))
{
}

void ReferenceHolder::checkIfSetCanBeReferenced(MetadataSet const * target) const
{
    if (target == nullptr)
        VELLUM_THROW(InvalidValue, "No set to refer to");
    KLV::Key const & key = target->key();
    MetaMetadata::MetaReferenceHolder::Keys allowed;
    if (metaReferenceHolder_ != nullptr)
        allowed = metaReferenceHolder_->allowedMetadataSets();
    for (KLV::Key const & candidate : allowed)
        if (candidate == key)
            return;

    Templates::wstring message = Utils::wide("ReferenceElement with UL ");
    if (metaElement_ != nullptr)
        message += metaElement_->universalLabel().toString();
    message += Utils::wide(" cannot reference set with key '") + key.toString(Types::TypeDefault) +
               Utils::wide("'. Must reference one of: ");
    for (KLV::Key const & candidate : allowed)
        message += Utils::wide("[") + candidate.toString(Types::TypeDefault) + Utils::wide("]");
    VELLUM_THROW(MetadataSetReferenceNotAllowed, message);
}
} // namespace Metadata
} // namespace Vellum
