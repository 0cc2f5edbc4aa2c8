#pragma once
// The kinds of material that a DMS-1 clip framework describes, and their texts.

#include "Templates/Containers.h"

namespace Vellum
{
namespace Metadata
{
namespace DMS1
{
enum ClipFrameworkClipKind
{
    MovingPictures = 0,
    Still = 1,
    Graphic = 2,
    Sound = 3,
    Other = 4,
    Unknown = 5
};

// "Moving Pictures", "Still", "Graphic", "Sound", "Other"; "Unknown" for anything else.
Templates::wstring clipKindToWString(ClipFrameworkClipKind kind);
} // namespace DMS1
} // namespace Metadata
} // namespace Vellum
