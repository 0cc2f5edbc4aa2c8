#include "Metadata/CollectionReferences.h"

#include "Exceptions/Exceptions.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace Metadata
{
namespace CollectionReferences
{
Types::Reference const & member(Types::SimpleDataType const & value)
{
    Types::Reference const * reference = ElementSupport::asReference(value);
    if (reference == nullptr)
        VELLUM_THROW(InvalidType, "The member is not a reference");
    return *reference;
}

void checkMemberType(MetaMetadata::MetaCollectionElement const * description, Types::Reference const * reference,
                     char const * classText)
{
    if (description == nullptr || reference == nullptr)
        return;
    Types::Identifiers::Identifier const type = ElementSupport::identifierOf(*reference);
    if (type != description->dataSubType())
        VELLUM_THROW(InvalidChange, Utils::wide("Trying to set a ") + ElementSupport::typeName(type) + Utils::wide(" ") +
                                        Utils::wide(classText) + ElementSupport::typeName(description->dataSubType()));
}
} // namespace CollectionReferences
} // namespace Metadata
} // namespace Vellum
