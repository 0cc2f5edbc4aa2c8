#pragma once
// The host's side of a Generic Container: an analyzer wraps one elementary stream, knows its edit
// rate, descriptor and sizes, and hands out one edit unit at a time. Its kind decides the item of
// the content package that it belongs to.

#include "GenericContainer/EditUnit.h"
#include "KLV/Key.h"
#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Templates/Rational.h"
#include "Types/UniversalLabel.h"
#include "Utils/SMPTETimeCode.h"

namespace Vellum
{
namespace Metadata
{
class PartitionMetadata;
namespace Structural
{
class FileDescriptor;
class SourcePackage;
}
}

namespace GenericContainer
{
class EssenceAnalyzer
{
public:
    VELLUM_CLASS_ALLOCATION

    enum EssenceAnalyzerType
    {
        System = 0,
        Compound = 1,
        Picture = 2,
        Sound = 3,
        Data = 4
    };

    EssenceAnalyzer() {}
    EssenceAnalyzer(EssenceAnalyzer const &) {}
    EssenceAnalyzer & operator=(EssenceAnalyzer const &) { return *this; }
    virtual ~EssenceAnalyzer() {}

    // The stream's own edit rate; may differ from the content package rate.
    virtual Templates::Rational<int> editRate() const = 0;
    // Tells the analyzer the content package rate; it may ignore it.
    virtual void editRate(Templates::Rational<int> const & rate) = 0;
    virtual uint64 maximumToSkip() const = 0;
    virtual void maximumToSkip(uint64 count) = 0;
    // Reads ahead what the analyzer needs to describe the stream; false: the format is invalid.
    virtual bool preload() = 0;
    // Creates the analyzer's track(s) and descriptor in the package (normally with a
    // MetadataBuilder). The result is not used.
    virtual bool setMetadata(Metadata::PartitionMetadata & metadata, Metadata::Structural::SourcePackage * package,
                             unsigned int trackNumber, unsigned int trackId) = 0;
    // Fills the next unit; false, or `valid` false, when nothing came.
    virtual bool nextEditUnit(EditUnit & unit) = 0;
    // Once at the end: bring durations in the metadata up to date. The result is not used.
    virtual bool finalize() = 0;
    // The essence container label of the stream.
    virtual Types::UniversalLabel universalLabel() const = 0;
    // Every edit unit has the same size.
    virtual bool isCBE() const = 0;
    virtual void boundedEditUnitSize(int size) = 0;
    // The size of one edit unit of a constant stream, or the largest of a variable one; 0 when
    // neither is known.
    virtual unsigned int boundedEditUnitSize() const = 0;
    // Long-GOP with reordering: the index entries carry temporal and key frame offsets.
    virtual bool containsTemporalDependencies() const = 0;
    virtual Utils::TimeCode currentTimeCode() const = 0;
    // Byte 12 of the element key.
    virtual unsigned char itemTypeIdentifier() const = 0;
    // Byte 14 of the element key.
    virtual unsigned char essenceElementType() const = 0;
    // The container's KAG is the least common multiple of these.
    virtual unsigned int requiredKAGSize() const = 0;
    // The stream is finished.
    virtual bool done() = 0;
    virtual EssenceAnalyzerType essenceAnalyzerType() = 0;

    // The element key that the analyzer wants instead of the one computed for it.
    virtual KLV::Key proposeKey(KLV::Key const & key) { return key; }
    // A last word on the descriptor that the analyzer's own setMetadata made.
    virtual void customizeDescriptor(Metadata::Structural::FileDescriptor &) {}
    // The host announces the stream's duration in seconds.
    virtual void setDuration(Templates::Rational<int> const &) {}
    // In seconds; -1/1 when unknown.
    virtual Templates::Rational<int> getDuration() const { return Templates::Rational<int>(-1, 1); }
    virtual void setPreChargeDuration(Templates::Rational<int> const &) {}
    virtual Templates::Rational<int> getPreChargeDuration() const { return Templates::Rational<int>(0, 1); }
};

class SystemAnalyzer : public EssenceAnalyzer
{
public:
    EssenceAnalyzerType essenceAnalyzerType() override { return System; }
};

class CompoundAnalyzer : public EssenceAnalyzer
{
public:
    EssenceAnalyzerType essenceAnalyzerType() override { return Compound; }
};

class PictureAnalyzer : public EssenceAnalyzer
{
public:
    EssenceAnalyzerType essenceAnalyzerType() override { return Picture; }
};

class SoundAnalyzer : public EssenceAnalyzer
{
public:
    EssenceAnalyzerType essenceAnalyzerType() override { return Sound; }
};

class DataAnalyzer : public EssenceAnalyzer
{
public:
    EssenceAnalyzerType essenceAnalyzerType() override { return Data; }
};

// An analyzer that also derives from this one fills the content of a unit it can't give from its
// stream (before its own start, or after its end when all essence is multiplexed). The worker
// sets `duration` and `valid`.
class NullEssenceProvider
{
public:
    VELLUM_CLASS_ALLOCATION
    virtual ~NullEssenceProvider() {}
    virtual void nullEditUnit(EditUnit & unit) = 0;
};

// A source of consecutive time codes, such as the one a system item carries.
class TimeCodeProvider
{
public:
    VELLUM_CLASS_ALLOCATION
    virtual ~TimeCodeProvider() {}
    virtual Utils::TimeCode nextTimeCode() = 0;
    virtual void roundedFrameRate(unsigned char rate) = 0;
};

// For hosts that fill the metadata of a system item themselves.
class SystemItemMetadataProvider
{
public:
    VELLUM_CLASS_ALLOCATION
    SystemItemMetadataProvider() {}
    SystemItemMetadataProvider(SystemItemMetadataProvider const &) {}
    SystemItemMetadataProvider & operator=(SystemItemMetadataProvider const &) { return *this; }
    virtual ~SystemItemMetadataProvider() {}
    // Appends the value of the system item's metadata for the next content package.
    virtual void systemItemMetadata(DataIO::Chain & value) = 0;
};
} // namespace GenericContainer
} // namespace Vellum
