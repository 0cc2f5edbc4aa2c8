// The constructors, visits and accessors of GenericPictureEssenceDescriptor.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/GenericPictureEssenceDescriptor.h"

#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/StructuralMetadataULs.h"
#include "Metadata/MetadataSetVisitor.h"
#include "Metadata/Structural/Accessors.h"

namespace Vellum
{
namespace Metadata
{
namespace Structural
{
GenericPictureEssenceDescriptor::GenericPictureEssenceDescriptor(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : FileDescriptor(StructuralMetadataKeys::genericPictureEssenceDescriptor(), metaMetadataSet, owner)
{
}

GenericPictureEssenceDescriptor::GenericPictureEssenceDescriptor(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : FileDescriptor(key, metaMetadataSet, owner)
{
}

GenericPictureEssenceDescriptor::~GenericPictureEssenceDescriptor() {}

void GenericPictureEssenceDescriptor::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }
void GenericPictureEssenceDescriptor::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }

void GenericPictureEssenceDescriptor::activeFormatDescriptor(Types::UInt8 const * value) { Accessors::setValue<Types::UInt8>(*this, StructuralMetadataULs::activeFormatDescriptor(), value); }
Types::UInt8 const * GenericPictureEssenceDescriptor::activeFormatDescriptor() const { return Accessors::value<Types::UInt8>(*this, StructuralMetadataULs::activeFormatDescriptor()); }

void GenericPictureEssenceDescriptor::alphaTransparency(Types::UInt8 const * value) { Accessors::setValue<Types::UInt8>(*this, StructuralMetadataULs::alphaTransparency(), value); }
Types::UInt8 const * GenericPictureEssenceDescriptor::alphaTransparency() const { return Accessors::value<Types::UInt8>(*this, StructuralMetadataULs::alphaTransparency()); }

void GenericPictureEssenceDescriptor::aspectRatio(Types::Rational const * value) { Accessors::setValue<Types::Rational>(*this, StructuralMetadataULs::aspectRatio(), value); }
Types::Rational const * GenericPictureEssenceDescriptor::aspectRatio() const { return Accessors::value<Types::Rational>(*this, StructuralMetadataULs::aspectRatio()); }

void GenericPictureEssenceDescriptor::captureGamma(Types::UniversalLabel const * value) { Accessors::setValue<Types::UniversalLabel>(*this, StructuralMetadataULs::captureGamma(), value); }
Types::UniversalLabel const * GenericPictureEssenceDescriptor::captureGamma() const { return Accessors::value<Types::UniversalLabel>(*this, StructuralMetadataULs::captureGamma()); }

void GenericPictureEssenceDescriptor::displayF2Offset(Types::Int32 const * value) { Accessors::setValue<Types::Int32>(*this, StructuralMetadataULs::displayF2Offset(), value); }
Types::Int32 const * GenericPictureEssenceDescriptor::displayF2Offset() const { return Accessors::value<Types::Int32>(*this, StructuralMetadataULs::displayF2Offset()); }

void GenericPictureEssenceDescriptor::displayHeight(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::displayHeight(), value); }
Types::UInt32 const * GenericPictureEssenceDescriptor::displayHeight() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::displayHeight()); }

void GenericPictureEssenceDescriptor::displayWidth(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::displayWidth(), value); }
Types::UInt32 const * GenericPictureEssenceDescriptor::displayWidth() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::displayWidth()); }

void GenericPictureEssenceDescriptor::displayXOffset(Types::Int32 const * value) { Accessors::setValue<Types::Int32>(*this, StructuralMetadataULs::displayXOffset(), value); }
Types::Int32 const * GenericPictureEssenceDescriptor::displayXOffset() const { return Accessors::value<Types::Int32>(*this, StructuralMetadataULs::displayXOffset()); }

void GenericPictureEssenceDescriptor::displayYOffset(Types::Int32 const * value) { Accessors::setValue<Types::Int32>(*this, StructuralMetadataULs::displayYOffset(), value); }
Types::Int32 const * GenericPictureEssenceDescriptor::displayYOffset() const { return Accessors::value<Types::Int32>(*this, StructuralMetadataULs::displayYOffset()); }

void GenericPictureEssenceDescriptor::fieldDominance(Types::UInt8 const * value) { Accessors::setValue<Types::UInt8>(*this, StructuralMetadataULs::fieldDominance(), value); }
Types::UInt8 const * GenericPictureEssenceDescriptor::fieldDominance() const { return Accessors::value<Types::UInt8>(*this, StructuralMetadataULs::fieldDominance()); }

void GenericPictureEssenceDescriptor::frameLayout(Types::UInt8 const * value) { Accessors::setValue<Types::UInt8>(*this, StructuralMetadataULs::frameLayout(), value); }
Types::UInt8 const * GenericPictureEssenceDescriptor::frameLayout() const { return Accessors::value<Types::UInt8>(*this, StructuralMetadataULs::frameLayout()); }

void GenericPictureEssenceDescriptor::imageAlignmentOffset(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::imageAlignmentOffset(), value); }
Types::UInt32 const * GenericPictureEssenceDescriptor::imageAlignmentOffset() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::imageAlignmentOffset()); }

void GenericPictureEssenceDescriptor::imageEndOffset(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::imageEndOffset(), value); }
Types::UInt32 const * GenericPictureEssenceDescriptor::imageEndOffset() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::imageEndOffset()); }

void GenericPictureEssenceDescriptor::imageStartOffset(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::imageStartOffset(), value); }
Types::UInt32 const * GenericPictureEssenceDescriptor::imageStartOffset() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::imageStartOffset()); }

void GenericPictureEssenceDescriptor::pictureEssenceCoding(Types::UniversalLabel const * value) { Accessors::setValue<Types::UniversalLabel>(*this, StructuralMetadataULs::pictureEssenceCoding(), value); }
Types::UniversalLabel const * GenericPictureEssenceDescriptor::pictureEssenceCoding() const { return Accessors::value<Types::UniversalLabel>(*this, StructuralMetadataULs::pictureEssenceCoding()); }

void GenericPictureEssenceDescriptor::sampledHeight(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::sampledHeight(), value); }
Types::UInt32 const * GenericPictureEssenceDescriptor::sampledHeight() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::sampledHeight()); }

void GenericPictureEssenceDescriptor::sampledWidth(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::sampledWidth(), value); }
Types::UInt32 const * GenericPictureEssenceDescriptor::sampledWidth() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::sampledWidth()); }

void GenericPictureEssenceDescriptor::sampledXOffset(Types::Int32 const * value) { Accessors::setValue<Types::Int32>(*this, StructuralMetadataULs::sampledXOffset(), value); }
Types::Int32 const * GenericPictureEssenceDescriptor::sampledXOffset() const { return Accessors::value<Types::Int32>(*this, StructuralMetadataULs::sampledXOffset()); }

void GenericPictureEssenceDescriptor::sampledYOffset(Types::Int32 const * value) { Accessors::setValue<Types::Int32>(*this, StructuralMetadataULs::sampledYOffset(), value); }
Types::Int32 const * GenericPictureEssenceDescriptor::sampledYOffset() const { return Accessors::value<Types::Int32>(*this, StructuralMetadataULs::sampledYOffset()); }

void GenericPictureEssenceDescriptor::signalStandard(Types::SignalStandard const * value) { Accessors::setValue<Types::SignalStandard>(*this, StructuralMetadataULs::signalStandard(), value); }
Types::SignalStandard const * GenericPictureEssenceDescriptor::signalStandard() const { return Accessors::value<Types::SignalStandard>(*this, StructuralMetadataULs::signalStandard()); }

void GenericPictureEssenceDescriptor::storedF2Offset(Types::Int32 const * value) { Accessors::setValue<Types::Int32>(*this, StructuralMetadataULs::storedF2Offset(), value); }
Types::Int32 const * GenericPictureEssenceDescriptor::storedF2Offset() const { return Accessors::value<Types::Int32>(*this, StructuralMetadataULs::storedF2Offset()); }

void GenericPictureEssenceDescriptor::storedHeight(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::storedHeight(), value); }
Types::UInt32 const * GenericPictureEssenceDescriptor::storedHeight() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::storedHeight()); }

void GenericPictureEssenceDescriptor::storedWidth(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::storedWidth(), value); }
Types::UInt32 const * GenericPictureEssenceDescriptor::storedWidth() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::storedWidth()); }

unsigned int GenericPictureEssenceDescriptor::videoLineMapCount() const { return Accessors::memberCount(*this, StructuralMetadataULs::videoLineMap()); }
Types::Int32 const * GenericPictureEssenceDescriptor::videoLineMap(unsigned int index) const { return Accessors::member<Types::Int32>(*this, StructuralMetadataULs::videoLineMap(), index); }
void GenericPictureEssenceDescriptor::appendVideoLineMap(Types::Int32 const & value) { Accessors::appendMember(*this, StructuralMetadataULs::videoLineMap(), value); }
void GenericPictureEssenceDescriptor::addVideoLineMap(unsigned int index, Types::Int32 const & value) { Accessors::insertMember(*this, StructuralMetadataULs::videoLineMap(), index, value); }
void GenericPictureEssenceDescriptor::removeVideoLineMap(unsigned int index) { Accessors::removeMember(*this, StructuralMetadataULs::videoLineMap(), index); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
