#pragma once
// What the array and the batch of references share beyond their generic implementation.

#include "MetaMetadata/MetaCollectionElement.h"
#include "Metadata/ElementSupport.h"
#include "Types/SimpleDataType.h"

namespace Vellum
{
namespace Metadata
{
namespace CollectionReferences
{
// A member as a reference; another value, which only a collection set with an odd member can
// hold, throws InvalidType.
Types::Reference const & member(Types::SimpleDataType const & value);
// The reference's own type must be the schema's member type; `classText` names the element
// class in the message.
void checkMemberType(MetaMetadata::MetaCollectionElement const * description, Types::Reference const * reference,
                     char const * classText);
} // namespace CollectionReferences
} // namespace Metadata
} // namespace Vellum
