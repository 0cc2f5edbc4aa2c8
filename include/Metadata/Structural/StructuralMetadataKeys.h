#pragma once
// Keys of the structural metadata sets and of the descriptors of the essence mappings, as
// local sets.
// Each returns a constant made once, on first use.

#include "KLV/Key.h"

namespace Vellum
{
namespace Metadata
{
namespace Structural
{
namespace StructuralMetadataKeys
{
KLV::Key const & aes3AudioEssenceDescriptor();
KLV::Key const & ancPacketsDescriptor();
KLV::Key const & cdciEssenceDescriptor();
KLV::Key const & contentStorage();
KLV::Key const & cryptographicContext();
KLV::Key const & cryptographicFramework();
KLV::Key const & dmSegment();
KLV::Key const & dmSourceClip();
KLV::Key const & essenceContainerData();
KLV::Key const & eventTrack();
KLV::Key const & fileDescriptor();
KLV::Key const & genericDataEssenceDescriptor();
KLV::Key const & genericPictureEssenceDescriptor();
KLV::Key const & genericSoundEssenceDescriptor();
KLV::Key const & identification();
KLV::Key const & jpeg2000PictureSubDescriptor();
KLV::Key const & materialPackage();
KLV::Key const & mpeg2VideoDescriptor();
KLV::Key const & multipleDescriptor();
KLV::Key const & networkLocator();
KLV::Key const & preface();
KLV::Key const & rgbaEssenceDescriptor();
KLV::Key const & sequence();
KLV::Key const & smpte331MTimeDateItemDescriptor();
KLV::Key const & sourceClip();
KLV::Key const & sourcePackage();
KLV::Key const & staticTrack();
KLV::Key const & textLocator();
KLV::Key const & timecodeComponent();
KLV::Key const & timelineTrack();
KLV::Key const & unknownChunkSet();
KLV::Key const & vbiDataDescriptor();
KLV::Key const & waveAudioEssenceDescriptor();
KLV::Key const & waveAudioPhysicalDescriptor();
} // namespace StructuralMetadataKeys
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
