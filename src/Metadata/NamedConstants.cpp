// The named keys and labels. Their values come from the generated table beside this file.

#include "KLV/Key.h"
#include "Metadata/DMS1/ClipFrameworkClipKind.h"
#include "Metadata/DMS1/DMS1MetadataKeys.h"
#include "Metadata/DMS1/DMS1MetadataULs.h"
#include "Metadata/MetadataKeys.h"
#include "Metadata/MetadataULs.h"
#include "Metadata/Structural/DataDefinitionULs.h"
#include "Metadata/Structural/IndexTablesULs.h"
#include "Metadata/Structural/NullValues.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/StructuralMetadataULs.h"
#include "Metadata/Structural/Wrappings.h"
#include "Types/UMID.h"
#include "Types/UniversalLabel.h"
#include "Utils/Text.h"

#include "NamedConstantsTable.inc"

// One function for each constant: the object is made on the first call.
#define VELLUM_DEFINE_KEY(name, ...)                                                              \
    KLV::Key const & name()                                                                       \
    {                                                                                             \
        static unsigned char const bytes[16] = {__VA_ARGS__};                                     \
        static KLV::Key const value(bytes);                                                       \
        return value;                                                                             \
    }
#define VELLUM_DEFINE_LABEL(name, ...)                                                            \
    Types::UniversalLabel const & name()                                                          \
    {                                                                                             \
        static unsigned char const bytes[16] = {__VA_ARGS__};                                     \
        static Types::UniversalLabel const value(bytes);                                          \
        return value;                                                                             \
    }

namespace Vellum
{
namespace Metadata
{
namespace MetadataKeys
{
VELLUM_METADATA_KEYS(VELLUM_DEFINE_KEY)
} // namespace MetadataKeys

namespace MetadataULs
{
VELLUM_METADATA_ULS(VELLUM_DEFINE_LABEL)
} // namespace MetadataULs

namespace Structural
{
namespace StructuralMetadataKeys
{
VELLUM_STRUCTURAL_METADATA_KEYS(VELLUM_DEFINE_KEY)
} // namespace StructuralMetadataKeys

namespace StructuralMetadataULs
{
VELLUM_STRUCTURAL_METADATA_ULS(VELLUM_DEFINE_LABEL)
} // namespace StructuralMetadataULs

namespace DataDefinitionULs
{
VELLUM_DATA_DEFINITION_ULS(VELLUM_DEFINE_LABEL)
} // namespace DataDefinitionULs

namespace IndexTablesULs
{
VELLUM_INDEX_TABLES_ULS(VELLUM_DEFINE_LABEL)
} // namespace IndexTablesULs

namespace Wrappings
{
VELLUM_WRAPPINGS(VELLUM_DEFINE_LABEL)
} // namespace Wrappings

namespace DistiguishedValue
{
Types::UMID32 const & nullUMID32()
{
    static unsigned char const bytes[32] = {0};
    static Types::UMID32 const value(bytes);
    return value;
}
} // namespace DistiguishedValue

namespace NullValues
{
Types::UMID64 const & nullUMID64()
{
    static unsigned char const bytes[64] = {0};
    static Types::UMID64 const value(bytes);
    return value;
}
} // namespace NullValues
} // namespace Structural

namespace DMS1
{
namespace DMS1MetadataKeys
{
VELLUM_DMS1_METADATA_KEYS(VELLUM_DEFINE_KEY)
} // namespace DMS1MetadataKeys

namespace DMS1MetadataULs
{
VELLUM_DMS1_METADATA_ULS(VELLUM_DEFINE_LABEL)
} // namespace DMS1MetadataULs

Templates::wstring clipKindToWString(ClipFrameworkClipKind kind)
{
    switch (kind)
    {
    case MovingPicturesClipKind:
        return Utils::wide("Moving Pictures");
    case StillClipKind:
        return Utils::wide("Still");
    case GraphicClipKind:
        return Utils::wide("Graphic");
    case SoundClipKind:
        return Utils::wide("Sound");
    case OtherClipKind:
        return Utils::wide("Other");
    default:
        return Utils::wide("Unknown");
    }
}
} // namespace DMS1
} // namespace Metadata
} // namespace Vellum
