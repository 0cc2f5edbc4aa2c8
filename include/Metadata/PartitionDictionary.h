#pragma once
// The local tags of one partition: the global schema with its statically assigned tags, and the
// partition's Primer. Resolves tags when reading and hands out dynamic tags when writing.

#include "Platform/MallocAlloc.h"
#include "Templates/AutoPtr.h"
#include "Templates/SharedPtr.h"

namespace Vellum
{
namespace MetaMetadata
{
class Dictionary;
} // namespace MetaMetadata

namespace Packs
{
class PrimerPack;
} // namespace Packs

namespace Types
{
class LocalTag;
class UniversalLabel;
} // namespace Types

namespace Metadata
{
class PartitionDictionary
{
public:
    VELLUM_CLASS_ALLOCATION
    // Takes the Primer over; a null Primer is replaced by an empty one.
    PartitionDictionary(Templates::SharedPtr<MetaMetadata::Dictionary> dictionary,
                        Templates::auto_ptr<Packs::PrimerPack> primer);
    ~PartitionDictionary();

    Templates::SharedPtr<MetaMetadata::Dictionary> dictionary() const;
    Packs::PrimerPack & primer() const;

    // The tag that the Primer gives the label. Not there throws LocalTagNotFound.
    Types::LocalTag const & find(Types::UniversalLabel const & label) const;
    // The label of a tag. With `strictPrimer` the Primer must hold the tag and, for a static tag,
    // agree with the dictionary; without, a static tag that the Primer lacks comes from the
    // dictionary and whatever the Primer says wins.
    Types::UniversalLabel const & find(Types::LocalTag const & tag, bool strictPrimer) const;
    // The tag of the label in the Primer; else the dictionary's static tag, which is then added to
    // the Primer; else the next free dynamic tag from 80.00 on, added to the Primer.
    Types::LocalTag const & findOrGenerate(Types::UniversalLabel const & label);

private:
    PartitionDictionary(PartitionDictionary const &) = delete;
    PartitionDictionary & operator=(PartitionDictionary const &) = delete;

    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace Metadata
} // namespace Vellum
