#pragma once
// Chooses the class of a metadata set by its key: a registered creator, or a plain MetadataSet.

#include "Platform/MallocAlloc.h"

namespace Vellum
{
namespace KLV
{
class Key;
} // namespace KLV

namespace MetaMetadata
{
class MetaMetadataSet;
} // namespace MetaMetadata

namespace Metadata
{
class MetadataSet;
class MetadataSetOwner;

class MetadataSetFactory
{
public:
    VELLUM_CLASS_ALLOCATION
    typedef MetadataSet * (*Creator)(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet,
                                     MetadataSetOwner * owner);

    // The one factory, made on first use.
    static MetadataSetFactory & instance();

    virtual ~MetadataSetFactory() {}
    // A new set, owned by the caller: made by the creator of its key, else by the creator of the
    // nearest of its class's ancestors (MetaMetadataSet::ancestors) that takes it, else a plain
    // MetadataSet. A creator called for another key than its own may give null: it does not take it.
    virtual MetadataSet * create(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet,
                                 MetadataSetOwner * owner) = 0;
    // Sets of `key` are made by `creator` from now on (a null creator drops the key); returns true.
    virtual bool registerCreator(KLV::Key const & key, Creator creator) = 0;
};
} // namespace Metadata
} // namespace Vellum
