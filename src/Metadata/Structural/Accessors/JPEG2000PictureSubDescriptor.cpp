// The constructors, visits and accessors of JPEG2000PictureSubDescriptor.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/JPEG2000PictureSubDescriptor.h"

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
JPEG2000PictureSubDescriptor::JPEG2000PictureSubDescriptor(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : SubDescriptor(StructuralMetadataKeys::jpeg2000PictureSubDescriptor(), metaMetadataSet, owner)
{
}

JPEG2000PictureSubDescriptor::~JPEG2000PictureSubDescriptor() {}

void JPEG2000PictureSubDescriptor::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }
void JPEG2000PictureSubDescriptor::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }

void JPEG2000PictureSubDescriptor::codingStyleDefault(Types::J2KCodingStyleDefault const * value) { Accessors::setValue<Types::J2KCodingStyleDefault>(*this, StructuralMetadataULs::codingStyleDefault(), value); }
Types::J2KCodingStyleDefault const * JPEG2000PictureSubDescriptor::codingStyleDefault() const { return Accessors::value<Types::J2KCodingStyleDefault>(*this, StructuralMetadataULs::codingStyleDefault()); }

void JPEG2000PictureSubDescriptor::csiz(Types::UInt16 const * value) { Accessors::setValue<Types::UInt16>(*this, StructuralMetadataULs::csiz(), value); }
Types::UInt16 const * JPEG2000PictureSubDescriptor::csiz() const { return Accessors::value<Types::UInt16>(*this, StructuralMetadataULs::csiz()); }

unsigned int JPEG2000PictureSubDescriptor::pictureComponentSizingCount() const { return Accessors::memberCount(*this, StructuralMetadataULs::pictureComponentSizing()); }
Types::J2KPictureComponent const * JPEG2000PictureSubDescriptor::pictureComponentSizing(unsigned int index) const { return Accessors::member<Types::J2KPictureComponent>(*this, StructuralMetadataULs::pictureComponentSizing(), index); }
void JPEG2000PictureSubDescriptor::appendPictureComponentSizing(Types::J2KPictureComponent const & value) { Accessors::appendMember(*this, StructuralMetadataULs::pictureComponentSizing(), value); }
void JPEG2000PictureSubDescriptor::addPictureComponentSizing(unsigned int index, Types::J2KPictureComponent const & value) { Accessors::insertMember(*this, StructuralMetadataULs::pictureComponentSizing(), index, value); }
void JPEG2000PictureSubDescriptor::removePictureComponentSizing(unsigned int index) { Accessors::removeMember(*this, StructuralMetadataULs::pictureComponentSizing(), index); }

void JPEG2000PictureSubDescriptor::quantisationDefault(Types::J2KQuantisationDefault const * value) { Accessors::setValue<Types::J2KQuantisationDefault>(*this, StructuralMetadataULs::quantisationDefault(), value); }
Types::J2KQuantisationDefault const * JPEG2000PictureSubDescriptor::quantisationDefault() const { return Accessors::value<Types::J2KQuantisationDefault>(*this, StructuralMetadataULs::quantisationDefault()); }

void JPEG2000PictureSubDescriptor::rsiz(Types::UInt16 const * value) { Accessors::setValue<Types::UInt16>(*this, StructuralMetadataULs::rsiz(), value); }
Types::UInt16 const * JPEG2000PictureSubDescriptor::rsiz() const { return Accessors::value<Types::UInt16>(*this, StructuralMetadataULs::rsiz()); }

void JPEG2000PictureSubDescriptor::xOsiz(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::xOsiz(), value); }
Types::UInt32 const * JPEG2000PictureSubDescriptor::xOsiz() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::xOsiz()); }

void JPEG2000PictureSubDescriptor::xsiz(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::xsiz(), value); }
Types::UInt32 const * JPEG2000PictureSubDescriptor::xsiz() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::xsiz()); }

void JPEG2000PictureSubDescriptor::xTOsiz(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::xTOsiz(), value); }
Types::UInt32 const * JPEG2000PictureSubDescriptor::xTOsiz() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::xTOsiz()); }

void JPEG2000PictureSubDescriptor::xTsiz(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::xTsiz(), value); }
Types::UInt32 const * JPEG2000PictureSubDescriptor::xTsiz() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::xTsiz()); }

void JPEG2000PictureSubDescriptor::yOsiz(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::yOsiz(), value); }
Types::UInt32 const * JPEG2000PictureSubDescriptor::yOsiz() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::yOsiz()); }

void JPEG2000PictureSubDescriptor::ysiz(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::ysiz(), value); }
Types::UInt32 const * JPEG2000PictureSubDescriptor::ysiz() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::ysiz()); }

void JPEG2000PictureSubDescriptor::yTOsiz(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::yTOsiz(), value); }
Types::UInt32 const * JPEG2000PictureSubDescriptor::yTOsiz() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::yTOsiz()); }

void JPEG2000PictureSubDescriptor::yTsiz(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::yTsiz(), value); }
Types::UInt32 const * JPEG2000PictureSubDescriptor::yTsiz() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::yTsiz()); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
