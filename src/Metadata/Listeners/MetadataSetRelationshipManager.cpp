#include "Metadata/Listeners/MetadataSetRelationshipManager.h"

#include <algorithm>

#include "Exceptions/Exceptions.h"
#include "Metadata/ArrayReferenceElement.h"
#include "Metadata/BatchReferenceElement.h"
#include "Metadata/CollectionReferenceElement.h"
#include "Metadata/Element.h"
#include "Metadata/ElementVisitor.h"
#include "Metadata/MetadataSet.h"
#include "Metadata/PartitionMetadata.h"
#include "Metadata/PartitionMetadataSupport.h"
#include "Metadata/ReferenceElement.h"
#include "Types/Collection.h"
#include "Types/References.h"
#include "Types/Visitors.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace Metadata
{
namespace Listeners
{
struct ReferenceEntry::Impl
{
    VELLUM_CLASS_ALLOCATION
    Sources sources;
};

ReferenceEntry::ReferenceEntry() : impl_(new Impl) {}

ReferenceEntry::~ReferenceEntry() = default;

ReferenceEntry::Sources const & ReferenceEntry::sources() const { return impl_->sources; }

void ReferenceEntry::add(Element * source) { impl_->sources.push_back(source); }

bool ReferenceEntry::remove(Element * source)
{
    Sources::iterator it = std::find(impl_->sources.begin(), impl_->sources.end(), source);
    if (it == impl_->sources.end())
        return false;
    impl_->sources.erase(it);
    return true;
}

unsigned int ReferenceEntry::removeAll(Element * source)
{
    Sources::iterator end = std::remove(impl_->sources.begin(), impl_->sources.end(), source);
    unsigned int const count = static_cast<unsigned int>(impl_->sources.end() - end);
    impl_->sources.erase(end, impl_->sources.end());
    return count;
}

bool ReferenceEntry::empty() const { return impl_->sources.empty(); }

namespace
{
enum ReferenceKinds
{
    StrongKind = 1,
    WeakKind = 2,
    AnyKind = 3
};

// The UUIDs named by the references in a value: the value itself, or the members of a
// collection.
class ReferencedUUIDs : public Types::Visitors::NullVisitor
{
public:
    explicit ReferencedUUIDs(int kinds) : kinds_(kinds) {}
    Templates::vector<Types::UUID> const & uuids() const { return uuids_; }

    using Types::Visitors::NullVisitor::visit;
    void visit(Types::StrongReference const & reference) override
    {
        if (kinds_ & StrongKind)
            uuids_.push_back(Types::UUID(reference.rawBuffer()));
    }
    void visit(Types::WeakReference const & reference) override
    {
        if (kinds_ & WeakKind)
            uuids_.push_back(Types::UUID(reference.rawBuffer()));
    }
    void visit(Types::Array const & collection) override { members(collection); }
    void visit(Types::Batch const & collection) override { members(collection); }

private:
    void members(Types::Collection const & collection)
    {
        for (unsigned int index = 0; index < collection.size(); ++index)
            collection.at(index).accept(*this);
    }

    int kinds_;
    Templates::vector<Types::UUID> uuids_;
};

Templates::vector<Types::UUID> referencedUUIDs(Types::BaseType const & value, int kinds = AnyKind)
{
    ReferencedUUIDs visitor(kinds);
    value.accept(visitor);
    return visitor.uuids();
}

// Whether an element's value holds a reference of the kinds asked.
bool holdsReference(Element const & element, int kinds)
{
    Types::BaseType const * value = Support::elementValue(element);
    return value != nullptr && !referencedUUIDs(*value, kinds).empty();
}

class Flag
{
public:
    Flag(bool & flag, bool value) : flag_(flag), saved_(flag) { flag_ = value; }
    ~Flag() { flag_ = saved_; }

private:
    bool & flag_;
    bool saved_;
};
} // namespace

struct MetadataSetRelationshipManager::Impl
{
    VELLUM_CLASS_ALLOCATION
    explicit Impl(PartitionMetadata * partition)
        : metadata(partition), enforce(true), inCascade(false)
    {
    }

    UUIDToReferences uuid2References;
    ReferencesToUUID references2UUID;
    PartitionMetadata * metadata;
    bool enforce;
    bool inCascade;
    Templates::set<Types::UUID> visiting;

    void addReference(Element * element, Types::UUID const & uuid)
    {
        references2UUID.insert(ReferencesToUUID::value_type(element, uuid));
        UUIDToReferences::iterator entry = uuid2References.find(uuid);
        if (entry == uuid2References.end())
            entry = uuid2References
                        .insert(UUIDToReferences::value_type(uuid, Templates::SharedPtr<ReferenceEntry>(new ReferenceEntry)))
                        .first;
        entry->second->add(element);
    }

    void addReferences(Element * element, Types::BaseType const & value)
    {
        Templates::vector<Types::UUID> const uuids = referencedUUIDs(value);
        for (Templates::vector<Types::UUID>::const_iterator it = uuids.begin(); it != uuids.end(); ++it)
            addReference(element, *it);
    }

    void dropFromEntry(Element * element, Types::UUID const & uuid, bool all)
    {
        UUIDToReferences::iterator entry = uuid2References.find(uuid);
        if (entry == uuid2References.end())
            return;
        if (all)
            entry->second->removeAll(element);
        else
            entry->second->remove(element);
        if (entry->second->empty())
            uuid2References.erase(entry);
    }

    // One reference of the element to `uuid` goes.
    void removeReference(Element * element, Types::UUID const & uuid)
    {
        std::pair<ReferencesToUUID::iterator, ReferencesToUUID::iterator> range = references2UUID.equal_range(element);
        for (ReferencesToUUID::iterator it = range.first; it != range.second; ++it)
            if (it->second == uuid)
            {
                references2UUID.erase(it);
                break;
            }
        dropFromEntry(element, uuid, false);
    }

    // Every reference of the element goes.
    void removeReferences(Element * element)
    {
        std::pair<ReferencesToUUID::iterator, ReferencesToUUID::iterator> range = references2UUID.equal_range(element);
        for (ReferencesToUUID::iterator it = range.first; it != range.second; ++it)
            dropFromEntry(element, it->second, true);
        references2UUID.erase(range.first, range.second);
    }

    // Whether the set that holds the element is being removed itself.
    bool underRemoval(Element const & element) const
    {
        Types::UUID const * uid = element.metadataSet().instanceUID();
        return uid != nullptr && visiting.find(*uid) != visiting.end();
    }

    // Clears every reference to `uuid` held by a set that stays.
    void clearReferencesTo(Types::UUID const & uuid)
    {
        UUIDToReferences::iterator entry = uuid2References.find(uuid);
        if (entry == uuid2References.end())
            return;
        // The clearing announces itself back to this manager, which edits the entry.
        ReferenceEntry::Sources sources = entry->second->sources();
        std::sort(sources.begin(), sources.end());
        sources.erase(std::unique(sources.begin(), sources.end()), sources.end());
        for (ReferenceEntry::Sources::iterator it = sources.begin(); it != sources.end(); ++it)
        {
            Element & source = **it;
            if (underRemoval(source))
                continue;
            Visitors::GetNonConstElementVisitor<ReferenceElement> single;
            source.accept(single);
            if (single.value() != nullptr)
            {
                single.value()->set(static_cast<MetadataSet const *>(nullptr));
                continue;
            }
            CollectionReferenceElement * collection = referenceCollection(source);
            if (collection == nullptr)
                continue;
            for (int index = collection->size() - 1; index >= 0; --index)
                if (std::memcmp(collection->at(index).rawBuffer(), uuid.rawBuffer(), Types::UUID::SIZE) == 0)
                    collection->remove(static_cast<unsigned int>(index));
        }
    }

    static CollectionReferenceElement * referenceCollection(Element & element)
    {
        Visitors::GetNonConstElementVisitor<ArrayReferenceElement> array;
        element.accept(array);
        if (array.value() != nullptr)
            return array.value();
        Visitors::GetNonConstElementVisitor<BatchReferenceElement> batch;
        element.accept(batch);
        return batch.value();
    }

    // The UUIDs that the set's own elements reference strongly, in label order, then those of
    // its invalid elements.
    static Templates::vector<Types::UUID> strongChildren(MetadataSet const & set)
    {
        Templates::vector<Types::UUID> children;
        for (MetadataSet::const_iterator it = set.begin(); it != set.end(); ++it)
            strongChildrenOf(*it->second, children);
        for (Element * const * it = set.invalidBegin(); it != set.invalidEnd(); ++it)
            strongChildrenOf(**it, children);
        return children;
    }

    static void strongChildrenOf(Element const & element, Templates::vector<Types::UUID> & children)
    {
        Types::BaseType const * value = Support::elementValue(element);
        if (value == nullptr)
            return;
        Templates::vector<Types::UUID> const strong = referencedUUIDs(*value, StrongKind);
        children.insert(children.end(), strong.begin(), strong.end());
    }

    // The entries of the set's own references go.
    void dropOwnReferences(MetadataSet & set)
    {
        for (MetadataSet::iterator it = set.begin(); it != set.end(); ++it)
            removeReferences(it->second);
        for (Element ** it = set.invalidBegin(); it != set.invalidEnd(); ++it)
            removeReferences(*it);
    }

    unsigned int ownReferences(MetadataSet const * set, Templates::set<Element *> & out, int kinds) const
    {
        if (set == nullptr)
            return 0;
        unsigned int added = 0;
        for (MetadataSet::const_iterator it = set->begin(); it != set->end(); ++it)
            if (holdsReference(*it->second, kinds) && out.insert(it->second).second)
                ++added;
        for (Element * const * it = set->invalidBegin(); it != set->invalidEnd(); ++it)
            if (holdsReference(**it, kinds) && out.insert(*it).second)
                ++added;
        return added;
    }

    MetadataSet * parentSet(MetadataSet const * set) const
    {
        if (set == nullptr)
            return nullptr;
        Types::UUID const * uid = set->instanceUID();
        if (uid == nullptr)
            return nullptr;
        UUIDToReferences::const_iterator entry = uuid2References.find(*uid);
        if (entry == uuid2References.end() || entry->second->empty())
            return nullptr;
        return &entry->second->sources().front()->metadataSet();
    }
};

MetadataSetRelationshipManager::MetadataSetRelationshipManager(PartitionMetadata * metadata)
    : impl_(new Impl(metadata))
{
}

MetadataSetRelationshipManager::~MetadataSetRelationshipManager() = default;

void MetadataSetRelationshipManager::enforceReferentialIntegrity(bool enforce) { impl_->enforce = enforce; }

bool MetadataSetRelationshipManager::canDeleteMetadataSet(MetadataSet const * set) const
{
    if (set == nullptr)
        return true;
    Types::UUID const * uid = set->instanceUID();
    return uid == nullptr || impl_->uuid2References.find(*uid) == impl_->uuid2References.end();
}

bool MetadataSetRelationshipManager::cascadeDelete(MetadataSet * set)
{
    if (set == nullptr || impl_->metadata == nullptr)
        return false;
    Types::UUID const * uid = set->instanceUID();
    if (uid == nullptr)
        return false;
    Types::UUID const target(*uid);
    Flag enforce(impl_->enforce, false);
    Flag cascade(impl_->inCascade, true);
    impl_->visiting.clear();
    bool const removed = impl_->metadata->removeMetadataSet(target);
    impl_->visiting.clear();
    return removed;
}

MetadataSet * MetadataSetRelationshipManager::parentSet(MetadataSet * set) { return impl_->parentSet(set); }

MetadataSet const * MetadataSetRelationshipManager::parentSet(MetadataSet const * set) const
{
    return impl_->parentSet(set);
}

unsigned int MetadataSetRelationshipManager::metadataSetStrongRefs(MetadataSet const * set,
                                                                   Templates::set<Element *> & out) const
{
    return impl_->ownReferences(set, out, StrongKind);
}

unsigned int MetadataSetRelationshipManager::metadataSetWeakRefs(MetadataSet const * set,
                                                                 Templates::set<Element *> & out) const
{
    return impl_->ownReferences(set, out, WeakKind);
}

MetadataSetRelationshipManager::UUIDToReferences const & MetadataSetRelationshipManager::uuid2ReferencesMap() const
{
    return impl_->uuid2References;
}

MetadataSetRelationshipManager::ReferencesToUUID const & MetadataSetRelationshipManager::references2UUIDMap() const
{
    return impl_->references2UUID;
}

void MetadataSetRelationshipManager::metadataSetKey(KLV::Key &) {}

void MetadataSetRelationshipManager::createdMetadataSet(MetadataSet *) {}

void MetadataSetRelationshipManager::removedMetadataSet(MetadataSet * set)
{
    if (set == nullptr)
        return;
    Types::UUID const * instanceUID = set->instanceUID();
    if (instanceUID == nullptr)
    {
        impl_->dropOwnReferences(*set);
        return;
    }
    Types::UUID const uid(*instanceUID);
    if (impl_->enforce && impl_->uuid2References.find(uid) != impl_->uuid2References.end())
        VELLUM_THROW(OperationNotAllowed, "Cannot removed this MetadataSet because is referenced by other Metadata Set");
    if (!impl_->visiting.insert(uid).second)
        VELLUM_THROW(InvalidFormat,
                     Utils::wide("Circular reference in MXF file! InstanceUID: ") + uid.toString(Types::TypeDefault));

    // In a cascade the sets below go first, while this one is still there: a strong reference
    // back to it is met as a second visit.
    if (impl_->inCascade && impl_->metadata != nullptr)
    {
        Templates::vector<Types::UUID> const children = impl_->strongChildren(*set);
        for (Templates::vector<Types::UUID>::const_iterator it = children.begin(); it != children.end(); ++it)
            impl_->metadata->removeMetadataSet(*it);
    }
    impl_->clearReferencesTo(uid);
    impl_->uuid2References.erase(uid);
    impl_->dropOwnReferences(*set);
    if (!impl_->inCascade)
        impl_->visiting.erase(uid);
}

void MetadataSetRelationshipManager::addedElement(MetadataSet &, MetaMetadata::MetaElement const *, Element & element,
                                                  Types::BaseType const & value)
{
    impl_->addReferences(&element, value);
}

void MetadataSetRelationshipManager::updatedElement(MetadataSet &, MetaMetadata::MetaElement const *, Element & element,
                                                    Types::Collection const &, Types::Collection const & newValue)
{
    impl_->removeReferences(&element);
    impl_->addReferences(&element, newValue);
}

void MetadataSetRelationshipManager::updatedElement(MetadataSet &, MetaMetadata::MetaElement const *, Element & element,
                                                    Types::SimpleDataType const &,
                                                    Types::SimpleDataType const & newValue)
{
    impl_->removeReferences(&element);
    impl_->addReferences(&element, newValue);
}

void MetadataSetRelationshipManager::updatedElementCollection(MetadataSet &, MetaMetadata::MetaElement const *,
                                                              Element & element, Types::Collection const & collection,
                                                              unsigned int index, Types::BaseType const * member)
{
    if (member != nullptr)
    {
        impl_->addReferences(&element, *member);
        return;
    }
    if (index >= collection.size())
        return;
    Templates::vector<Types::UUID> const going = referencedUUIDs(collection.at(index));
    for (Templates::vector<Types::UUID>::const_iterator it = going.begin(); it != going.end(); ++it)
        impl_->removeReference(&element, *it);
}

void MetadataSetRelationshipManager::removedElement(MetadataSet &, MetaMetadata::MetaElement const *, Element & element,
                                                    Types::BaseType const &)
{
    impl_->removeReferences(&element);
}
} // namespace Listeners
} // namespace Metadata
} // namespace Vellum
