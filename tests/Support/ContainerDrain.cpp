// Draining KLV sources and reading their bytes back.

#include "Support/ContainerDrain.h"

#include "DataIO/Memory/MemoryDataSource.h"
#include "KLV/KeyConstants.h"
#include "KLV/Packet.h"
#include "KLV/Reader.h"
#include "KLV/Value.h"

namespace VellumTest
{
using namespace Vellum;

namespace Detail
{
void appendChain(DataIO::Chain const & chain, DrainedSource & out)
{
    for (DataIO::Slice const & slice : chain)
    {
        out.blocks.insert(slice.block());
        out.bytes.insert(out.bytes.end(), slice.begin(), slice.end());
    }
}

void applyUpdater(MXFIO::FutureUpdater & updater, uint64 start, DrainedSource & out)
{
    if (!updater.pending())
        return;
    DataIO::Chain patch;
    uint64 offset = updater.apply(start, patch);
    for (DataIO::Slice const & slice : patch)
        for (unsigned char const * p = slice.begin(); p != slice.end() && offset < out.bytes.size(); ++p)
            out.bytes[offset++] = *p;
    ++out.patched;
}
} // namespace Detail

DrainedSource drainSource(MXFIO::KLVSource & source)
{
    return drainSource(source, [] {});
}

std::vector<KlvRecord> readKlv(std::vector<unsigned char> const & bytes)
{
    DataIO::Memory::MemoryDataSource data(bytes.data(), bytes.size());
    KLV::Reader reader(data);
    std::vector<KlvRecord> records;
    while (data.remaining() != 0)
    {
        uint64 skipped = 0;
        Templates::auto_ptr<KLV::Packet> packet = reader.nextKLV(skipped, 0);
        uint64 const offset = data.absoluteOffset() - 16 - packet->berLength();
        std::vector<unsigned char> value(packet->length());
        if (!value.empty())
            packet->value().readValue(value.data(), value.size());
        records.push_back(KlvRecord{packet->key(), offset, packet->berLength(), value});
    }
    return records;
}

bool isFillKey(KLV::Key const & key)
{
    unsigned char const * a = key.rawBuffer();
    unsigned char const * b = KLV::fillItemKey().rawBuffer();
    for (unsigned i = 0; i < 15; ++i)
        if (i != 7 && a[i] != b[i])
            return false;
    return true;
}

std::vector<KlvRecord> withoutFill(std::vector<KlvRecord> const & records)
{
    std::vector<KlvRecord> out;
    for (KlvRecord const & r : records)
        if (!isFillKey(r.key))
            out.push_back(r);
    return out;
}
} // namespace VellumTest
