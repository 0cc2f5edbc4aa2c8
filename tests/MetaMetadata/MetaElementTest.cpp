#include <gtest/gtest.h>

#include "Support/ThrownCompare.h"

#include <functional>
#include <string>
#include <vector>

#include "MetaMetadata/MetaCollection.h"
#include "MetaMetadata/MetaMetadataTestSupport.h"
#include "MetaMetadata/MetaReferenceCollection.h"
#include "MetaMetadata/MetaReferenceElement.h"
#include "MetaMetadata/MetaSimpleElement.h"
#include "Types/Integers.h"

using namespace Vellum;
using namespace Vellum::MetaMetadataTest;
using namespace Vellum::MetaMetadata;
namespace Id = Vellum::Types::Identifiers;
typedef MetaCollectionElement::CollectionSizeLimits Limits;

TEST(MetaElement, SimpleElementRefusesCollectionsAndReferences)
{
    EXPECT_TRUE(MetaSimpleElement(label(1), Id::UInt32).enumeration().empty());
    // Unknown and DataValue are simple types like any other.
    EXPECT_EQ(0, thrownBy([] { MetaSimpleElement(label(1), Id::Unknown); }).code);
    EXPECT_EQ(0, thrownBy([] { MetaSimpleElement(label(1), Id::DataValue); }).code);

    struct
    {
        Id::Identifier type;
        char const * name;
    } const refused[] = {
        {Id::Array, "Array"}, {Id::Batch, "Batch"}, {Id::StrongReference, "StrongReference"}, {Id::WeakReference, "WeakReference"}};
    for (auto const & row : refused)
    {
        EXPECT_EQ(thrown<Exceptions::InvalidMetaElement>(std::string("Tried to create a MetaSimpleElement with dataType: ") + row.name),
                  thrownBy([&] { MetaSimpleElement(label(1), row.type); }));
    }
}

TEST(MetaElement, SimpleElementKeepsACopyOfTheEnumeration)
{
    Types::UInt8 zero(0), one(1);
    MetaValueHolder::Enumeration values{&zero, &one};
    MetaSimpleElement element(label(2), values, Id::UInt8);
    values.push_back(&zero);
    EXPECT_EQ((MetaValueHolder::Enumeration{&zero, &one}), element.enumeration());
}

TEST(MetaElement, ReferenceElementDemandsAReferenceAndKeepsKeysInOrder)
{
    MetaReferenceElement element(label(3), {setKey(2), setKey(1)}, Id::WeakReference);
    element.addAllowedMetadataSet(setKey(9));
    EXPECT_EQ((MetaReferenceHolder::Keys{setKey(2), setKey(1), setKey(9)}), element.allowedMetadataSets());
    EXPECT_EQ(thrown<Exceptions::InvalidMetaElement>("Tried to create a MetaReferenceElement with dataType: UL"),
              thrownBy([] { MetaReferenceElement(label(3), {}, Id::UL); }));
    EXPECT_EQ("Tried to create a MetaReferenceElement with dataType: Array",
              thrownBy([] { MetaReferenceElement(label(3), {}, Id::Array); }).message);
}

TEST(MetaElement, CollectionLimitsAndTheirChecks)
{
    EXPECT_EQ(0xFFFFFFFFu, Limits().maximum - Limits().minimum);

    // Only four member types are refused: Unknown is accepted.
    EXPECT_EQ(0, thrownBy([] { MetaCollection(label(4), Limits(), Id::Array, Id::Unknown); }).code);

    // Every refusal is an InvalidMetaElement; the checks run in the order of construction: type,
    // limits, member type. The message of a reference collection names the member type "dataType".
    std::string const prefix = "Tried to create a MetaCollectionElement derived class with ";
    struct Row
    {
        std::function<void()> make;
        std::string message;
    } const rows[] = {
        {[] { MetaCollection(label(4), Limits(), Id::UInt8, Id::UInt8); }, prefix + "dataType: UInt8"},
        {[] { MetaCollection(label(4), Limits(6, 5), Id::Array, Id::UInt8); }, prefix + "invalid limits: [6;5]"},
        {[] { MetaCollection(label(4), Limits(), Id::Array, Id::Batch); }, "Tried to create a MetaCollection with dataSubType: Batch"},
        {[] { MetaCollection(label(4), Limits(), Id::Array, Id::StrongReference); },
         "Tried to create a MetaCollection with dataSubType: StrongReference"},
        {[] { MetaCollection(label(4), Limits(6, 5), Id::Int8, Id::Array); }, prefix + "dataType: Int8"},
        {[] { MetaCollection(label(4), Limits(6, 5), Id::Array, Id::Array); }, prefix + "invalid limits: [6;5]"},
        {[] { MetaReferenceCollection(label(4), Limits(1, 0), {}, Id::Batch, Id::UUID); }, prefix + "invalid limits: [1;0]"},
        {[] { MetaReferenceCollection(label(4), Limits(), {}, Id::Batch, Id::UUID); },
         "Tried to create a MetaReferenceCollection with dataType: UUID"}};
    for (Row const & row : rows)
        EXPECT_EQ(thrown<Exceptions::InvalidMetaElement>(row.message), thrownBy(row.make));
}

namespace
{
// Writes down every visit it gets, in order; the most derived visits go on to the base ones.
class RecordingVisitor : public Visitors::NullMetaElementVisitor
{
public:
    std::vector<std::string> visits;
    void visit(MetaCollectionElement const &) override { visits.push_back("CollectionElement"); }
    void visit(MetaReferenceHolder const &) override { visits.push_back("ReferenceHolder"); }
    void visit(MetaValueHolder const &) override { visits.push_back("ValueHolder"); }
#define VELLUM_TEST_RECORD(Class, Name)                                                                               \
    void visit(Class const & e) override                                                                               \
    {                                                                                                                  \
        visits.push_back(Name);                                                                                        \
        NullMetaElementVisitor::visit(e);                                                                              \
    }
    VELLUM_TEST_RECORD(MetaReferenceCollection, "ReferenceCollection")
    VELLUM_TEST_RECORD(MetaReferenceElement, "ReferenceElement")
    VELLUM_TEST_RECORD(MetaCollection, "Collection")
    VELLUM_TEST_RECORD(MetaSimpleElement, "SimpleElement")
#undef VELLUM_TEST_RECORD
};

std::vector<std::string> visitsOf(MetaElement const & element)
{
    RecordingVisitor visitor;
    element.accept(visitor);
    return visitor.visits;
}

template <class T>
bool is(MetaElement const & element)
{
    Visitors::GetMetaElementVisitor<T> visitor;
    element.accept(visitor);
    return visitor.value() != nullptr;
}

class CountingNonConstVisitor : public Visitors::NullNonConstMetaElementVisitor
{
public:
    int collectionElements = 0;
    int valueHolders = 0;
    using NullNonConstMetaElementVisitor::visit;
    void visit(MetaCollectionElement &) override { ++collectionElements; }
    void visit(MetaValueHolder &) override { ++valueHolders; }
};
} // namespace

TEST(MetaElement, VisitorsReachTheClassAndTheNullVisitorItsBases)
{
    MetaSimpleElement simple(label(1), Id::UInt8);
    MetaReferenceElement reference(label(2), {}, Id::StrongReference);
    MetaCollection collection(label(3), Limits(), Id::Array, Id::UInt16);
    MetaReferenceCollection references(label(4), Limits(), {}, Id::Batch, Id::WeakReference);

    EXPECT_EQ((std::vector<std::string>{"SimpleElement"}), visitsOf(simple));
    EXPECT_EQ((std::vector<std::string>{"ReferenceElement", "ReferenceHolder"}), visitsOf(reference));
    EXPECT_EQ((std::vector<std::string>{"Collection", "ValueHolder", "CollectionElement"}), visitsOf(collection));
    EXPECT_EQ((std::vector<std::string>{"ReferenceCollection", "ReferenceHolder", "CollectionElement"}),
              visitsOf(references));

    EXPECT_EQ("0011", std::to_string(is<MetaCollectionElement>(simple)) + std::to_string(is<MetaCollectionElement>(reference)) +
                          std::to_string(is<MetaCollectionElement>(collection)) + std::to_string(is<MetaCollectionElement>(references)));
    EXPECT_EQ("0101", std::to_string(is<MetaReferenceHolder>(simple)) + std::to_string(is<MetaReferenceHolder>(reference)) +
                          std::to_string(is<MetaReferenceHolder>(collection)) + std::to_string(is<MetaReferenceHolder>(references)));
    EXPECT_TRUE(is<MetaReferenceCollection>(references) && !is<MetaReferenceCollection>(collection));

    // The downcast gives the very object.
    Visitors::GetMetaElementVisitor<MetaReferenceHolder> holder;
    references.accept(holder);
    EXPECT_EQ(static_cast<MetaReferenceHolder const *>(&references), holder.value());

    // The non-const side forwards in the same way.
    CountingNonConstVisitor counting;
    simple.accept(counting);
    collection.accept(counting);
    references.accept(counting);
    EXPECT_EQ(2, counting.collectionElements);
    EXPECT_EQ(1, counting.valueHolders);
}

TEST(MetaElement, EqualityAndCopies)
{
    MetaSimpleElement a(label(1), Id::UInt8);
    MetaSimpleElement b(label(1), Id::UInt8);
    EXPECT_TRUE(a == b);
    b.addProperty(w("name").c_str(), w("B").c_str());
    EXPECT_FALSE(a == b);
    a.addProperty(w("name").c_str(), w("B").c_str());
    EXPECT_TRUE(a == b);
    EXPECT_FALSE(a == MetaSimpleElement(label(2), Id::UInt8));
    EXPECT_FALSE(a == MetaSimpleElement(label(1), Id::Int8));

    // The enumeration does not take part.
    Types::UInt8 zero(0);
    MetaSimpleElement c(label(1), MetaValueHolder::Enumeration{&zero}, Id::UInt8);
    c.addProperty(w("name").c_str(), w("B").c_str());
    EXPECT_TRUE(a == c);

    MetaSimpleElement copy(a);
    EXPECT_TRUE(copy == a);
    EXPECT_EQ("B", property(copy, "name"));

    // Reference holders compare their keys in order.
    MetaReferenceElement r1(label(5), {setKey(1), setKey(2)}, Id::StrongReference);
    MetaReferenceElement r2(label(5), {setKey(2), setKey(1)}, Id::StrongReference);
    EXPECT_FALSE(r1 == r2);
    r2 = r1;
    EXPECT_TRUE(r1 == r2);
    EXPECT_EQ(2u, r2.allowedMetadataSets().size());

    // Collections compare their MetaElement part only.
    MetaCollection k1(label(6), Limits(0, 1), Id::Array, Id::UInt8);
    MetaCollection k2(label(6), Limits(0, 9), Id::Array, Id::UInt16);
    EXPECT_TRUE(k1 == k2);
    k2 = k1;
    EXPECT_EQ(1u, k2.collectionSizeLimits().maximum);
    EXPECT_EQ(Id::UInt8, MetaCollection(k1).dataSubType());
    EXPECT_FALSE(k1 == MetaCollection(label(6), Limits(), Id::Batch, Id::UInt8));
}
