#include "Metadata/PartitionMetadata.h"

#include "Exceptions/Exceptions.h"
#include "KLV/Packet.h"
#include "Metadata/DarkMetadataSet.h"
#include "Metadata/DarkParsedGroup.h"
#include "Metadata/Element.h"
#include "Metadata/ElementVisitor.h"
#include "Metadata/Listeners/DefaultMetadataIndexListener.h"
#include "Metadata/Listeners/MetadataIndexListener.h"
#include "Metadata/MetadataSet.h"
#include "Metadata/MetadataSetFactory.h"
#include "Metadata/MetadataULs.h"
#include "Metadata/PartitionDictionary.h"
#include "Metadata/PartitionMetadataSupport.h"
#include "Metadata/SimpleElement.h"
#include "MetaMetadata/Dictionary.h"
#include "Packs/PrimerPack.h"
#include "Types/Collection.h"
#include "Types/Factories/UID.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace Metadata
{
namespace
{
typedef Templates::SharedPtr<PartitionMetadataListener> ListenerPtr;

// Listeners are held by the address of the object.
struct ListenerLess
{
    bool operator()(ListenerPtr const & a, ListenerPtr const & b) const { return a.get() < b.get(); }
};
typedef Templates::set<ListenerPtr, ListenerLess> Listeners_t;
} // namespace

struct PartitionMetadata::Impl
{
    VELLUM_CLASS_ALLOCATION
    explicit Impl(Templates::auto_ptr<PartitionDictionary> partitionDictionary)
        : dictionary(std::move(partitionDictionary)), dirty(true), sizeWithoutDark(0), sizeWithDark(0)
    {
    }

    Templates::auto_ptr<PartitionDictionary> dictionary;
    MetadataSets sets;
    Templates::SharedPtr<Listeners::MetadataIndexListener> indexListener;
    Listeners_t listeners;
    bool dirty;
    uint64 sizeWithoutDark;
    uint64 sizeWithDark;
    DarkMetadataSets darkSets;

    // Every announcement marks the cached sizes as stale before it is passed on.
    template <class Call>
    void announce(Call call)
    {
        dirty = true;
        for (Listeners_t::const_iterator it = listeners.begin(); it != listeners.end(); ++it)
            call(**it);
    }

    void announceKey(KLV::Key & key)
    {
        announce([&key](PartitionMetadataListener & listener) { listener.metadataSetKey(key); });
    }

    void announceCreated(MetadataSet * set)
    {
        announce([set](PartitionMetadataListener & listener) { listener.createdMetadataSet(set); });
    }

    // Tells the listeners that each value of the set goes, then deletes the set. The index holds
    // pointers to the values, so they must be taken out before they die.
    void retire(MetadataSet * set)
    {
        Templates::auto_ptr<MetadataSet> doomed(set);
        for (MetadataSet::iterator it = set->begin(); it != set->end(); ++it)
            announceRemovedValue(*set, *it->second);
        for (Element ** it = set->invalidBegin(); it != set->invalidEnd(); ++it)
            announceRemovedValue(*set, **it);
    }

    void announceRemovedValue(MetadataSet & set, Element & element)
    {
        Types::BaseType const * value = Support::elementValue(element);
        if (value == nullptr)
            return;
        MetaMetadata::MetaElement const * metaElement = Support::elementMetaElement(element);
        announce([&](PartitionMetadataListener & listener) {
            listener.removedElement(set, metaElement, element, *value);
        });
    }

    // Brings one listener up to date with every set and value present.
    void replay(PartitionMetadataListener & listener)
    {
        for (MetadataSets::iterator it = sets.begin(); it != sets.end(); ++it)
        {
            MetadataSet & set = *it->second;
            dirty = true;
            listener.createdMetadataSet(&set);
            for (MetadataSet::iterator element = set.begin(); element != set.end(); ++element)
                replayValue(listener, set, *element->second);
            for (Element ** element = set.invalidBegin(); element != set.invalidEnd(); ++element)
                replayValue(listener, set, **element);
        }
    }

    void replayValue(PartitionMetadataListener & listener, MetadataSet & set, Element & element)
    {
        Types::BaseType const * value = Support::elementValue(element);
        if (value == nullptr)
            return;
        dirty = true;
        listener.addedElement(set, Support::elementMetaElement(element), element, *value);
    }

    void insert(MetadataSet * set)
    {
        sets.insert(MetadataSets::value_type(set->key(), set));
        announceCreated(set);
    }

    void addListener(ListenerPtr const & listener, bool withReplay)
    {
        if (listener.get() == nullptr)
            return;
        listeners.insert(listener);
        if (withReplay)
            replay(*listener);
    }

    void recomputeSizes(bool generateTags)
    {
        if (generateTags)
            generateTagsNow();
        uint64 const primerSize = dictionary->primer().serializedSize();
        uint64 withDark = primerSize;
        uint64 withoutDark = primerSize;
        for (MetadataSets::const_iterator it = sets.begin(); it != sets.end(); ++it)
        {
            withDark += it->second->serializedSize(true);
            withoutDark += it->second->serializedSize(false);
        }
        for (DarkMetadataSets::const_iterator it = darkSets.begin(); it != darkSets.end(); ++it)
            withDark += (*it)->serializedSize();
        sizeWithDark = withDark;
        sizeWithoutDark = withoutDark;
    }

    // Every element, valid and invalid, empty or not, gets its tag in the Primer.
    void generateTagsNow()
    {
        for (MetadataSets::const_iterator it = sets.begin(); it != sets.end(); ++it)
        {
            MetadataSet const & set = *it->second;
            for (MetadataSet::const_iterator element = set.begin(); element != set.end(); ++element)
                dictionary->findOrGenerate(Support::elementLabel(*element->second));
            for (Element * const * element = set.invalidBegin(); element != set.invalidEnd(); ++element)
                dictionary->findOrGenerate(Support::elementLabel(**element));
        }
    }
};

PartitionMetadata::PartitionMetadata(Templates::auto_ptr<PartitionDictionary> dictionary)
    : impl_(new Impl(std::move(dictionary)))
{
    impl_->indexListener = Templates::SharedPtr<Listeners::MetadataIndexListener>(
        new Listeners::DefaultMetadataIndexListener());
    impl_->addListener(impl_->indexListener, false);
}

PartitionMetadata::~PartitionMetadata()
{
    MetadataSets sets;
    sets.swap(impl_->sets);
    for (MetadataSets::iterator it = sets.begin(); it != sets.end(); ++it)
        delete it->second;
    for (DarkMetadataSets::iterator it = impl_->darkSets.begin(); it != impl_->darkSets.end(); ++it)
        delete *it;
    impl_->darkSets.clear();
    impl_->listeners.clear();
    impl_->indexListener.reset();
}

MetadataSet * PartitionMetadata::load(KLV::Packet & packet)
{
    KLV::Key key(packet.key());
    impl_->announceKey(key);
    packet.key(key);

    MetaMetadata::MetaMetadataSet const * description = impl_->dictionary->dictionary()->find(key);
    MetadataSet * set = nullptr;
    if (description != nullptr)
        set = MetadataSetFactory::instance().create(key, description, this);
    else if (key.localTagFieldLength() != 2)
    {
        Templates::auto_ptr<DarkMetadataSet> dark(new DarkMetadataSet(packet));
        addDarkMetadataSet(std::move(dark));
        return nullptr;
    }
    else
        set = new DarkParsedGroup(key, this);

    try
    {
        set->load(packet, *impl_->dictionary, true);
    }
    catch (...)
    {
        // The values that did load were announced: they go again with the set.
        impl_->retire(set);
        throw;
    }
    impl_->insert(set);
    return set;
}

MetadataSet * PartitionMetadata::createMetadataSet(KLV::Key const & key)
{
    KLV::Key setKey(key);
    impl_->announceKey(setKey);

    MetaMetadata::MetaMetadataSet const * description = impl_->dictionary->dictionary()->find(setKey);
    if (description == nullptr)
        VELLUM_THROW(NotFound, Utils::wide("A MetaMetadataSet with Key ") +
                                   setKey.toString(Types::TypeDefault) +
                                   Utils::wide(" was not found in the Dictionary."));

    MetadataSet * set = MetadataSetFactory::instance().create(setKey, description, this);
    try
    {
        SimpleElement * instanceUID = nullptr;
        try
        {
            Visitors::GetNonConstElementVisitor<SimpleElement> visitor;
            set->find(MetadataULs::instanceUID()).accept(visitor);
            instanceUID = visitor.value();
        }
        catch (Exceptions::NotFound const &)
        {
        }
        if (instanceUID == nullptr)
            VELLUM_THROW(NotFound, Utils::wide("InstanceUID not found in Metadata Set with key ") +
                                       setKey.toString(Types::TypeDefault) +
                                       Utils::wide(" Check Metadata Set builder."));
        instanceUID->set(Types::Factories::UID::generateUUID().clone(), false);
    }
    catch (...)
    {
        impl_->retire(set);
        throw;
    }
    impl_->insert(set);
    return set;
}

bool PartitionMetadata::removeMetadataSet(Types::UUID const & instanceUID)
{
    for (MetadataSets::iterator it = impl_->sets.begin(); it != impl_->sets.end(); ++it)
    {
        Types::UUID const * uid = nullptr;
        try
        {
            uid = it->second->instanceUID();
        }
        catch (Exceptions::NotFound const &)
        {
            continue;
        }
        if (uid == nullptr || *uid != instanceUID)
            continue;

        MetadataSet * set = it->second;
        impl_->announce([set](PartitionMetadataListener & listener) { listener.removedMetadataSet(set); });
        // A listener may have removed other sets meanwhile; this one is still where it was.
        impl_->sets.erase(it);
        impl_->retire(set);
        return true;
    }
    return false;
}

void PartitionMetadata::addDarkMetadataSet(Templates::auto_ptr<DarkMetadataSet> set)
{
    if (set.get() == nullptr)
        return;
    impl_->darkSets.push_back(set.get());
    set.release();
    impl_->dirty = true;
}

Templates::vector<MetadataSet *> PartitionMetadata::find(KLV::Key const & key) const
{
    Templates::vector<MetadataSet *> result;
    std::pair<MetadataSets::const_iterator, MetadataSets::const_iterator> range = impl_->sets.equal_range(key);
    for (MetadataSets::const_iterator it = range.first; it != range.second; ++it)
        result.push_back(it->second);
    return result;
}

Templates::vector<MetadataSet *> PartitionMetadata::find(Types::UniversalLabel const & label,
                                                         Types::SimpleDataType const & value) const
{
    if (impl_->indexListener.get() == nullptr)
        return Templates::vector<MetadataSet *>();
    return impl_->indexListener->find(label, value);
}

PartitionMetadata::iterator PartitionMetadata::begin() { return impl_->sets.begin(); }
PartitionMetadata::iterator PartitionMetadata::end() { return impl_->sets.end(); }
PartitionMetadata::const_iterator PartitionMetadata::begin() const { return impl_->sets.begin(); }
PartitionMetadata::const_iterator PartitionMetadata::end() const { return impl_->sets.end(); }
PartitionMetadata::dark_iterator PartitionMetadata::darkBegin() { return impl_->darkSets.begin(); }
PartitionMetadata::dark_iterator PartitionMetadata::darkEnd() { return impl_->darkSets.end(); }
PartitionMetadata::const_dark_iterator PartitionMetadata::darkBegin() const { return impl_->darkSets.begin(); }
PartitionMetadata::const_dark_iterator PartitionMetadata::darkEnd() const { return impl_->darkSets.end(); }
uint64 PartitionMetadata::size() const { return impl_->sets.size(); }

PartitionDictionary const & PartitionMetadata::partitionDictionary() const { return *impl_->dictionary; }
PartitionDictionary & PartitionMetadata::partitionDictionary() { return *impl_->dictionary; }

void PartitionMetadata::addMetadataListener(Templates::SharedPtr<PartitionMetadataListener> listener, bool replay)
{
    impl_->addListener(listener, replay);
}

void PartitionMetadata::removeMetadataListener(Templates::SharedPtr<PartitionMetadataListener> listener)
{
    impl_->listeners.erase(listener);
}

void PartitionMetadata::setMetadataIndexListener(Templates::SharedPtr<Listeners::MetadataIndexListener> listener)
{
    if (listener.get() == nullptr)
        listener = Templates::SharedPtr<Listeners::MetadataIndexListener>(
            new Listeners::DefaultMetadataIndexListener());
    impl_->listeners.erase(ListenerPtr(impl_->indexListener));
    impl_->indexListener = listener;
    impl_->addListener(listener, true);
}

void PartitionMetadata::generateLocalTags()
{
    if (impl_->dirty)
        impl_->recomputeSizes(true);
    impl_->dirty = false;
}

uint64 PartitionMetadata::serializedSize(bool withDark, bool withPrimer)
{
    if (impl_->dirty)
        impl_->recomputeSizes(withPrimer);
    impl_->dirty = false;
    uint64 size = withDark ? impl_->sizeWithDark : impl_->sizeWithoutDark;
    if (!withPrimer)
        size -= impl_->dictionary->primer().serializedSize();
    return size;
}

void PartitionMetadata::openElements(Templates::vector<Element *> & out) const
{
    for (const_iterator it = begin(); it != end(); ++it)
        it->second->openElements(out);
}

void PartitionMetadata::incompleteElements(Templates::vector<Element *> & out) const
{
    for (const_iterator it = begin(); it != end(); ++it)
        it->second->incompleteElements(out);
}

void PartitionMetadata::possiblyOpenElements(Templates::vector<Element *> & out) const
{
    for (const_iterator it = begin(); it != end(); ++it)
        it->second->possiblyOpenElements(out);
}

void PartitionMetadata::possiblyIncompleteElements(Templates::vector<Element *> & out) const
{
    for (const_iterator it = begin(); it != end(); ++it)
        it->second->possiblyIncompleteElements(out);
}

void PartitionMetadata::possiblyForbiddenElements(Templates::vector<Element *> & out) const
{
    for (const_iterator it = begin(); it != end(); ++it)
        it->second->possiblyForbiddenElements(out);
}

void PartitionMetadata::getSemanticsValidationElements(Templates::vector<Element *> & out) const
{
    for (const_iterator it = begin(); it != end(); ++it)
        it->second->getSemanticsValidationElements(out);
}

void PartitionMetadata::addedElement(MetadataSet & set, MetaMetadata::MetaElement const * metaElement,
                                     Element & element, Types::BaseType & value)
{
    impl_->announce([&](PartitionMetadataListener & listener) {
        listener.addedElement(set, metaElement, element, value);
    });
}

void PartitionMetadata::updatedElement(MetadataSet & set, MetaMetadata::MetaElement const * metaElement,
                                       Element & element, Types::Collection const & oldValue,
                                       Types::Collection & newValue)
{
    impl_->announce([&](PartitionMetadataListener & listener) {
        listener.updatedElement(set, metaElement, element, oldValue, newValue);
    });
}

void PartitionMetadata::updatedElement(MetadataSet & set, MetaMetadata::MetaElement const * metaElement,
                                       Element & element, Types::SimpleDataType const & oldValue,
                                       Types::SimpleDataType & newValue)
{
    impl_->announce([&](PartitionMetadataListener & listener) {
        listener.updatedElement(set, metaElement, element, oldValue, newValue);
    });
}

void PartitionMetadata::updatedElementCollection(MetadataSet & set, MetaMetadata::MetaElement const * metaElement,
                                                 Element & element, Types::Collection const & collection,
                                                 unsigned int index, Types::BaseType * member)
{
    impl_->announce([&](PartitionMetadataListener & listener) {
        listener.updatedElementCollection(set, metaElement, element, collection, index, member);
    });
}

void PartitionMetadata::removedElement(MetadataSet & set, MetaMetadata::MetaElement const * metaElement,
                                       Element & element, Types::BaseType const & oldValue)
{
    impl_->announce([&](PartitionMetadataListener & listener) {
        listener.removedElement(set, metaElement, element, oldValue);
    });
}

void PartitionMetadata::metadataSetCloned(MetadataSet const &, MetadataSet & clone, bool)
{
    impl_->insert(&clone);
}
} // namespace Metadata
} // namespace Vellum
