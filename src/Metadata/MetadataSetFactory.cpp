// The set factory: creators by key, a plain MetadataSet for every other key.

#include "Metadata/MetadataSetFactory.h"

#include "MetaMetadata/MetaMetadataSet.h"

#include "KLV/Key.h"
#include "Metadata/MetadataSet.h"
#include "Platform/Initializer.h"
#include "Templates/Containers.h"

namespace Vellum
{
namespace Metadata
{
class MetadataSetFactory_impl : public MetadataSetFactory, public Singleton<MetadataSetFactory_impl>
{
public:
    VELLUM_CLASS_ALLOCATION
    MetadataSet * create(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet,
                         MetadataSetOwner * owner) override
    {
        if (MetadataSet * set = createAs(key, key, metaMetadataSet, owner))
            return set;
        // A class without a creator of its own is made as its nearest ancestor that takes it,
        // keeping its key: a sound descriptor of a newer kind is still a file descriptor.
        if (metaMetadataSet != nullptr)
            for (KLV::Key const & ancestor : metaMetadataSet->ancestors())
                if (MetadataSet * set = createAs(ancestor, key, metaMetadataSet, owner))
                    return set;
        return new MetadataSet(key, metaMetadataSet, owner);
    }

    bool registerCreator(KLV::Key const & key, Creator creator) override
    {
        if (creator == nullptr)
            creators_.erase(key);
        else
            creators_[key] = creator;
        return true;
    }

private:
    // The set of key `key` through the creator registered for `creatorKey`; null without one, or
    // when it does not take that key.
    MetadataSet * createAs(KLV::Key const & creatorKey, KLV::Key const & key,
                           MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner) const
    {
        Creators::const_iterator it = creators_.find(creatorKey);
        return it != creators_.end() ? it->second(key, metaMetadataSet, owner) : nullptr;
    }

    typedef Templates::map<KLV::Key, Creator> Creators;
    Creators creators_;
};

MetadataSetFactory & MetadataSetFactory::instance()
{
    return Singleton<MetadataSetFactory_impl>::instance();
}
} // namespace Metadata
} // namespace Vellum
