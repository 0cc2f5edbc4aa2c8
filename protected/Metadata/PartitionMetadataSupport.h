#pragma once
// Small questions that the partition metadata and its listeners ask of elements and sets.

#include "Templates/Containers.h"

namespace Vellum
{
namespace KLV
{
class Key;
} // namespace KLV

namespace MetaMetadata
{
class MetaElement;
} // namespace MetaMetadata

namespace Types
{
class BaseType;
class Reference;
class UniversalLabel;
} // namespace Types

namespace Metadata
{
class Element;
class MetadataSet;
class PartitionMetadata;

namespace Support
{
// The value of any element class, or null when it is empty.
Types::BaseType const * elementValue(Element const & element);
// The description behind the element's attribute; null for an UnknownAttribute.
MetaMetadata::MetaElement const * elementMetaElement(Element const & element);
// The label of the element's description, or the null label for an UnknownAttribute.
Types::UniversalLabel const & elementLabel(Element const & element);
// The first set with the instance UID that `reference` names, or null.
MetadataSet * referencedSet(PartitionMetadata const & metadata, Types::Reference const & reference);
// The first set of a key, or null.
MetadataSet * firstSet(PartitionMetadata const & metadata, KLV::Key const & key);
// The strong reference held by a single reference element of `set` under `label`, or null
// when the set has no such element or it is empty.
Types::Reference const * singleReference(MetadataSet const & set, Types::UniversalLabel const & label);
// Whether the set's key is that of a Material or a Source Package.
bool isGenericPackage(MetadataSet const & set);
bool isPreface(MetadataSet const & set);

// Reports "Assertion failed: <condition>: <message> (<file>:<line>)" on the standard error and
// ends the process: the caller's use of the library was wrong.
[[noreturn]] void assertionFailed(char const * condition, char const * message, char const * file, int line);
} // namespace Support
} // namespace Metadata
} // namespace Vellum

#define VELLUM_METADATA_ASSERT(condition, message)                                                        \
    do                                                                                            \
    {                                                                                             \
        if (!(condition))                                                                         \
            ::Vellum::Metadata::Support::assertionFailed(#condition, message, __FILE__, __LINE__); \
    } while (false)
