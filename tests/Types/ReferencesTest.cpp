#include "Types/References.h"

#include <gtest/gtest.h>

#include "Types/IdentifierTestSupport.h"

using namespace Vellum;
using namespace Vellum::IdentifierTest;
using Types::StrongReference;
using Types::UUID;
using Types::WeakReference;

TEST(ReferencesTest, CarryTheTargetsUUID)
{
    UUID target(w("0102a3b4-c5d6-e7f8-0910-111213141516").c_str(), Types::RFC4122);

    StrongReference strong(target);
    WeakReference weak(target);
    EXPECT_EQ(target, strong.uuid());
    EXPECT_EQ(target, weak.uuid());
    EXPECT_EQ(0, std::memcmp(target.rawBuffer(), strong.rawBuffer(), 16));
    EXPECT_EQ(0, std::memcmp(target.rawBuffer(), weak.rawBuffer(), 16));
    EXPECT_EQ("0102a3b4-c5d6-e7f8-0910-111213141516", n(strong.toString()));
    EXPECT_EQ("0102a3b4-c5d6-e7f8-0910-111213141516", n(weak.toString(Types::RFC4122)));
    EXPECT_EQ(n(target.toString(Types::Dotted)), n(strong.toString(Types::Dotted)));

    EXPECT_EQ(strong, StrongReference(w("0102a3b4-c5d6-e7f8-0910-111213141516").c_str(), Types::TypeDefault));
    EXPECT_EQ(weak, WeakReference(w("0102A3B4-C5D6-E7F8-0910-111213141516").c_str(), Types::RFC4122));

    // The UUID handed out is a copy.
    UUID copy = strong.uuid();
    copy = UUID();
    EXPECT_EQ(target, strong.uuid());
}
