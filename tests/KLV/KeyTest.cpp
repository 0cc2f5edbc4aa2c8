#include <gtest/gtest.h>

#include <sstream>

#include "KLV/KLVTestSupport.h"
#include "KLV/Key.h"
#include "KLV/KeyPredicates.h"
#include "KLV/Value.h"

using namespace Vellum;
using namespace Vellum::KLVTest;

namespace
{
KLV::Key keyOf(char const * dotted)
{
    return KLV::Key(w(dotted).c_str(), Types::Dotted);
}

char const PARTITION_PACK[] = "06.0e.2b.34.02.05.01.01.0d.01.02.01.01.02.04.00";
char const PREFACE[] = "06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.2f.00";
char const ESSENCE[] = "06.0e.2b.34.01.02.01.01.0d.01.03.01.15.01.05.01";
} // namespace

TEST(Key, BytesCopiesAndComparison)
{
    unsigned char bytes[16] = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01, 0x01,
                               0x0d, 0x01, 0x01, 0x01, 0x01, 0x01, 0x2f, 0x00};
    KLV::Key key(bytes);
    bytes[15] = 0x77; // the key holds its own copy
    EXPECT_EQ(0x00, key[15]);
    EXPECT_EQ(16, key.size());
    EXPECT_EQ(16u, key.serializedSize());
    EXPECT_EQ(0x53, key.rawBuffer()[5]);

    KLV::Key copy(key);
    EXPECT_TRUE(copy == key);
    copy[15] = 0x01; // deep copy: the original stays
    EXPECT_EQ(0x00, key[15]);
    EXPECT_TRUE(copy != key);
    EXPECT_TRUE(key < copy);
    EXPECT_FALSE(copy < key);

    // Unsigned order: 0x80 sorts after 0x7f.
    KLV::Key low = keyOf("7f.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00");
    KLV::Key high = keyOf("80.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00");
    EXPECT_TRUE(low < high);
    EXPECT_FALSE(high < low);

    copy = low;
    EXPECT_TRUE(copy == low);

    Thrown t = thrownBy([&] { (void)key[16]; });
    EXPECT_EQ(Exceptions::IndexOutOfBounds::ERROR_CODE, t.code);
    EXPECT_EQ("Index out of bounds", t.message);
}

TEST(Key, ReadsItselfFromAValue)
{
    Bytes data(18, 0x42);
    data[16] = 0x01;
    DataIO::Memory::MemoryDataSource source(data.data(), data.size());
    {
        KLV::Value value(source, 17);
        KLV::Key key(value);
        EXPECT_EQ(KLV::Key(data.data()), key);
        EXPECT_EQ(1u, value.remaining());
    }
    source.seek(0);
    KLV::Value shortValue(source, 10);
    Thrown t = thrownBy([&] { KLV::Key key(shortValue); });
    EXPECT_EQ(Exceptions::InvalidLength::ERROR_CODE, t.code);
    EXPECT_EQ("Invalid data size in Value", t.message);
}

TEST(Key, TextForms)
{
    KLV::Key preface = keyOf(PREFACE);
    EXPECT_EQ(PREFACE, n(preface.toString(Types::Dotted)));
    EXPECT_EQ("1.3.53.2.83.1.1.13.1.1.1.1.1.47", n(preface.toString(Types::OID)));
    EXPECT_EQ("1.3.53.2.83.1.1.13.1.1.1.1.1.47", n(preface.toString(Types::TypeDefault)));
    EXPECT_EQ(preface, KLV::Key(w("1.3.53.2.83.1.1.13.1.1.1.1.1.47").c_str(), Types::OID));
    EXPECT_EQ(preface, KLV::Key(w("1.3.53.2.83.1.1.13.1.1.1.1.1.47").c_str(), Types::TypeDefault));

    // Trailing zeros give a shorter OID that loads back to the same bytes.
    KLV::Key partition = keyOf(PARTITION_PACK);
    std::string oid = n(partition.toString(Types::OID));
    EXPECT_EQ("1.3.53.2.5.1.1.13.1.2.1.1.2.4", oid);
    EXPECT_EQ(partition, KLV::Key(w(oid.c_str()).c_str(), Types::OID));

    std::ostringstream stream;
    stream << preface;
    EXPECT_EQ(PREFACE, stream.str());

    for (Types::StringRepresentationEncodingType kind : {Types::Hexadecimal, Types::RFC4122})
    {
        Thrown t = thrownBy([&] { KLV::Key key(w("0x00").c_str(), kind); });
        EXPECT_EQ(Exceptions::InvalidFormat::ERROR_CODE, t.code);
        EXPECT_EQ("Don't know how to initialize Key in the given string representation format", t.message);
        t = thrownBy([&] { preface.toString(kind); });
        EXPECT_EQ(Exceptions::InvalidFormat::ERROR_CODE, t.code);
        EXPECT_EQ("Don't know how to represent Key in the given string representation format", t.message);
    }
    Thrown t = thrownBy([&] { KLV::Key key(w("1.3.52.2").c_str(), Types::OID); });
    EXPECT_EQ(Exceptions::InvalidLabel::ERROR_CODE, t.code);
    t = thrownBy([&] { keyOf("06.0e.2b"); });
    EXPECT_EQ(Exceptions::InvalidLength::ERROR_CODE, t.code);
}

TEST(Key, FieldLengthsOfLocalSets)
{
    KLV::Key preface = keyOf(PREFACE);
    EXPECT_EQ(2, preface.lengthFieldLength());
    EXPECT_EQ(2, preface.localTagFieldLength());

    KLV::Key key = preface;
    struct Case
    {
        unsigned char byte5;
        unsigned lengthField;
        unsigned tagField;
    };
    // Bits 5-6 give the length field, bits 3-4 the tag field.
    Case const cases[] = {{0x03, 0, 1}, {0x0b, 0, 1}, {0x13, 0, 2}, {0x1b, 0, 4},
                          {0x23, 1, 1}, {0x43, 2, 1}, {0x63, 4, 1}, {0x7b, 4, 4}};
    for (Case const & c : cases)
    {
        key[5] = c.byte5;
        EXPECT_EQ(c.lengthField, key.lengthFieldLength()) << int(c.byte5);
        EXPECT_EQ(c.tagField, key.localTagFieldLength()) << int(c.byte5);
    }
    // Not local sets: a fixed pack, an essence key, a local-set byte under another registry.
    EXPECT_EQ(0, keyOf(PARTITION_PACK).lengthFieldLength());
    EXPECT_EQ(0, keyOf(PARTITION_PACK).localTagFieldLength());
    EXPECT_EQ(0, keyOf(ESSENCE).lengthFieldLength());
    EXPECT_EQ(0, keyOf("06.0e.2b.34.01.53.01.01.0d.01.01.01.01.01.2f.00").localTagFieldLength());
}

TEST(KeyPredicates, ClassifyRealKeys)
{
    KLV::Key partition = keyOf(PARTITION_PACK);
    EXPECT_TRUE(KLV::isFixedPack(partition));
    EXPECT_FALSE(KLV::isLocalSet(partition));
    EXPECT_FALSE(KLV::isMXFDefaultLocalSet(partition));
    EXPECT_FALSE(KLV::isMetadataSet(partition));
    EXPECT_FALSE(KLV::isEssence(partition));
    EXPECT_FALSE(KLV::isFillItem(partition));
    EXPECT_FALSE(KLV::isIndexTableKlvSegment(partition));

    KLV::Key preface = keyOf(PREFACE);
    EXPECT_TRUE(KLV::isLocalSet(preface));
    EXPECT_TRUE(KLV::isMXFDefaultLocalSet(preface));
    EXPECT_TRUE(KLV::isStructuralMetadataSet(preface));
    EXPECT_FALSE(KLV::isDescriptiveMetadataSet(preface));
    EXPECT_TRUE(KLV::isMetadataSet(preface));
    EXPECT_FALSE(KLV::isFixedPack(preface));
    EXPECT_FALSE(KLV::isEssence(preface));

    KLV::Key essence = keyOf(ESSENCE);
    EXPECT_TRUE(KLV::isEssence(essence));
    EXPECT_FALSE(KLV::isLocalSet(essence));
    EXPECT_FALSE(KLV::isFixedPack(essence));
    EXPECT_FALSE(KLV::isMetadataSet(essence));

    KLV::Key index(KLV::INDEXTABLE_SEGMENT_KEY);
    EXPECT_TRUE(KLV::isIndexTableKlvSegment(index));
    EXPECT_TRUE(KLV::isLocalSet(index));
    // Bytes 6 to 12 are not those of structural sets.
    EXPECT_FALSE(KLV::isStructuralMetadataSet(index));
    index[15] = 0x02;
    EXPECT_FALSE(KLV::isIndexTableKlvSegment(index));

    // A structural set with a non-zero last byte is not one.
    KLV::Key preface1 = preface;
    preface1[15] = 0x01;
    EXPECT_FALSE(KLV::isStructuralMetadataSet(preface1));

    // Descriptive sets: any local set coding, bytes 6 to 11 01 01 0d 01 04 01.
    KLV::Key descriptive = keyOf("06.0e.2b.34.02.13.01.01.0d.01.04.01.01.01.01.00");
    EXPECT_TRUE(KLV::isDescriptiveMetadataSet(descriptive));
    EXPECT_TRUE(KLV::isMetadataSet(descriptive));
    EXPECT_FALSE(KLV::isStructuralMetadataSet(descriptive));
    EXPECT_FALSE(KLV::isMXFDefaultLocalSet(descriptive));

    // Generic Container keys in the groups registry, as a local set or as a pack.
    EXPECT_TRUE(KLV::isEssence(keyOf("06.0e.2b.34.02.53.01.01.0d.01.03.01.04.01.01.00")));
    EXPECT_TRUE(KLV::isEssence(keyOf("06.0e.2b.34.02.05.01.01.0d.01.03.01.04.01.01.00")));
    EXPECT_FALSE(KLV::isEssence(keyOf("06.0e.2b.34.02.04.01.01.0d.01.03.01.04.01.01.00")));
    EXPECT_FALSE(KLV::isEssence(keyOf("06.0e.2b.34.02.53.01.01.0d.01.03.02.04.01.01.00")));
    // The wrong registry byte in front of a group pattern.
    EXPECT_FALSE(KLV::isLocalSet(keyOf("06.0e.2b.34.01.53.01.01.0d.01.01.01.01.01.2f.00")));
    EXPECT_FALSE(KLV::isFixedPack(keyOf("06.0e.2b.35.02.05.01.01.0d.01.02.01.01.02.04.00")));
    // An essence element key with another byte 11 is no essence.
    EXPECT_FALSE(KLV::isEssence(keyOf("06.0e.2b.34.01.02.01.01.0d.01.03.02.15.01.05.01")));
}

TEST(KeyPredicates, FillItems)
{
    KLV::Key fill = KLV::fillItemKey();
    EXPECT_EQ("06.0e.2b.34.01.01.01.01.03.01.02.10.01.00.00.00", n(fill.toString(Types::Dotted)));
    EXPECT_TRUE(KLV::isFillItem(fill));
    // Byte 7, the registry version, differs between writers and is not looked at.
    KLV::Key older = keyOf("06.0e.2b.34.01.01.01.02.03.01.02.10.01.00.00.00");
    EXPECT_TRUE(KLV::isFillItem(older));
    KLV::Key other = keyOf("06.0e.2b.34.01.01.01.01.03.01.02.10.02.00.00.00");
    EXPECT_FALSE(KLV::isFillItem(other));

    // Byte 15 follows the settable fill key.
    KLV::fillItemKey(0x01);
    EXPECT_EQ(0x01, KLV::fillItemKey()[15]);
    EXPECT_EQ(0x01, KLV::FILL_ITEM_PACK_KEY[15]);
    EXPECT_FALSE(KLV::isFillItem(fill));
    KLV::Key fill1 = keyOf("06.0e.2b.34.01.01.01.01.03.01.02.10.01.00.00.01");
    EXPECT_TRUE(KLV::isFillItem(fill1));
    KLV::fillItemKey(0x00);
    EXPECT_TRUE(KLV::isFillItem(fill));
    EXPECT_FALSE(KLV::isFillItem(fill1));
    EXPECT_EQ(fill, KLV::fillItemKey());
}
