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

#define VELLUM_DEFINE_CREATOR(Class, keyName)                                                     \
    MetadataSet * create##Class(KLV::Key const &, MetaMetadata::MetaMetadataSet const * metaMetadataSet, \
                                MetadataSetOwner * owner)                                          \
    {                                                                                             \
        return new Class(metaMetadataSet, owner);                                                 \
    }
VELLUM_STRUCTURAL_CREATORS(VELLUM_DEFINE_CREATOR)
#undef VELLUM_DEFINE_CREATOR

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
    initialized = true;
}
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
