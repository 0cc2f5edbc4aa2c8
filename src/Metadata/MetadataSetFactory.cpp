// The set factory: creators by key, a plain MetadataSet for every other key.

#include "Metadata/MetadataSetFactory.h"

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
        Creators::const_iterator it = creators_.find(key);
        if (it != creators_.end())
            return it->second(key, metaMetadataSet, owner);
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
    typedef Templates::map<KLV::Key, Creator> Creators;
    Creators creators_;
};

MetadataSetFactory & MetadataSetFactory::instance()
{
    return Singleton<MetadataSetFactory_impl>::instance();
}
} // namespace Metadata
} // namespace Vellum
