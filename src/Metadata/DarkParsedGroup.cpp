// A local set with no description: everything it holds is on the invalid list.

#include "Metadata/DarkParsedGroup.h"

namespace Vellum
{
namespace Metadata
{
DarkParsedGroup::DarkParsedGroup(KLV::Key const & key, MetadataSetOwner * owner) : MetadataSet(key, nullptr, owner) {}

DarkParsedGroup::~DarkParsedGroup() {}
} // namespace Metadata
} // namespace Vellum
