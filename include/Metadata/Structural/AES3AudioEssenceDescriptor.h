#pragma once
// Describes AES3 audio essence with its channel status and user data.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/WAVEAudioEssenceDescriptor.h"
#include "Types/Integers.h"

namespace Vellum
{
namespace MetaMetadata
{
class MetaMetadataSet;
} // namespace MetaMetadata

namespace Metadata
{
class MetadataSetOwner;

namespace Visitors
{
class MetadataSetVisitor;
class NonConstMetadataSetVisitor;
} // namespace Visitors

namespace Structural
{
// Described by the set AES3PCMDescriptor.
class AES3AudioEssenceDescriptor : public WAVEAudioEssenceDescriptor
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty set of key StructuralMetadataKeys::aes3AudioEssenceDescriptor(); `metaMetadataSet` must describe that key.
    AES3AudioEssenceDescriptor(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);
    ~AES3AudioEssenceDescriptor() override;

    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;
    void accept(Visitors::MetadataSetVisitor & visitor) const override;

    // StructuralMetadataULs::auxBitsMode(): null when empty.
    void auxBitsMode(Types::UInt8 const * value);
    Types::UInt8 const * auxBitsMode() const;
    // StructuralMetadataULs::blockStartOffset(): null when empty.
    void blockStartOffset(Types::UInt16 const * value);
    Types::UInt16 const * blockStartOffset() const;
    // StructuralMetadataULs::channelStatusMode(): the members in order.
    unsigned int channelStatusModeCount() const;
    Types::UInt8 const * channelStatusMode(unsigned int index) const;
    void appendChannelStatusMode(Types::UInt8 const & value);
    void addChannelStatusMode(unsigned int index, Types::UInt8 const & value);
    void removeChannelStatusMode(unsigned int index);
    // StructuralMetadataULs::emphasis(): null when empty.
    void emphasis(Types::UInt8 const * value);
    Types::UInt8 const * emphasis() const;
    // StructuralMetadataULs::fixedChannelStatusData(): the members in order.
    unsigned int fixedChannelStatusDataCount() const;
    Types::UInt8 const * fixedChannelStatusData(unsigned int index) const;
    void appendFixedChannelStatusData(Types::UInt8 const & value);
    void addFixedChannelStatusData(unsigned int index, Types::UInt8 const & value);
    void removeFixedChannelStatusData(unsigned int index);
    // StructuralMetadataULs::fixedUserData(): the members in order.
    unsigned int fixedUserDataCount() const;
    Types::UInt8 const * fixedUserData(unsigned int index) const;
    void appendFixedUserData(Types::UInt8 const & value);
    void addFixedUserData(unsigned int index, Types::UInt8 const & value);
    void removeFixedUserData(unsigned int index);
    // StructuralMetadataULs::userDataMode(): the members in order.
    unsigned int userDataModeCount() const;
    Types::UInt8 const * userDataMode(unsigned int index) const;
    void appendUserDataMode(Types::UInt8 const & value);
    void addUserDataMode(unsigned int index, Types::UInt8 const & value);
    void removeUserDataMode(unsigned int index);

private:
    AES3AudioEssenceDescriptor(AES3AudioEssenceDescriptor const &) = delete;
    AES3AudioEssenceDescriptor & operator=(AES3AudioEssenceDescriptor const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
