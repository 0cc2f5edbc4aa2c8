#pragma once
// The Primer: the local tags of a partition's metadata sets and the labels they stand for.

#include "DataIO/DataSink.h"
#include "KLV/Key.h"
#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"
#include "Types/LocalTag.h"
#include "Types/UniversalLabel.h"

namespace Vellum
{
namespace KLV
{
class Packet;
}

namespace Packs
{
class PrimerPack
{
public:
    VELLUM_CLASS_ALLOCATION
    typedef Templates::pair<Types::LocalTag, Types::UniversalLabel> Entry;

    PrimerPack();
    // Duplicate tags or labels in the file go to the duplicates instead of failing.
    explicit PrimerPack(KLV::Packet & packet);
    PrimerPack(PrimerPack const & other);
    PrimerPack & operator=(PrimerPack const & other);
    ~PrimerPack();

    static KLV::Key const & key();

    unsigned char berLength() const;
    void berLength(unsigned char length);

    // A tag already present, or a label already present under another tag, also lands in the
    // duplicates; a label keeps its first tag.
    void add(Types::LocalTag const & tag, Types::UniversalLabel const & label);
    // False when the label is not there. The duplicates are left alone.
    bool remove(Types::UniversalLabel const & label);
    // Null when absent; valid until the entry is removed.
    Types::UniversalLabel const * find(Types::LocalTag const & tag) const;
    Types::LocalTag const * find(Types::UniversalLabel const & label) const;

    // Entries in tag order.
    unsigned int count() const;
    Entry at(unsigned int index) const;
    unsigned int countDuplicates() const;
    Entry atDuplicates(unsigned int index) const;

    // Entries in the order they were read or added, so that a Primer read from a file is written
    // back as it was.
    void serialize(DataIO::DataSink & sink) const;
    uint64 serializedSize() const;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};

bool isPrimerPack(KLV::Key const & key);
} // namespace Packs
} // namespace Vellum
