#include <gtest/gtest.h>

#include "MetaMetadata/MetaMetadataTestSupport.h"
#include "MetaMetadata/StandardRegisterTestTable.h"
#include "Metadata/DMS1/ClipFrameworkClipKind.h"
#include "Metadata/Structural/NullValues.h"
#include "Metadata/Structural/Wrappings.h"

using namespace Vellum;
using namespace Vellum::MetaMetadataTest;
using namespace Vellum::RegisterTable;

namespace
{
std::string dotted(Types::UniversalLabel const & label) { return n(label.toString(Types::Dotted)); }
std::string dotted(KLV::Key const & key) { return n(key.toString(Types::Dotted)); }
} // namespace

TEST(NamedConstants, EveryConstantHasItsRegisterValue)
{
    // Counts of the eight namespaces, 1 + 34 + 32 keys and 7 + 188 + 9 + 193 + 8 labels, and the
    // wrapping label.
    EXPECT_EQ(67u, sizeof(namedKeys) / sizeof(namedKeys[0]));
    EXPECT_EQ(406u, sizeof(namedLabels) / sizeof(namedLabels[0]));
    for (NamedKeyRow const & row : namedKeys)
    {
        KLV::Key const & key = row.function();
        EXPECT_EQ(row.dotted, dotted(key)) << row.name;
        // A local set: 0x53 where the register writes 0x7f.
        EXPECT_EQ(0x53, key[5]) << row.name;
        EXPECT_EQ(&key, &row.function()) << row.name; // one object, made once
    }
    for (NamedLabelRow const & row : namedLabels)
    {
        Types::UniversalLabel const & label = row.function();
        EXPECT_EQ(row.dotted, dotted(label)) << row.name;
        EXPECT_EQ(&label, &row.function()) << row.name;
    }
}

TEST(NamedConstants, WrappingNullUMIDsAndClipKinds)
{
    using namespace Metadata;
    EXPECT_EQ("06.0e.2b.34.04.01.01.03.0d.01.03.01.02.7f.01.00", dotted(Structural::Wrappings::multipleWrapping()));

    Types::UMID32 const & umid32 = Structural::DistiguishedValue::nullUMID32();
    Types::UMID64 const & umid64 = Structural::NullValues::nullUMID64();
    EXPECT_EQ(Types::UMID32(), umid32);
    EXPECT_EQ(Types::UMID64(), umid64);

    std::string kinds;
    for (int kind = 0; kind <= 6; ++kind)
        kinds += n(DMS1::clipKindToWString(static_cast<DMS1::ClipFrameworkClipKind>(kind))) + "|";
    EXPECT_EQ("Moving Pictures|Still|Graphic|Sound|Other|Unknown|Unknown|", kinds);
}
