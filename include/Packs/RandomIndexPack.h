#pragma once
// The Random Index Pack at the end of a file: the byte offset and body SID of every partition.

#include "DataIO/DataSink.h"
#include "KLV/Key.h"
#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"

namespace Vellum
{
namespace KLV
{
class Packet;
}

namespace Packs
{
class RandomIndexPack
{
public:
    VELLUM_CLASS_ALLOCATION
    typedef Templates::multimap<unsigned int, uint64> SIDIndexedMap;
    typedef Templates::map<uint64, unsigned int> OffsetIndexedMap;

    RandomIndexPack();
    explicit RandomIndexPack(KLV::Packet & packet);
    RandomIndexPack(RandomIndexPack const & other);
    RandomIndexPack & operator=(RandomIndexPack const & other);
    ~RandomIndexPack();

    static KLV::Key const & key();

    unsigned char berLength() const;
    void berLength(unsigned char length);

    // An offset already present keeps its first SID.
    void add(unsigned int bodySID, uint64 offset);
    // The offsets of a SID, ascending; NotFound "BodySid not found: <sid>" when there is none.
    Templates::vector<uint64> find(unsigned int const & bodySID) const;
    unsigned int size() const;
    // 12 bytes an entry and the overall length.
    uint64 valueLength() const;
    uint64 serializedSize() const;
    void serialize(DataIO::DataSink & sink) const;

    SIDIndexedMap const & sidIndexedMap() const;
    OffsetIndexedMap const & offsetIndexedMap() const;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};

bool isRandomIndexPack(KLV::Key const & key);
} // namespace Packs
} // namespace Vellum
