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
    MovingPicturesClipKind = 0,
    StillClipKind = 1,
    GraphicClipKind = 2,
    SoundClipKind = 3,
    OtherClipKind = 4,
    UnknownClipKind = 5
};

// "Moving Pictures", "Still", "Graphic", "Sound", "Other"; "Unknown" for anything else.
Templates::wstring clipKindToWString(ClipFrameworkClipKind kind);
} // namespace DMS1
} // namespace Metadata
} // namespace Vellum
