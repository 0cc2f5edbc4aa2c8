#include <gtest/gtest.h>

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
    MetaSimpleElement element(label(1), Id::UInt32);
    EXPECT_EQ(label(1), element.universalLabel());
    EXPECT_EQ(Id::UInt32, element.dataType());
    EXPECT_TRUE(element.enumeration().empty());

    // Unknown and DataValue are simple types like any other.
    EXPECT_EQ(0, thrownBy([] { MetaSimpleElement(label(1), Id::Unknown); }).code);
    EXPECT_EQ(0, thrownBy([] { MetaSimpleElement(label(1), Id::DataValue); }).code);

    struct
    {
        Id::Identifier type;
        char const * name;
    } const refused[] = {{Id::Array, "Array"},
                         {Id::Batch, "Batch"},
                         {Id::StrongReference, "StrongReference"},
                         {Id::WeakReference, "WeakReference"}};
    for (auto const & row : refused)
    {
        Thrown t = thrownBy([&] { MetaSimpleElement(label(1), row.type); });
        EXPECT_EQ(Exceptions::InvalidMetaElement::ERROR_CODE, t.code);
        EXPECT_EQ(std::string("Tried to create a MetaSimpleElement with dataType: ") + row.name, t.message);
    }
}

TEST(MetaElement, SimpleElementKeepsACopyOfTheEnumeration)
{
    Types::UInt8 zero(0), one(1);
    MetaValueHolder::Enumeration values{&zero, &one};
    MetaSimpleElement element(label(2), values, Id::UInt8);
    values.push_back(&zero);
    MetaValueHolder::Enumeration held = element.enumeration();
    ASSERT_EQ(2u, held.size());
    EXPECT_EQ(&zero, held[0]);
    EXPECT_EQ(&one, held[1]);
}

TEST(MetaElement, ReferenceElementDemandsAReferenceAndKeepsKeysInOrder)
{
    MetaReferenceElement element(label(3), {setKey(2), setKey(1)}, Id::WeakReference);
    element.addAllowedMetadataSet(setKey(9));
    MetaReferenceHolder::Keys keys = element.allowedMetadataSets();
    ASSERT_EQ(3u, keys.size());
    EXPECT_EQ(setKey(2), keys[0]);
    EXPECT_EQ(setKey(1), keys[1]);
    EXPECT_EQ(setKey(9), keys[2]);

    Thrown t = thrownBy([] { MetaReferenceElement(label(3), {}, Id::UL); });
    EXPECT_EQ(Exceptions::InvalidMetaElement::ERROR_CODE, t.code);
    EXPECT_EQ("Tried to create a MetaReferenceElement with dataType: UL", t.message);
    t = thrownBy([] { MetaReferenceElement(label(3), {}, Id::Array); });
    EXPECT_EQ("Tried to create a MetaReferenceElement with dataType: Array", t.message);
}

TEST(MetaElement, CollectionLimitsAndTheirChecks)
{
    Limits any;
    EXPECT_EQ(0u, any.minimum);
    EXPECT_EQ(0xFFFFFFFFu, any.maximum);
    Limits pair(2, 5);
    EXPECT_EQ(2u, pair.minimum);
    EXPECT_EQ(5u, pair.maximum);

    MetaCollection batch(label(4), Limits(3, 3), Id::Batch, Id::UL);
    EXPECT_EQ(Id::Batch, batch.dataType());
    EXPECT_EQ(Id::UL, batch.dataSubType());
    EXPECT_EQ(3u, batch.collectionSizeLimits().minimum);
    EXPECT_EQ(3u, batch.collectionSizeLimits().maximum);

    // Only four member types are refused: Unknown is accepted.
    EXPECT_EQ(0, thrownBy([] { MetaCollection(label(4), Limits(), Id::Array, Id::Unknown); }).code);

    Thrown t = thrownBy([] { MetaCollection(label(4), Limits(), Id::UInt8, Id::UInt8); });
    EXPECT_EQ(Exceptions::InvalidMetaElement::ERROR_CODE, t.code);
    EXPECT_EQ("Tried to create a MetaCollectionElement derived class with dataType: UInt8", t.message);
    t = thrownBy([] { MetaCollection(label(4), Limits(6, 5), Id::Array, Id::UInt8); });
    EXPECT_EQ(Exceptions::InvalidMetaElement::ERROR_CODE, t.code);
    EXPECT_EQ("Tried to create a MetaCollectionElement derived class with invalid limits: [6;5]", t.message);
    t = thrownBy([] { MetaCollection(label(4), Limits(), Id::Array, Id::Batch); });
    EXPECT_EQ("Tried to create a MetaCollection with dataSubType: Batch", t.message);
    t = thrownBy([] { MetaCollection(label(4), Limits(), Id::Array, Id::StrongReference); });
    EXPECT_EQ("Tried to create a MetaCollection with dataSubType: StrongReference", t.message);

    // The checks run in the order of construction: type, limits, member type.
    t = thrownBy([] { MetaCollection(label(4), Limits(6, 5), Id::Int8, Id::Array); });
    EXPECT_EQ("Tried to create a MetaCollectionElement derived class with dataType: Int8", t.message);
    t = thrownBy([] { MetaCollection(label(4), Limits(6, 5), Id::Array, Id::Array); });
    EXPECT_EQ("Tried to create a MetaCollectionElement derived class with invalid limits: [6;5]", t.message);
    t = thrownBy([] { MetaReferenceCollection(label(4), Limits(1, 0), {}, Id::Batch, Id::UUID); });
    EXPECT_EQ("Tried to create a MetaCollectionElement derived class with invalid limits: [1;0]", t.message);

    // The message of a reference collection names the member type "dataType".
    t = thrownBy([] { MetaReferenceCollection(label(4), Limits(), {}, Id::Batch, Id::UUID); });
    EXPECT_EQ(Exceptions::InvalidMetaElement::ERROR_CODE, t.code);
    EXPECT_EQ("Tried to create a MetaReferenceCollection with dataType: UUID", t.message);
    MetaReferenceCollection references(label(4), Limits(0, 9), {setKey(1)}, Id::Array, Id::StrongReference);
    EXPECT_EQ(Id::StrongReference, references.dataSubType());
    EXPECT_EQ(9u, references.collectionSizeLimits().maximum);
    EXPECT_EQ(1u, references.allowedMetadataSets().size());
}

namespace
{
// Writes down every visit it gets, in order.
class RecordingVisitor : public Visitors::NullMetaElementVisitor
{
public:
    std::vector<std::string> visits;
    void visit(MetaCollectionElement const & e) override { record("CollectionElement", e); }
    void visit(MetaReferenceHolder const & e) override { record("ReferenceHolder", e); }
    void visit(MetaValueHolder const & e) override { record("ValueHolder", e); }
    void visit(MetaReferenceCollection const & e) override
    {
        record("ReferenceCollection", e);
        NullMetaElementVisitor::visit(e);
    }
    void visit(MetaReferenceElement const & e) override
    {
        record("ReferenceElement", e);
        NullMetaElementVisitor::visit(e);
    }
    void visit(MetaCollection const & e) override
    {
        record("Collection", e);
        NullMetaElementVisitor::visit(e);
    }
    void visit(MetaSimpleElement const & e) override
    {
        record("SimpleElement", e);
        NullMetaElementVisitor::visit(e);
    }

private:
    template <class T>
    void record(char const * what, T const &)
    {
        visits.push_back(what);
    }
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

    EXPECT_FALSE(is<MetaCollectionElement>(simple));
    EXPECT_FALSE(is<MetaCollectionElement>(reference));
    EXPECT_TRUE(is<MetaCollectionElement>(collection));
    EXPECT_TRUE(is<MetaCollectionElement>(references));
    EXPECT_FALSE(is<MetaReferenceCollection>(collection));
    EXPECT_TRUE(is<MetaReferenceCollection>(references));
    EXPECT_FALSE(is<MetaReferenceHolder>(simple));
    EXPECT_TRUE(is<MetaReferenceHolder>(reference));
    EXPECT_FALSE(is<MetaReferenceHolder>(collection));
    EXPECT_TRUE(is<MetaReferenceHolder>(references));

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
    EXPECT_EQ(Id::UInt8, k2.dataSubType());
    MetaCollection k3(k1);
    EXPECT_EQ(Id::UInt8, k3.dataSubType());
    EXPECT_FALSE(k1 == MetaCollection(label(6), Limits(), Id::Batch, Id::UInt8));
}
