// The creators of the structural classes for the metadata set factory.

#include "Metadata/Structural/Initialize.h"

#include <atomic>

#include "Metadata/MetadataSetFactory.h"
#include "Metadata/Structural/StructuralClasses.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Platform/Initializer.h"
#include "Platform/Synchronization.h"

namespace Vellum
{
namespace Metadata
{
namespace Structural
{
namespace
{
#include "Accessors/Creators.inc"

// A structural class made for a set of a descendant class that has none of its own: the object
// keeps the set's key.
template <class Class>
class Descendant : public Class
{
public:
    Descendant(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
        : Class(key, metaMetadataSet, owner)
    {
    }
};

// A class's own sets; none for another key.
#define VELLUM_DEFINE_CREATOR(Class, keyName)                                                         \
    MetadataSet * create##Class(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, \
                                MetadataSetOwner * owner)                                              \
    {                                                                                                 \
        return key == StructuralMetadataKeys::keyName() ? new Class(metaMetadataSet, owner) : nullptr; \
    }
VELLUM_STRUCTURAL_CREATORS(VELLUM_DEFINE_CREATOR)
#undef VELLUM_DEFINE_CREATOR

// The classes that other registered classes derive from: they also take the sets of descendants
// that have no class of their own.
#define VELLUM_ANCESTOR_CLASSES(X) \
    X(FileDescriptor, fileDescriptor) \
    X(GenericPictureEssenceDescriptor, genericPictureEssenceDescriptor) \
    X(GenericSoundEssenceDescriptor, genericSoundEssenceDescriptor) \
    X(GenericDataEssenceDescriptor, genericDataEssenceDescriptor) \
    X(CDCIEssenceDescriptor, cdciEssenceDescriptor) \
    X(WAVEAudioEssenceDescriptor, waveAudioEssenceDescriptor) \
    X(SourceClip, sourceClip)
#define VELLUM_DEFINE_ANCESTOR_CREATOR(Class, keyName)                                                \
    MetadataSet * createAncestor##Class(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, \
                                        MetadataSetOwner * owner)                                      \
    {                                                                                                 \
        if (key == StructuralMetadataKeys::keyName())                                                 \
            return new Class(metaMetadataSet, owner);                                                 \
        return new Descendant<Class>(key, metaMetadataSet, owner);                                    \
    }
VELLUM_ANCESTOR_CLASSES(VELLUM_DEFINE_ANCESTOR_CREATOR)
#undef VELLUM_DEFINE_ANCESTOR_CREATOR

std::atomic<bool> initialized(false);
} // namespace

void initialize()
{
    if (initialized)
        return;
    Platform::Synchronization::ScopedLock lock(Initializer::instance().singletonMutex());
    if (initialized)
        return;
    MetadataSetFactory & factory = MetadataSetFactory::instance();
#define VELLUM_REGISTER_CREATOR(Class, keyName) factory.registerCreator(StructuralMetadataKeys::keyName(), &create##Class);
    VELLUM_STRUCTURAL_CREATORS(VELLUM_REGISTER_CREATOR)
#undef VELLUM_REGISTER_CREATOR
#define VELLUM_REGISTER_ANCESTOR(Class, keyName) \
    factory.registerCreator(StructuralMetadataKeys::keyName(), &createAncestor##Class);
    VELLUM_ANCESTOR_CLASSES(VELLUM_REGISTER_ANCESTOR)
#undef VELLUM_REGISTER_ANCESTOR
    initialized = true;
}
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
