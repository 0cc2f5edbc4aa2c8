#pragma once
// Makes the metadata set factory build the structural classes.

namespace Vellum
{
namespace Metadata
{
namespace Structural
{
// Registers with MetadataSetFactory::instance() a creator for each key of StructuralMetadataKeys
// that has a class of its own; the sets of the other keys stay plain MetadataSets. Run once at
// start-up; later calls do nothing.
void initialize();
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
