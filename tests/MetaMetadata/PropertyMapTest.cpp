#include <gtest/gtest.h>

#include "Support/ThrownCompare.h"

#include "MetaMetadata/AttributeRequiredStatus.h"
#include "MetaMetadata/PropertyMap.h"
#include "MetaMetadata/MetaMetadataTestSupport.h"

using namespace Vellum;
using namespace Vellum::MetaMetadataTest;
using MetaMetadata::AttributeRequiredStatus;
using MetaMetadata::PropertyMap;

TEST(PropertyMap, AddOverwritesAndGetFindsTheLastValue)
{
    PropertyMap map;
    map.addProperty(w("name").c_str(), w("first").c_str());
    map.addProperty(w("name").c_str(), w("second").c_str());
    map.addProperty(w("other").c_str(), w("").c_str());
    EXPECT_EQ("second", property(map, "name"));
    EXPECT_EQ("", property(map, "other"));

    // Ordered by key, one entry for each name.
    std::vector<std::string> names;
    for (PropertyMap::const_iterator i = map.propertiesBegin(); i != map.propertiesEnd(); ++i)
        names.push_back(n(i->first));
    EXPECT_EQ((std::vector<std::string>{"name", "other"}), names);

    EXPECT_EQ(thrown<Exceptions::NotFound>("Property not found: Name"),
              thrownBy([&] { map.getProperty(w("Name").c_str()); }));
}

TEST(PropertyMap, CopiesAreDeepAndEqualityComparesEveryPair)
{
    PropertyMap a;
    a.addProperty(w("x").c_str(), w("1").c_str());
    PropertyMap b(a);
    EXPECT_TRUE(a == b);
    b.addProperty(w("x").c_str(), w("2").c_str());
    EXPECT_EQ("1", property(a, "x"));
    EXPECT_TRUE(a != b);

    PropertyMap c;
    c = a;
    c.addProperty(w("y").c_str(), w("1").c_str());
    EXPECT_FALSE(c == a || a == c); // more pairs, fewer pairs
    c = c;                          // assignment to itself keeps the map
    EXPECT_EQ("1", property(c, "y"));

    // A value that differs only in length.
    PropertyMap d;
    d.addProperty(w("x").c_str(), w("10").c_str());
    EXPECT_FALSE(a == d);
}

TEST(AttributeRequiredStatus, TranslatesBothWays)
{
    AttributeRequiredStatus & status = AttributeRequiredStatus::instance();

    struct Row
    {
        AttributeRequiredStatus::Status status;
        int value;
        char const * name;
    } const rows[] = {{AttributeRequiredStatus::Required, 0, "Req"},        {AttributeRequiredStatus::EncoderRequired, 1, "E/req"},
                      {AttributeRequiredStatus::DecoderRequired, 2, "D/req"}, {AttributeRequiredStatus::BestEffort, 3, "B.Effort"},
                      {AttributeRequiredStatus::Optional, 4, "Opt"}};
    for (Row const & row : rows)
    {
        EXPECT_EQ(row.value, int(row.status));
        EXPECT_EQ(row.name, n(status.statusToName(row.status)));
        EXPECT_EQ(row.status, status.statusFromName(w(row.name).c_str()));
    }

    EXPECT_EQ(thrown<Exceptions::NotFound>("StatusNotFound: req"), thrownBy([&] { status.statusFromName(w("req").c_str()); }));
    EXPECT_EQ(thrown<Exceptions::NotFound>("StatusNotFound: 7"),
              thrownBy([&] { status.statusToName(static_cast<AttributeRequiredStatus::Status>(7)); }));
}
