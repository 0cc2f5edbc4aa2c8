#pragma once
// Writes chains to a plain byte sink.

#include "DataIO/Chain.h"
#include "DataIO/DataSink.h"

namespace Vellum
{
namespace DataIO
{
class ChainSinkDataAdapter : public ChainSink
{
public:
    // The sink is not owned and must outlive the adapter.
    explicit ChainSinkDataAdapter(DataSink & sink);
    ~ChainSinkDataAdapter() override;

    // Writes every slice in order; the chain is left as it was.
    void write(Chain & chain) override;

private:
    DataSink * sink_;
};
} // namespace DataIO
} // namespace Vellum
