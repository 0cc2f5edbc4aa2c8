#include "Essence/Analyzers/PictureDescriptors.h"

#include "Types/Integers.h"
#include "Types/Rational.h"

namespace Vellum
{
namespace Essence
{
namespace Analyzers
{
void describePicture(Metadata::Structural::GenericPictureEssenceDescriptor & d, PictureLayout const & layout,
                     Types::UniversalLabel const & coding)
{
    Types::UInt32 const width(layout.storedWidth), height(layout.storedHeight);
    d.storedWidth(&width);
    d.storedHeight(&height);
    d.sampledWidth(&width);
    d.sampledHeight(&height);
    d.displayWidth(&width);
    d.displayHeight(&height);
    Types::UInt8 const frameLayout(layout.frameLayout);
    d.frameLayout(&frameLayout);
    Types::Rational const aspect(layout.aspectRatio);
    d.aspectRatio(&aspect);
    d.pictureEssenceCoding(&coding);
}

void describeComponents(Metadata::Structural::CDCIEssenceDescriptor & d, uint32 depth, uint32 horizontal,
                        uint32 vertical)
{
    Types::UInt32 const componentDepth(depth), h(horizontal), v(vertical);
    d.componentDepth(&componentDepth);
    d.horizontalSubsampling(&h);
    d.verticalSubsampling(&v);
}
} // namespace Analyzers
} // namespace Essence
} // namespace Vellum
