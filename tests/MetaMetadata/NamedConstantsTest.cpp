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

TEST(NamedConstants, ConstantsSharedByTwoNamespacesAgree)
{
    using namespace Metadata;
    EXPECT_EQ(MetadataKeys::preface(), Structural::StructuralMetadataKeys::preface());
    EXPECT_EQ(MetadataULs::instanceUID(), Structural::StructuralMetadataULs::instanceUID());
    EXPECT_EQ(MetadataULs::packageUID(), Structural::StructuralMetadataULs::packageUID());
    EXPECT_EQ(MetadataULs::thisGenerationUID(), Structural::StructuralMetadataULs::thisGenerationUID());
    EXPECT_EQ(MetadataULs::linkedPackageUID(), Structural::StructuralMetadataULs::linkedPackageUID());
    EXPECT_EQ(MetadataULs::trackID(), Structural::StructuralMetadataULs::trackID());
    EXPECT_EQ(MetadataULs::packages(), Structural::StructuralMetadataULs::packages());
    EXPECT_EQ(Types::UniversalLabel(), MetadataULs::null());
    EXPECT_EQ(Types::UniversalLabel(), Structural::StructuralMetadataULs::null());

    // A few values as the files carry them.
    EXPECT_EQ("06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.2f.00", dotted(MetadataKeys::preface()));
    EXPECT_EQ("06.0e.2b.34.01.01.01.01.01.01.15.02.00.00.00.00", dotted(MetadataULs::instanceUID()));
    EXPECT_EQ("06.0e.2b.34.04.01.01.01.01.03.02.02.01.00.00.00",
              dotted(Structural::DataDefinitionULs::picture()));
    EXPECT_EQ("06.0e.2b.34.04.01.01.01.01.03.02.01.01.00.00.00",
              dotted(Structural::DataDefinitionULs::timecode12MInactive()));
}

TEST(NamedConstants, WrappingNullUMIDsAndClipKinds)
{
    using namespace Metadata;
    EXPECT_EQ("06.0e.2b.34.04.01.01.03.0d.01.03.01.02.7f.01.00", dotted(Structural::Wrappings::multipleWrapping()));

    Types::UMID32 const & umid32 = Structural::DistiguishedValue::nullUMID32();
    Types::UMID64 const & umid64 = Structural::NullValues::nullUMID64();
    ASSERT_EQ(32, umid32.serializedSize());
    ASSERT_EQ(64, umid64.serializedSize());
    for (unsigned i = 0; i < 32; ++i)
        EXPECT_EQ(0, umid32.rawBuffer()[i]);
    for (unsigned i = 0; i < 64; ++i)
        EXPECT_EQ(0, umid64.rawBuffer()[i]);

    EXPECT_EQ("Moving Pictures", n(DMS1::clipKindToWString(DMS1::MovingPicturesClipKind)));
    EXPECT_EQ("Still", n(DMS1::clipKindToWString(DMS1::StillClipKind)));
    EXPECT_EQ("Graphic", n(DMS1::clipKindToWString(DMS1::GraphicClipKind)));
    EXPECT_EQ("Sound", n(DMS1::clipKindToWString(DMS1::SoundClipKind)));
    EXPECT_EQ("Other", n(DMS1::clipKindToWString(DMS1::OtherClipKind)));
    EXPECT_EQ("Unknown", n(DMS1::clipKindToWString(DMS1::UnknownClipKind)));
    EXPECT_EQ("Unknown", n(DMS1::clipKindToWString(static_cast<DMS1::ClipFrameworkClipKind>(6))));
}
