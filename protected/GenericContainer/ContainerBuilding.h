#pragma once
// What the multiplexer and the clip wrapper share at commit: the Source Package and its multiple
// descriptor, track IDs and the KAG arithmetic.

#include "GenericContainer/ContainerData.h"
#include "Templates/Containers.h"

namespace Vellum
{
namespace Metadata
{
namespace Structural
{
class MultipleDescriptor;
class SourcePackage;
}
}

namespace GenericContainer
{
// The UMID material type of a package with these counts of elements.
unsigned char packageMaterialType(size_t compound, size_t picture, size_t sound, size_t data);
// A new Source Package named "Source Package", appended to the Content Storage of the Preface.
Metadata::Structural::SourcePackage * createSourcePackage(Metadata::PartitionMetadata & metadata,
                                                          unsigned char materialType);
// A multiple descriptor made the package's descriptor.
Metadata::Structural::MultipleDescriptor * createMultipleDescriptor(Metadata::PartitionMetadata & metadata,
                                                                    Metadata::Structural::SourcePackage & package,
                                                                    Templates::Rational<int> const & rate,
                                                                    Types::UniversalLabel const & essenceContainer);
// Gives the essence container label of the descriptor of track `trackId` the wrapping of the
// container it is written in.
void setDescriptorWrapping(Metadata::Structural::SourcePackage & package, unsigned int trackId, bool clipWrapped);
// Tells the analyzer the package rate and preloads it; for one with temporal reordering, checks
// that it is the container's only one and runs at the package rate, and marks `temporalReordering`.
// Gives whether it reorders.
bool prepareAnalyzer(EssenceAnalyzer & analyzer, Templates::Rational<int> const & packageRate, bool & temporalReordering);
// The least common multiple of two grid sizes; 0 on either side gives 0.
unsigned int combineKAG(unsigned int a, unsigned int b);
// The next base track ID from `next` on, in steps of 256, that `used` doesn't hold; it is marked.
typedef Templates::map<unsigned int, EssenceAnalyzer *> TrackIDs;
unsigned int takeTrackID(unsigned int & next, TrackIDs & used, EssenceAnalyzer * analyzer);
} // namespace GenericContainer
} // namespace Vellum
