// The constructors, visits and accessors of FileDescriptor.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/FileDescriptor.h"

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
FileDescriptor::FileDescriptor(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : GenericDescriptor(StructuralMetadataKeys::fileDescriptor(), metaMetadataSet, owner)
{
}

FileDescriptor::FileDescriptor(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : GenericDescriptor(key, metaMetadataSet, owner)
{
}

FileDescriptor::~FileDescriptor() {}

void FileDescriptor::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }
void FileDescriptor::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }

void FileDescriptor::codec(Types::UniversalLabel const * value) { Accessors::setValue<Types::UniversalLabel>(*this, StructuralMetadataULs::codec(), value); }
Types::UniversalLabel const * FileDescriptor::codec() const { return Accessors::value<Types::UniversalLabel>(*this, StructuralMetadataULs::codec()); }

void FileDescriptor::containerDuration(Types::Length const * value) { Accessors::setValue<Types::Length>(*this, StructuralMetadataULs::containerDuration(), value); }
Types::Length const * FileDescriptor::containerDuration() const { return Accessors::value<Types::Length>(*this, StructuralMetadataULs::containerDuration()); }

void FileDescriptor::essenceContainer(Types::UniversalLabel const * value) { Accessors::setValue<Types::UniversalLabel>(*this, StructuralMetadataULs::essenceContainer(), value); }
Types::UniversalLabel const * FileDescriptor::essenceContainer() const { return Accessors::value<Types::UniversalLabel>(*this, StructuralMetadataULs::essenceContainer()); }

void FileDescriptor::linkedTrackID(Types::UInt32 const * value) { Accessors::setValue<Types::UInt32>(*this, StructuralMetadataULs::linkedTrackID(), value); }
Types::UInt32 const * FileDescriptor::linkedTrackID() const { return Accessors::value<Types::UInt32>(*this, StructuralMetadataULs::linkedTrackID()); }

void FileDescriptor::sampleRate(Types::Rational const * value) { Accessors::setValue<Types::Rational>(*this, StructuralMetadataULs::sampleRate(), value); }
Types::Rational const * FileDescriptor::sampleRate() const { return Accessors::value<Types::Rational>(*this, StructuralMetadataULs::sampleRate()); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
