#include "Support/Mxf.h"

#include <algorithm>

#include "Metadata/Structural/Initialize.h"

namespace VellumTest
{
Vellum::Templates::SharedPtr<Vellum::MetaMetadata::Dictionary> dictionary()
{
    Vellum::Metadata::Structural::initialize();
    static Vellum::Templates::SharedPtr<Vellum::MetaMetadata::Dictionary> d =
        Vellum::MetaMetadata::createStandardDictionary();
    return d;
}

Thrown thrownBy(std::function<void()> const & call)
{
    try
    {
        call();
    }
    catch (Vellum::Exceptions::InvalidLength const & e)
    {
        return Thrown{e.errorCode(), Vellum::Utils::narrow(e.message()).c_str(),
                      Bytes(e.readData(), e.readData() + e.readDataLength())};
    }
    catch (Vellum::Exceptions::BaseException const & e)
    {
        return Thrown{e.errorCode(), Vellum::Utils::narrow(e.message()).c_str(), Bytes()};
    }
    catch (...)
    {
        return Thrown{-1, "", Bytes()};
    }
    return Thrown{0, "", Bytes()};
}

int KlvItem::partitionKind() const
{
    static unsigned char const prefix[13] = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x05, 0x01,
                                             0x01, 0x0d, 0x01, 0x02, 0x01, 0x01};
    return std::equal(prefix, prefix + 13, key) && key[13] >= 2 && key[13] <= 4 && key[14] <= 4 ? key[13] : 0;
}

std::vector<KlvItem> klvWalk(Bytes const & file, size_t from)
{
    std::vector<KlvItem> items;
    size_t p = from;
    while (p + 17 <= file.size())
    {
        KlvItem item;
        item.offset = p;
        std::copy(file.begin() + long(p), file.begin() + long(p) + 16, item.key);
        unsigned char b = file[p + 16];
        size_t header = 17;
        unsigned long long length = b;
        if (b & 0x80)
        {
            length = 0;
            for (unsigned i = 0; i < (b & 0x7fu) && p + 17 + i < file.size(); ++i)
                length = (length << 8) | file[p + 17 + i];
            header += b & 0x7fu;
        }
        item.valueOffset = p + header;
        item.length = length;
        items.push_back(item);
        if (length > file.size() - std::min(file.size(), p + header))
            break;
        p += header + size_t(length);
    }
    return items;
}

std::vector<size_t> partitionsOfKind(Bytes const & file, int kind)
{
    std::vector<size_t> offsets;
    for (KlvItem const & item : klvWalk(file))
        if (item.partitionKind() == kind)
            offsets.push_back(item.offset);
    return offsets;
}
} // namespace VellumTest
