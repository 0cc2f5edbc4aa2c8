#pragma once
// Drains a KLV source as a writer would (next until it reports the end, then the deferred
// updates patched in), and reads the bytes back packet by packet with the library's KLV reader.

#include <set>
#include <vector>

#include "DataIO/Block.h"
#include "KLV/Key.h"
#include "MXFIO/KLVSource.h"
#include "Templates/Rational.h"

namespace VellumTest
{
struct DrainedSource
{
    std::vector<unsigned char> bytes;
    // The blocks under every slice that came out.
    std::set<Vellum::DataIO::Block const *> blocks;
    // Per call of next: where its data started, and the duration and boundary it reported.
    std::vector<Vellum::uint64> starts;
    std::vector<Vellum::Templates::Rational<Vellum::int64>> durations;
    std::vector<bool> boundaries;
    // The updaters given, and how many had a patch to apply.
    std::size_t updaters = 0;
    std::size_t patched = 0;
};

// Calls next until it returns false (at most `maximumCalls` times); `finish` runs before the
// updaters are applied (a Source's finalize, for one).
template <class Finish>
DrainedSource drainSource(Vellum::MXFIO::KLVSource & source, Finish finish, std::size_t maximumCalls = 100000);

DrainedSource drainSource(Vellum::MXFIO::KLVSource & source);

struct KlvRecord
{
    Vellum::KLV::Key key;
    Vellum::uint64 offset;
    unsigned char berLength;
    std::vector<unsigned char> value;
};

// All packets of `bytes`; throws what the reader throws.
std::vector<KlvRecord> readKlv(std::vector<unsigned char> const & bytes);
// The packets whose key isn't a fill key.
std::vector<KlvRecord> withoutFill(std::vector<KlvRecord> const & records);
// Bytes 7 and 15 of a fill key vary; the rest is fixed.
bool isFillKey(Vellum::KLV::Key const & key);
} // namespace VellumTest

#include "Support/ContainerDrain.inl"
