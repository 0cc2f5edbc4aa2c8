#pragma once
// An analyzer that hands out the edit units of one essence track of an MXF file as they are stored,
// for writing them again in another layout. The track's descriptor is copied into the new
// package; the element's item and element type, the essence container label and, for MPEG-2
// video, the picture types that the index needs come from the file.

#include "GenericContainer/EssenceAnalyzer.h"
#include "Templates/Containers.h"
#include "Templates/SharedPtr.h"

namespace Vellum
{
namespace OPBuilders
{
// Track `trackID` of the package that the file `path` offers for reading, opened on its own: a
// picture, sound or data analyzer by what the track carries. `pictureRate`, the rate of the
// package's pictures (0/1 without), is the rate of the units when they last a picture's time
// rather than one edit unit of the track, as frame-wrapped sound does. Throws NotFound when the
// track, its file package or its descriptor is missing.
Templates::SharedPtr<GenericContainer::EssenceAnalyzer> makeTrackCopyAnalyzer(Templates::wstring const & path,
                                                                              unsigned int trackID,
                                                                              Templates::Rational<int> const & pictureRate);
} // namespace OPBuilders
} // namespace Vellum
