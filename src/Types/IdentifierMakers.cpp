// The identifier types' makers for the type factory.
#include "Types/IdentifierMakers.h"

#include "KLV/Value.h"
#include "Types/Factories/BaseTypeFactory.h"
#include "Types/Identifiers.h"
#include "Types/LocalTag.h"
#include "Types/References.h"
#include "Types/UMID.h"
#include "Types/UUID.h"
#include "Types/UniversalLabel.h"

namespace Vellum
{
namespace Types
{
namespace Factories
{
namespace
{
template <class T>
Templates::auto_ptr<SimpleDataType> makeIdentifier(KLV::Value & value)
{
    return Templates::auto_ptr<SimpleDataType>(new T(value));
}
} // namespace

void registerIdentifierMakers(BaseTypeFactory & factory)
{
    // A key read as a value is a universal label.
    factory.registerFixedSizeMaker(Identifiers::Key, &makeIdentifier<Types::UniversalLabel>);
    factory.registerFixedSizeMaker(Identifiers::LocalTag, &makeIdentifier<Types::LocalTag>);
    factory.registerFixedSizeMaker(Identifiers::UMID32, &makeIdentifier<Types::UMID32>);
    factory.registerFixedSizeMaker(Identifiers::UMID64, &makeIdentifier<Types::UMID64>);
    factory.registerFixedSizeMaker(Identifiers::UL, &makeIdentifier<Types::UniversalLabel>);
    factory.registerFixedSizeMaker(Identifiers::UUID, &makeIdentifier<Types::UUID>);
    factory.registerFixedSizeMaker(Identifiers::StrongReference, &makeIdentifier<Types::StrongReference>);
    factory.registerFixedSizeMaker(Identifiers::WeakReference, &makeIdentifier<Types::WeakReference>);
}
} // namespace Factories
} // namespace Types
} // namespace Vellum
