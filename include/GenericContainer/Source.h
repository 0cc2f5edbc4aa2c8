#pragma once
// The KLV stream of one Generic Container: content packages (or clips) with their index
// generator and the Source Package that describes them. Made by Multiplexer::Mux::commit or
// ClipWrapper::Wrapper::commit, drained by MXFIO::PartitionWriter.

#include "MXFIO/IndexTableGenerator.h"
#include "MXFIO/KLVSource.h"
#include "Templates/AutoPtr.h"
#include "Templates/Rational.h"

namespace Vellum
{
namespace Types
{
class UniversalLabel;
}
namespace Metadata
{
namespace Structural
{
class SourcePackage;
}
}

namespace GenericContainer
{
class Source : public MXFIO::KLVSource
{
public:
    // Closes tracks and durations after the last `next`.
    virtual void finalize() = 0;
    virtual Metadata::Structural::SourcePackage & sourcePackage() = 0;
    virtual Types::UniversalLabel const & essenceContainerUL() const = 0;
    virtual Templates::Rational<int> const & packageRate() const = 0;
    // Every content package has the same size.
    virtual bool isCBE() const = 0;
    virtual MXFIO::IndexTableGenerator * indexTableGenerator() = 0;
    virtual void indexTableGenerator(Templates::auto_ptr<MXFIO::IndexTableGenerator> generator) = 0;
};
}
}
