#pragma once
// Visitors over metadata sets: one visit for the plain set and one for each structural class,
// so that a set's class is found without run-time type information.

#include "Platform/MallocAlloc.h"

// Every structural class, each after its base. X(Class, Base).
#define VELLUM_STRUCTURAL_SET_CLASSES(X)                                                                       \
    X(TrackableMetadataSet, MetadataSet)                                                                       \
    X(Identification, MetadataSet)                                                                             \
    X(Preface, TrackableMetadataSet)                                                                           \
    X(ContentStorage, TrackableMetadataSet)                                                                    \
    X(EssenceContainerData, TrackableMetadataSet)                                                              \
    X(GenericPackage, TrackableMetadataSet)                                                                    \
    X(Track, TrackableMetadataSet)                                                                             \
    X(Sequence, TrackableMetadataSet)                                                                          \
    X(StructuralComponent, TrackableMetadataSet)                                                               \
    X(GenericDescriptor, TrackableMetadataSet)                                                                 \
    X(SubDescriptor, TrackableMetadataSet)                                                                     \
    X(Locator, TrackableMetadataSet)                                                                           \
    X(UnknownChunkSet, TrackableMetadataSet)                                                                   \
    X(MaterialPackage, GenericPackage)                                                                         \
    X(SourcePackage, GenericPackage)                                                                           \
    X(TimelineTrack, Track)                                                                                    \
    X(EventTrack, Track)                                                                                       \
    X(StaticTrack, Track)                                                                                      \
    X(SourceClip, StructuralComponent)                                                                         \
    X(DMSegment, StructuralComponent)                                                                          \
    X(TimecodeComponent, StructuralComponent)                                                                  \
    X(DMSourceClip, SourceClip)                                                                                \
    X(FileDescriptor, GenericDescriptor)                                                                       \
    X(PhysicalDescriptor, GenericDescriptor)                                                                   \
    X(GenericPictureEssenceDescriptor, FileDescriptor)                                                         \
    X(GenericSoundEssenceDescriptor, FileDescriptor)                                                           \
    X(GenericDataEssenceDescriptor, FileDescriptor)                                                            \
    X(MultipleDescriptor, FileDescriptor)                                                                      \
    X(SMPTE331MTimeDateItemDescriptor, FileDescriptor)                                                         \
    X(CDCIEssenceDescriptor, GenericPictureEssenceDescriptor)                                                  \
    X(RGBAEssenceDescriptor, GenericPictureEssenceDescriptor)                                                  \
    X(MPEG2VideoDescriptor, CDCIEssenceDescriptor)                                                             \
    X(WAVEAudioEssenceDescriptor, GenericSoundEssenceDescriptor)                                               \
    X(AES3AudioEssenceDescriptor, WAVEAudioEssenceDescriptor)                                                  \
    X(ANCPacketsDescriptor, GenericDataEssenceDescriptor)                                                      \
    X(VBIDataDescriptor, GenericDataEssenceDescriptor)                                                         \
    X(JPEG2000PictureSubDescriptor, SubDescriptor)                                                             \
    X(NetworkLocator, Locator)                                                                                 \
    X(TextLocator, Locator)                                                                                    \
    X(WAVEAudioPhysicalDescriptor, PhysicalDescriptor)

namespace Vellum
{
namespace Metadata
{
class MetadataSet;

namespace Structural
{
#define VELLUM_DECLARE_STRUCTURAL_CLASS(Class, Base) class Class;
VELLUM_STRUCTURAL_SET_CLASSES(VELLUM_DECLARE_STRUCTURAL_CLASS)
#undef VELLUM_DECLARE_STRUCTURAL_CLASS
} // namespace Structural

namespace Visitors
{
class MetadataSetVisitor
{
public:
    VELLUM_CLASS_ALLOCATION
    virtual ~MetadataSetVisitor() {}
    virtual void visit(MetadataSet const & set) = 0;
#define VELLUM_CONST_VISIT(Class, Base) virtual void visit(Structural::Class const & set) = 0;
    VELLUM_STRUCTURAL_SET_CLASSES(VELLUM_CONST_VISIT)
#undef VELLUM_CONST_VISIT
};

class NonConstMetadataSetVisitor
{
public:
    VELLUM_CLASS_ALLOCATION
    virtual ~NonConstMetadataSetVisitor() {}
    virtual void visit(MetadataSet & set) = 0;
#define VELLUM_NON_CONST_VISIT(Class, Base) virtual void visit(Structural::Class & set) = 0;
    VELLUM_STRUCTURAL_SET_CLASSES(VELLUM_NON_CONST_VISIT)
#undef VELLUM_NON_CONST_VISIT
};

// Ignore every set.
class NullMetadataSetVisitor : public MetadataSetVisitor
{
public:
    VELLUM_CLASS_ALLOCATION
    void visit(MetadataSet const &) override {}
#define VELLUM_NULL_CONST_VISIT(Class, Base) void visit(Structural::Class const &) override {}
    VELLUM_STRUCTURAL_SET_CLASSES(VELLUM_NULL_CONST_VISIT)
#undef VELLUM_NULL_CONST_VISIT
};

class NullNonConstMetadataSetVisitor : public NonConstMetadataSetVisitor
{
public:
    VELLUM_CLASS_ALLOCATION
    void visit(MetadataSet &) override {}
#define VELLUM_NULL_NON_CONST_VISIT(Class, Base) void visit(Structural::Class &) override {}
    VELLUM_STRUCTURAL_SET_CLASSES(VELLUM_NULL_NON_CONST_VISIT)
#undef VELLUM_NULL_NON_CONST_VISIT
};
} // namespace Visitors
} // namespace Metadata
} // namespace Vellum
