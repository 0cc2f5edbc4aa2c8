#include "DataIO/ChainSinkDataAdapter.h"

namespace Vellum
{
namespace DataIO
{
ChainSinkDataAdapter::ChainSinkDataAdapter(DataSink & sink) : sink_(&sink) {}

ChainSinkDataAdapter::~ChainSinkDataAdapter() {}

void ChainSinkDataAdapter::write(Chain & chain)
{
    for (Chain::const_iterator i = chain.begin(); i != chain.end(); ++i)
        sink_->write(i->begin(), i->size());
}
} // namespace DataIO
} // namespace Vellum
