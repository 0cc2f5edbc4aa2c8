#pragma once
// The picture descriptor fields that the library's picture analyzers fill alike.

#include "Metadata/Structural/CDCIEssenceDescriptor.h"
#include "Templates/Rational.h"

namespace Vellum
{
namespace Essence
{
namespace Analyzers
{
struct PictureLayout
{
    uint32 storedWidth;
    uint32 storedHeight;
    // 0 full frame, 1 separate fields, 3 mixed fields.
    unsigned char frameLayout;
    Templates::Rational<int> aspectRatio;
};

// Stored, sampled and display sizes, frame layout and aspect ratio.
void describePicture(Metadata::Structural::GenericPictureEssenceDescriptor & d, PictureLayout const & layout,
                     Types::UniversalLabel const & coding);
// Depth and subsampling of a colour difference picture.
void describeComponents(Metadata::Structural::CDCIEssenceDescriptor & d, uint32 depth, uint32 horizontal,
                        uint32 vertical);
} // namespace Analyzers
} // namespace Essence
} // namespace Vellum
