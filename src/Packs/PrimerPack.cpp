#include "Packs/PrimerPack.h"

#include <algorithm>
#include <iterator>

#include "ByteCoders/BER.h"
#include "Exceptions/Exceptions.h"
#include "KLV/Packet.h"
#include "KLV/Value.h"
#include "Types/Integers.h"

namespace Vellum
{
namespace Packs
{
namespace
{
unsigned char const PRIMER_KEY[16] = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x05, 0x01, 0x01,
                                      0x0d, 0x01, 0x02, 0x01, 0x01, 0x05, 0x01, 0x00};
// A tag and a label.
unsigned int const ITEM_SIZE = 18;
} // namespace

struct PrimerPack::Impl
{
    VELLUM_CLASS_ALLOCATION
    typedef Templates::map<Types::LocalTag, Types::UniversalLabel> TagMap;
    typedef Templates::map<Types::UniversalLabel, Types::LocalTag> LabelMap;

    Impl() : berLength(4) {}

    Entry entryAt(unsigned int index) const
    {
        if (index >= tags.size())
            throw Exceptions::IndexOutOfBounds("Trying to access an element beyond the end of the data", __FILE__,
                                               __LINE__);
        TagMap::const_iterator it = tags.begin();
        std::advance(it, index);
        return Entry(it->first, it->second);
    }

    unsigned char berLength;
    Templates::vector<Entry> duplicates;
    TagMap tags;
    LabelMap labels;
    // The tags of `tags` in the order they came: a Primer read from a file is written back in
    // the file's own order, byte for byte.
    Templates::vector<Types::LocalTag> order;
};

PrimerPack::PrimerPack() : impl_(new Impl) {}

PrimerPack::PrimerPack(KLV::Packet & packet) : impl_(nullptr)
{
    if (packet.key() != key())
        throw Exceptions::InvalidKey("Trying to create a Primer from a KLV with a invalid primerPack Key.", __FILE__,
                                     __LINE__);
    Templates::auto_ptr<Impl> impl(new Impl);
    impl->berLength = packet.berLength();
    KLV::Value & value = packet.value();
    unsigned int count = Types::UInt32(value).value();
    Types::UInt32 itemSize(value); // read and not used: entries are always a tag and a label
    (void)itemSize;
    impl_ = std::move(impl);
    // The count sizes nothing: a count beyond the data fails on the first missing entry.
    for (unsigned int i = 0; i < count; ++i)
    {
        Types::LocalTag tag(value);
        Types::UniversalLabel label(value);
        add(tag, label);
    }
}

PrimerPack::PrimerPack(PrimerPack const & other) : impl_(new Impl(*other.impl_)) {}

PrimerPack & PrimerPack::operator=(PrimerPack const & other)
{
    if (this != &other)
    {
        impl_.reset(new Impl(*other.impl_));
    }
    return *this;
}

PrimerPack::~PrimerPack() = default;

KLV::Key const & PrimerPack::key()
{
    static KLV::Key const k(PRIMER_KEY);
    return k;
}

unsigned char PrimerPack::berLength() const
{
    return impl_->berLength;
}

void PrimerPack::berLength(unsigned char length)
{
    impl_->berLength = length;
}

void PrimerPack::add(Types::LocalTag const & tag, Types::UniversalLabel const & label)
{
    if (impl_->tags.find(tag) != impl_->tags.end())
    {
        impl_->duplicates.push_back(Entry(tag, label));
        return;
    }
    impl_->tags.insert(Impl::TagMap::value_type(tag, label));
    impl_->order.push_back(tag);
    if (impl_->labels.find(label) != impl_->labels.end())
    {
        impl_->duplicates.push_back(Entry(tag, label));
        return;
    }
    impl_->labels.insert(Impl::LabelMap::value_type(label, tag));
}

bool PrimerPack::remove(Types::UniversalLabel const & label)
{
    Impl::LabelMap::iterator found = impl_->labels.find(label);
    if (found == impl_->labels.end())
        return false;
    if (impl_->tags.erase(found->second) != 0)
        impl_->order.erase(std::find(impl_->order.begin(), impl_->order.end(), found->second));
    impl_->labels.erase(found);
    return true;
}

Types::UniversalLabel const * PrimerPack::find(Types::LocalTag const & tag) const
{
    Impl::TagMap::const_iterator found = impl_->tags.find(tag);
    return found == impl_->tags.end() ? nullptr : &found->second;
}

Types::LocalTag const * PrimerPack::find(Types::UniversalLabel const & label) const
{
    Impl::LabelMap::const_iterator found = impl_->labels.find(label);
    return found == impl_->labels.end() ? nullptr : &found->second;
}

unsigned int PrimerPack::count() const
{
    return static_cast<unsigned int>(impl_->tags.size());
}

PrimerPack::Entry PrimerPack::at(unsigned int index) const
{
    return impl_->entryAt(index);
}

unsigned int PrimerPack::countDuplicates() const
{
    return static_cast<unsigned int>(impl_->duplicates.size());
}

PrimerPack::Entry PrimerPack::atDuplicates(unsigned int index) const
{
    if (index >= impl_->duplicates.size())
        throw Exceptions::IndexOutOfBounds("Trying to access an element beyond the end of the data", __FILE__,
                                           __LINE__);
    return impl_->duplicates[index];
}

void PrimerPack::serialize(DataIO::DataSink & sink) const
{
    sink.write(key().rawBuffer(), 16);
    unsigned char length[9];
    uint64 n = impl_->tags.size();
    ByteCoders::codeBER(ITEM_SIZE * n + 8, impl_->berLength, length);
    sink.write(length, impl_->berLength);
    Types::UInt32(static_cast<unsigned int>(n)).serialize(sink);
    Types::UInt32(ITEM_SIZE).serialize(sink);
    for (Templates::vector<Types::LocalTag>::const_iterator it = impl_->order.begin(); it != impl_->order.end(); ++it)
    {
        it->serialize(sink);
        impl_->tags.find(*it)->second.serialize(sink);
    }
}

uint64 PrimerPack::serializedSize() const
{
    return ITEM_SIZE * uint64(impl_->tags.size()) + 8 + 16 + impl_->berLength;
}

bool isPrimerPack(KLV::Key const & key)
{
    return key == PrimerPack::key();
}
} // namespace Packs
} // namespace Vellum
