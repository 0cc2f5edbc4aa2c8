#pragma once
// Describes the essence of a file: sample rate, length, container and linked track.
// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.

#include "Metadata/Structural/GenericDescriptor.h"
#include "Types/Integers.h"
#include "Types/Rational.h"
#include "Types/UniversalLabel.h"

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
// Described by the set FileDescriptor.
class FileDescriptor : public GenericDescriptor
{
public:
    VELLUM_CLASS_ALLOCATION
    // An empty set of key StructuralMetadataKeys::fileDescriptor(); `metaMetadataSet` must describe that key.
    FileDescriptor(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);
    ~FileDescriptor() override;

    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;
    void accept(Visitors::MetadataSetVisitor & visitor) const override;

    // StructuralMetadataULs::codec(): null when empty.
    void codec(Types::UniversalLabel const * value);
    Types::UniversalLabel const * codec() const;
    // StructuralMetadataULs::containerDuration(): null when empty.
    void containerDuration(Types::Length const * value);
    Types::Length const * containerDuration() const;
    // StructuralMetadataULs::essenceContainer(): null when empty.
    void essenceContainer(Types::UniversalLabel const * value);
    Types::UniversalLabel const * essenceContainer() const;
    // StructuralMetadataULs::linkedTrackID(): null when empty.
    void linkedTrackID(Types::UInt32 const * value);
    Types::UInt32 const * linkedTrackID() const;
    // StructuralMetadataULs::sampleRate(): null when empty.
    void sampleRate(Types::Rational const * value);
    Types::Rational const * sampleRate() const;

protected:
    FileDescriptor(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);

private:
    FileDescriptor(FileDescriptor const &) = delete;
    FileDescriptor & operator=(FileDescriptor const &) = delete;
};
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
