#pragma once
// The decisions a host makes on how one essence container is read: which index table provider
// and which partition provider serve the seeks, whether the file may still grow, and how many edit
// units each body partition holds when the writer keeps that fixed.

#include "Platform/MallocAlloc.h"

namespace Vellum
{
namespace MXFIO
{
class ContentStorageProfile
{
public:
    VELLUM_CLASS_ALLOCATION

    enum IndexProviderChoice
    {
        // Let the reader choose from what the file offers.
        AutomaticIndex = 0,
        NoIndex,
        FullFileParseIndex,
        ParseOnRequestIndex,
        PositionEstimateIndex,
        StreamingIndex
    };

    enum PartitionProviderChoice
    {
        AutomaticPartitions = 0,
        BasicPartitions,
        EstimatePartitions,
        FixedEditUnitCountPartitions,
        StreamingPartitions
    };

    ContentStorageProfile() {}
    virtual ~ContentStorageProfile() {}

    // The number of edit units in each body partition of the container; 0 when not fixed.
    virtual unsigned int editUnitsPerPartition() const = 0;
    // Whether the file may still grow while it is read.
    virtual bool growingFile() const = 0;
    virtual IndexProviderChoice indexProvider() const = 0;
    virtual PartitionProviderChoice partitionProvider() const = 0;
};

// Leaves every choice to the reader.
class AutomaticContentStorageProfile : public ContentStorageProfile
{
public:
    unsigned int editUnitsPerPartition() const override { return 0; }
    bool growingFile() const override { return false; }
    IndexProviderChoice indexProvider() const override { return AutomaticIndex; }
    PartitionProviderChoice partitionProvider() const override { return AutomaticPartitions; }
};
} // namespace MXFIO
} // namespace Vellum
