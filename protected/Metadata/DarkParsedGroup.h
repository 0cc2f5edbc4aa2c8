#pragma once
// A local set whose key the dictionary does not describe: no valid elements, every item it held
// on the invalid list.

#include "Metadata/MetadataSet.h"

namespace Vellum
{
namespace Metadata
{
class DarkParsedGroup : public MetadataSet
{
public:
    VELLUM_CLASS_ALLOCATION
    DarkParsedGroup(KLV::Key const & key, MetadataSetOwner * owner);
    ~DarkParsedGroup() override;
};
} // namespace Metadata
} // namespace Vellum
