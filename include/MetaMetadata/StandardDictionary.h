#pragma once
// The dictionary of the published SMPTE registers: every header metadata set with all its
// members, every element they use, and the statically assigned local tags.

#include "MetaMetadata/Dictionary.h"
#include "Templates/SharedPtr.h"

namespace Vellum
{
namespace MetaMetadata
{
// A new dictionary, filled from the built-in tables. Each set's description holds the
// attributes of its parent classes; a member that the register marks not optional is Required,
// any other Optional. Every element has the property "name" (its register symbol) and every
// attribute the property "RequiresSemanticsValidation", empty.
Templates::SharedPtr<Dictionary> createStandardDictionary();

// The register files the tables were made from, with their hashes.
char const * standardDictionarySnapshot();
} // namespace MetaMetadata
} // namespace Vellum
