// The constructors, visits and accessors of AES3AudioEssenceDescriptor.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/AES3AudioEssenceDescriptor.h"

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
AES3AudioEssenceDescriptor::AES3AudioEssenceDescriptor(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)
    : WAVEAudioEssenceDescriptor(StructuralMetadataKeys::aes3AudioEssenceDescriptor(), metaMetadataSet, owner)
{
}

AES3AudioEssenceDescriptor::~AES3AudioEssenceDescriptor() {}

void AES3AudioEssenceDescriptor::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }
void AES3AudioEssenceDescriptor::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }

void AES3AudioEssenceDescriptor::auxBitsMode(Types::UInt8 const * value) { Accessors::setValue<Types::UInt8>(*this, StructuralMetadataULs::auxBitsMode(), value); }
Types::UInt8 const * AES3AudioEssenceDescriptor::auxBitsMode() const { return Accessors::value<Types::UInt8>(*this, StructuralMetadataULs::auxBitsMode()); }

void AES3AudioEssenceDescriptor::blockStartOffset(Types::UInt16 const * value) { Accessors::setValue<Types::UInt16>(*this, StructuralMetadataULs::blockStartOffset(), value); }
Types::UInt16 const * AES3AudioEssenceDescriptor::blockStartOffset() const { return Accessors::value<Types::UInt16>(*this, StructuralMetadataULs::blockStartOffset()); }

unsigned int AES3AudioEssenceDescriptor::channelStatusModeCount() const { return Accessors::memberCount(*this, StructuralMetadataULs::channelStatusMode()); }
Types::UInt8 const * AES3AudioEssenceDescriptor::channelStatusMode(unsigned int index) const { return Accessors::member<Types::UInt8>(*this, StructuralMetadataULs::channelStatusMode(), index); }
void AES3AudioEssenceDescriptor::appendChannelStatusMode(Types::UInt8 const & value) { Accessors::appendMember(*this, StructuralMetadataULs::channelStatusMode(), value); }
void AES3AudioEssenceDescriptor::addChannelStatusMode(unsigned int index, Types::UInt8 const & value) { Accessors::insertMember(*this, StructuralMetadataULs::channelStatusMode(), index, value); }
void AES3AudioEssenceDescriptor::removeChannelStatusMode(unsigned int index) { Accessors::removeMember(*this, StructuralMetadataULs::channelStatusMode(), index); }

void AES3AudioEssenceDescriptor::emphasis(Types::UInt8 const * value) { Accessors::setValue<Types::UInt8>(*this, StructuralMetadataULs::emphasis(), value); }
Types::UInt8 const * AES3AudioEssenceDescriptor::emphasis() const { return Accessors::value<Types::UInt8>(*this, StructuralMetadataULs::emphasis()); }

unsigned int AES3AudioEssenceDescriptor::fixedChannelStatusDataCount() const { return Accessors::memberCount(*this, StructuralMetadataULs::fixedChannelStatusData()); }
Types::UInt8 const * AES3AudioEssenceDescriptor::fixedChannelStatusData(unsigned int index) const { return Accessors::member<Types::UInt8>(*this, StructuralMetadataULs::fixedChannelStatusData(), index); }
void AES3AudioEssenceDescriptor::appendFixedChannelStatusData(Types::UInt8 const & value) { Accessors::appendMember(*this, StructuralMetadataULs::fixedChannelStatusData(), value); }
void AES3AudioEssenceDescriptor::addFixedChannelStatusData(unsigned int index, Types::UInt8 const & value) { Accessors::insertMember(*this, StructuralMetadataULs::fixedChannelStatusData(), index, value); }
void AES3AudioEssenceDescriptor::removeFixedChannelStatusData(unsigned int index) { Accessors::removeMember(*this, StructuralMetadataULs::fixedChannelStatusData(), index); }

unsigned int AES3AudioEssenceDescriptor::fixedUserDataCount() const { return Accessors::memberCount(*this, StructuralMetadataULs::fixedUserData()); }
Types::UInt8 const * AES3AudioEssenceDescriptor::fixedUserData(unsigned int index) const { return Accessors::member<Types::UInt8>(*this, StructuralMetadataULs::fixedUserData(), index); }
void AES3AudioEssenceDescriptor::appendFixedUserData(Types::UInt8 const & value) { Accessors::appendMember(*this, StructuralMetadataULs::fixedUserData(), value); }
void AES3AudioEssenceDescriptor::addFixedUserData(unsigned int index, Types::UInt8 const & value) { Accessors::insertMember(*this, StructuralMetadataULs::fixedUserData(), index, value); }
void AES3AudioEssenceDescriptor::removeFixedUserData(unsigned int index) { Accessors::removeMember(*this, StructuralMetadataULs::fixedUserData(), index); }

unsigned int AES3AudioEssenceDescriptor::userDataModeCount() const { return Accessors::memberCount(*this, StructuralMetadataULs::userDataMode()); }
Types::UInt8 const * AES3AudioEssenceDescriptor::userDataMode(unsigned int index) const { return Accessors::member<Types::UInt8>(*this, StructuralMetadataULs::userDataMode(), index); }
void AES3AudioEssenceDescriptor::appendUserDataMode(Types::UInt8 const & value) { Accessors::appendMember(*this, StructuralMetadataULs::userDataMode(), value); }
void AES3AudioEssenceDescriptor::addUserDataMode(unsigned int index, Types::UInt8 const & value) { Accessors::insertMember(*this, StructuralMetadataULs::userDataMode(), index, value); }
void AES3AudioEssenceDescriptor::removeUserDataMode(unsigned int index) { Accessors::removeMember(*this, StructuralMetadataULs::userDataMode(), index); }

} // namespace Structural
} // namespace Metadata
} // namespace Vellum
