#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "MetaMetadata/MetaCollection.h"
#include "MetaMetadata/MetaMetadataTestSupport.h"
#include "MetaMetadata/MetaReferenceCollection.h"
#include "MetaMetadata/MetaReferenceElement.h"
#include "MetaMetadata/StandardDictionary.h"
#include "MetaMetadata/StandardRegisterTestTable.h"

using namespace Vellum;
using namespace Vellum::MetaMetadataTest;
using namespace Vellum::MetaMetadata;
using namespace Vellum::RegisterTable;
namespace Id = Vellum::Types::Identifiers;
namespace Keys = Vellum::Metadata::Structural::StructuralMetadataKeys;
namespace ULs = Vellum::Metadata::Structural::StructuralMetadataULs;
namespace DMS1ULs = Vellum::Metadata::DMS1::DMS1MetadataULs;

namespace
{
Dictionary const & standard()
{
    static Templates::SharedPtr<Dictionary> dictionary = createStandardDictionary();
    return *dictionary;
}

MetaMetadataSet const & setOf(KLV::Key const & key)
{
    MetaMetadataSet const * set = standard().find(key);
    if (set == nullptr)
        throw std::runtime_error("no set " + n(key.toString(Types::Dotted)));
    return *set;
}

MetaElement const & elementOf(Types::UniversalLabel const & label)
{
    MetaElement const * element = standard().findMetaElement(label);
    if (element == nullptr)
        throw std::runtime_error("no element " + n(label.toString(Types::Dotted)));
    return *element;
}

Templates::vector<KLV::Key> allowedFor(Types::UniversalLabel const & label)
{
    Visitors::GetMetaElementVisitor<MetaReferenceHolder> holder;
    elementOf(label).accept(holder);
    if (holder.value() == nullptr)
        return Templates::vector<KLV::Key>();
    return holder.value()->allowedMetadataSets();
}

bool contains(Templates::vector<KLV::Key> const & keys, KLV::Key const & key)
{
    return std::find(keys.begin(), keys.end(), key) != keys.end();
}

Id::Identifier subTypeOf(Types::UniversalLabel const & label)
{
    Visitors::GetMetaElementVisitor<MetaCollectionElement> collection;
    elementOf(label).accept(collection);
    return collection.value() ? collection.value()->dataSubType() : Id::Unknown;
}
} // namespace

TEST(StandardDictionary, NamedSetsCarryExactlyTheirRegisteredMembers)
{
    ASSERT_EQ(8u, sizeof(registeredSets) / sizeof(registeredSets[0]));
    for (RegisteredSet const & registered : registeredSets)
    {
        SCOPED_TRACE(registered.symbol);
        MetaMetadataSet const & set = setOf(key(registered.key));
        EXPECT_EQ(registered.count, set.metaAttributeCount());
        bool instanceUID = false;
        for (std::size_t i = 0; i < registered.count; ++i)
        {
            RegisteredMember const & member = registered.members[i];
            SCOPED_TRACE(member.label);
            Templates::SharedPtr<MetaAttribute> attribute = set.findMetaAttribute(ul(member.label));
            ASSERT_NE(nullptr, attribute.get());
            if (member.tag != 0)
            {
                ASSERT_NE(nullptr, attribute->staticLocalTag());
                EXPECT_EQ(member.tag, attribute->staticLocalTag()->value());
            }
            else
                EXPECT_EQ(nullptr, attribute->staticLocalTag());
            EXPECT_EQ(member.optional ? AttributeRequiredStatus::Optional : AttributeRequiredStatus::Required,
                      attribute->requiredStatus());
            if (member.tag == 0x3c0a)
            {
                instanceUID = true;
                EXPECT_EQ(ULs::instanceUID(), attribute->metaElement().universalLabel());
            }
        }
        EXPECT_TRUE(instanceUID);
    }

    // The same sets through the named keys.
    KLV::Key const named[] = {Keys::preface(), Keys::sourcePackage(), Keys::timelineTrack(),
                              Keys::sequence(), Keys::sourceClip(), Keys::cdciEssenceDescriptor(),
                              Keys::waveAudioEssenceDescriptor(), Keys::mpeg2VideoDescriptor()};
    for (std::size_t i = 0; i < 8; ++i)
        EXPECT_EQ(named[i], key(registeredSets[i].key)) << registeredSets[i].symbol;
}

TEST(StandardDictionary, EveryStaticTagInBothDirections)
{
    std::size_t tagCount = 0;
    for (Dictionary::LocalTagToLabel::const_iterator i = standard().localTag2ULBegin(); i != standard().localTag2ULEnd();
         ++i)
        ++tagCount;
    EXPECT_EQ(sizeof(registeredTags) / sizeof(registeredTags[0]), tagCount);
    for (RegisteredTag const & registered : registeredTags)
    {
        Types::LocalTag tag(static_cast<unsigned short>(registered.tag));
        Types::UniversalLabel const * label = standard().find(tag);
        ASSERT_NE(nullptr, label) << registered.label;
        EXPECT_EQ(ul(registered.label), *label);
        Types::LocalTag const * back = standard().find(*label);
        ASSERT_NE(nullptr, back);
        EXPECT_EQ(tag, *back);
        // Fixed tags lie below the dynamic range; those of a file's own object dictionary lie
        // even below 01.00.
        EXPECT_NE(0u, registered.tag);
        EXPECT_LT(registered.tag, 0x8000u) << registered.label;
    }
    // Index table segments are not header metadata, but their tags are static all the same.
    ASSERT_NE(nullptr, standard().find(Types::LocalTag(0x3f0b)));
    EXPECT_EQ(Metadata::Structural::IndexTablesULs::indexEditRate(), *standard().find(Types::LocalTag(0x3f0b)));
    EXPECT_EQ(nullptr, standard().find(key("06.0e.2b.34.02.53.01.01.0d.01.02.01.01.10.01.00")));
}

TEST(StandardDictionary, EverySetAndElementOfTheTables)
{
    std::size_t sets = 0, elements = 0;
    for (Dictionary::KeyToMetaMetadataSet::const_iterator i = standard().metaMetadataSetBegin();
         i != standard().metaMetadataSetEnd(); ++i)
    {
        ++sets;
        EXPECT_EQ(i->first, i->second.key());
        EXPECT_EQ(0x53, i->first[5]);
        EXPECT_FALSE(property(i->second, "name").empty());
        for (MetaMetadataSet::const_iterator a = i->second.metaAttributesBegin(); a != i->second.metaAttributesEnd(); ++a)
        {
            // The attribute's element is the dictionary's own, and every attribute can be queried.
            EXPECT_EQ(standard().findMetaElement(a->first), &a->second->metaElement());
            EXPECT_EQ("", property(*a->second, "RequiresSemanticsValidation"));
            EXPECT_EQ(nullptr, a->second->getDistinguishedValue());
        }
    }
    for (Dictionary::LabelToMetaElement::const_iterator i = standard().metaElementBegin(); i != standard().metaElementEnd();
         ++i)
    {
        ++elements;
        EXPECT_EQ(i->first, i->second->universalLabel());
        EXPECT_FALSE(property(*i->second, "name").empty());
        // Every allowed target of a reference is a set of the dictionary.
        for (KLV::Key const & target : allowedFor(i->first))
            EXPECT_NE(nullptr, standard().find(target)) << property(*i->second, "name");
    }
    EXPECT_EQ(registeredSetCount, sets);
    EXPECT_EQ(registeredElementCount, elements);

    EXPECT_EQ("InstanceID", property(elementOf(ULs::instanceUID()), "name"));
    EXPECT_EQ("Preface", property(setOf(Keys::preface()), "name"));
    EXPECT_EQ(1u, standard().findMetaElementProperty(w("name").c_str(), w("FileLastModified").c_str()).size());

    // Every named key has its set, and every named label of the sets its element.
    for (NamedKeyRow const & row : namedKeys)
        EXPECT_NE(nullptr, standard().find(row.function())) << row.name;
    std::set<std::string> elementOnly = {
        "Vellum::Metadata::MetadataULs::null", "Vellum::Metadata::Structural::StructuralMetadataULs::null",
        // Registered elements that no set of the registers holds.
        "Vellum::Metadata::Structural::StructuralMetadataULs::linkedTimecodeTrackID",
        "Vellum::Metadata::Structural::StructuralMetadataULs::smpte337mDataStreamNumber",
        "Vellum::Metadata::DMS1::DMS1MetadataULs::captionLanguageCode"};
    for (NamedLabelRow const & row : namedLabels)
    {
        std::string name = std::string("Vellum::") + row.name;
        if (name.find("DataDefinitionULs") != std::string::npos || name.find("Wrappings") != std::string::npos ||
            elementOnly.count(name))
            continue;
        EXPECT_NE(nullptr, standard().findMetaElement(row.function())) << row.name;
    }
}

TEST(StandardDictionary, ElementsHaveTheClassOfTheirType)
{
    struct Expected
    {
        Types::UniversalLabel const & label;
        Id::Identifier type;
        Id::Identifier subType;
    } const expected[] = {
        {ULs::instanceUID(), Id::UUID, Id::Unknown}, {ULs::thisGenerationUID(), Id::UUID, Id::Unknown},
        {ULs::generationUID(), Id::UUID, Id::Unknown}, {ULs::productUID(), Id::UUID, Id::Unknown},
        {ULs::packageUID(), Id::UMID32, Id::Unknown}, {ULs::sourcePackageID(), Id::UMID32, Id::Unknown},
        {DMS1ULs::extendedClipID(), Id::UMID64, Id::Unknown}, {ULs::duration(), Id::Length, Id::Unknown},
        {ULs::startPosition(), Id::Position, Id::Unknown}, {ULs::editRate(), Id::Rational, Id::Unknown},
        {ULs::lastModifiedDate(), Id::TimestampType, Id::Unknown}, {ULs::version(), Id::VersionType, Id::Unknown},
        {ULs::toolkitVersion(), Id::ProductVersionType, Id::Unknown}, {ULs::trackID(), Id::UInt32, Id::Unknown},
        {ULs::blockAlign(), Id::UInt16, Id::Unknown}, {ULs::audioRefLevel(), Id::Int8, Id::Unknown},
        {ULs::dropFrame(), Id::Boolean, Id::Unknown}, {ULs::signalStandard(), Id::SignalStandard, Id::Unknown},
        {ULs::pixelLayout(), Id::RGBALayout, Id::Unknown}, {ULs::trackName(), Id::UTF16CharString, Id::Unknown},
        {DMS1ULs::clipNumber(), Id::ISO7bitCharString, Id::Unknown},
        {ULs::codingStyleDefault(), Id::J2KCodingStyleDefault, Id::Unknown},
        {ULs::quantisationDefault(), Id::J2KQuantisationDefault, Id::Unknown},
        {ULs::peakEnvelopeData(), Id::DataStream, Id::Unknown}, {ULs::palette(), Id::DataValue, Id::Unknown},
        // Definitions are referred to by their label.
        {ULs::dataDefinition(), Id::UL, Id::Unknown}, {ULs::essenceContainer(), Id::UL, Id::Unknown},
        {ULs::codec(), Id::UL, Id::Unknown}, {ULs::operationalPattern(), Id::UL, Id::Unknown},
        // A type without a class of its own keeps its bytes.
        {DMS1ULs::geographicalCoordinate(), Id::DataValue, Id::Unknown},
        {ULs::essenceContainers(), Id::Batch, Id::UL}, {ULs::dmSchemes(), Id::Batch, Id::UL},
        {ULs::videoLineMap(), Id::Array, Id::Int32},
        {ULs::pictureComponentSizing(), Id::Array, Id::J2KPictureComponentType},
        {ULs::dmSegmentTrackIDs(), Id::Batch, Id::UInt32}, {ULs::contentStorage(), Id::StrongReference, Id::Unknown},
        {ULs::primaryPackage(), Id::WeakReference, Id::Unknown}, {ULs::packages(), Id::Batch, Id::StrongReference},
        {ULs::tracks(), Id::Array, Id::StrongReference}, {ULs::identificationList(), Id::Array, Id::StrongReference},
        {ULs::structuralComponents(), Id::Array, Id::StrongReference},
        {ULs::subDescriptors(), Id::Array, Id::StrongReference},
        {DMS1ULs::personSetsWeak(), Id::Batch, Id::WeakReference},
    };
    for (Expected const & e : expected)
    {
        MetaElement const & element = elementOf(e.label);
        std::string name = property(element, "name");
        EXPECT_EQ(e.type, element.dataType()) << name;
        EXPECT_EQ(e.subType, subTypeOf(e.label)) << name;

        // The class follows the type.
        bool collection = e.type == Id::Array || e.type == Id::Batch;
        bool reference = e.type == Id::StrongReference || e.type == Id::WeakReference ||
                         e.subType == Id::StrongReference || e.subType == Id::WeakReference;
        Visitors::GetMetaElementVisitor<MetaCollectionElement> asCollection;
        Visitors::GetMetaElementVisitor<MetaReferenceHolder> asReference;
        element.accept(asCollection);
        element.accept(asReference);
        EXPECT_EQ(collection, asCollection.value() != nullptr) << name;
        EXPECT_EQ(reference, asReference.value() != nullptr) << name;
        if (collection)
        {
            EXPECT_EQ(0xFFFFFFFFu, asCollection.value()->collectionSizeLimits().maximum -
                                       asCollection.value()->collectionSizeLimits().minimum);
        }
    }
}

TEST(StandardDictionary, ReferencesAllowTheirSetAndEveryConcreteSubclass)
{
    namespace DMS1Keys = Vellum::Metadata::DMS1::DMS1MetadataKeys;
    Templates::vector<KLV::Key> storage = allowedFor(ULs::contentStorage());
    ASSERT_EQ(1u, storage.size());
    EXPECT_EQ(Keys::contentStorage(), storage[0]);

    struct Allowed
    {
        Types::UniversalLabel const & label;
        KLV::Key const & key;
        bool allowed;
    } const allowed[] = {
        {ULs::packages(), Keys::materialPackage(), true},         {ULs::packages(), Keys::sourcePackage(), true},
        {ULs::packages(), Keys::preface(), false},                {ULs::tracks(), Keys::timelineTrack(), true},
        {ULs::tracks(), Keys::eventTrack(), true},                {ULs::tracks(), Keys::staticTrack(), true},
        {ULs::structuralComponents(), Keys::sourceClip(), true}, {ULs::structuralComponents(), Keys::dmSegment(), true},
        {ULs::structuralComponents(), Keys::timecodeComponent(), true},
        {ULs::structuralComponents(), Keys::dmSourceClip(), true},
        {ULs::subDescriptors(), Keys::jpeg2000PictureSubDescriptor(), true},
        {ULs::subDescriptors(), Keys::cdciEssenceDescriptor(), false},
        {ULs::locators(), Keys::networkLocator(), true},          {ULs::locators(), Keys::textLocator(), true},
        // DMS-1: a framework of a descriptive marker may be any concrete framework.
        {ULs::dmFramework(), DMS1Keys::productionFramework(), true}, {ULs::dmFramework(), DMS1Keys::clipFramework(), true},
        {ULs::dmFramework(), DMS1Keys::sceneFramework(), true},   {ULs::dmFramework(), DMS1Keys::titles(), false},
        {DMS1ULs::titlesSets(), DMS1Keys::titles(), true}};
    for (Allowed const & row : allowed)
        EXPECT_EQ(row.allowed, contains(allowedFor(row.label), row.key))
            << n(row.label.toString(Types::Dotted)) << " " << n(row.key.toString(Types::Dotted));

    // The descriptor of a package: the generic descriptor named by the type, and the concrete
    // descriptors below it; abstract ones in between are not listed.
    Templates::vector<KLV::Key> descriptors = allowedFor(ULs::descriptor());
    EXPECT_EQ(key("06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.24.00"), descriptors.at(0));
    for (KLV::Key const & k : {Keys::cdciEssenceDescriptor(), Keys::rgbaEssenceDescriptor(), Keys::mpeg2VideoDescriptor(),
                               Keys::waveAudioEssenceDescriptor(), Keys::aes3AudioEssenceDescriptor(),
                               Keys::multipleDescriptor(), Keys::genericSoundEssenceDescriptor(),
                               Keys::genericDataEssenceDescriptor(), Keys::vbiDataDescriptor(),
                               Keys::ancPacketsDescriptor(), Keys::waveAudioPhysicalDescriptor()})
        EXPECT_TRUE(contains(descriptors, k)) << n(k.toString(Types::Dotted));
    EXPECT_FALSE(contains(descriptors, Keys::fileDescriptor()));
    EXPECT_FALSE(contains(descriptors, Keys::genericPictureEssenceDescriptor()));
    EXPECT_FALSE(contains(descriptors, Keys::jpeg2000PictureSubDescriptor()));

}

TEST(StandardDictionary, RequiredStatusFollowsTheRegister)
{
    MetaMetadataSet const & identification = setOf(Keys::identification());
    EXPECT_EQ(AttributeRequiredStatus::Required,
              identification.findMetaAttribute(ULs::thisGenerationUID())->requiredStatus());
    EXPECT_EQ(AttributeRequiredStatus::Optional, identification.findMetaAttribute(ULs::platform())->requiredStatus());
}

TEST(StandardDictionary, EachCallBuildsAnIndependentDictionary)
{
    Templates::SharedPtr<Dictionary> a = createStandardDictionary();
    Templates::SharedPtr<Dictionary> b = createStandardDictionary();
    ASSERT_NE(a.get(), b.get());
    EXPECT_NE(a->findMetaElement(ULs::instanceUID()), b->findMetaElement(ULs::instanceUID()));
    EXPECT_TRUE(*a->find(Keys::preface()) == *a->find(Keys::preface()));
    EXPECT_NE(std::string(standardDictionarySnapshot()).find("Groups.xml sha256:"), std::string::npos);
}
