// Writing a partition's metadata: the instance UID check, the orders of the sets, tidying of
// packages and tracks, and the strong reference walk that the orders are built on.

#include <deque>

#include "Exceptions/Exceptions.h"
#include "KLV/KeyPredicates.h"
#include "Metadata/ArrayReferenceElement.h"
#include "Metadata/BatchReferenceElement.h"
#include "Metadata/CollectionReferenceElement.h"
#include "Metadata/DarkMetadataSet.h"
#include "Metadata/Element.h"
#include "Metadata/MetadataKeys.h"
#include "Metadata/MetadataSet.h"
#include "Metadata/MetadataULs.h"
#include "Metadata/PartitionDictionary.h"
#include "Metadata/PartitionMetadata.h"
#include "Metadata/PartitionMetadataSupport.h"
#include "Metadata/ReferenceElement.h"
#include "Metadata/StrongRefVisitor.h"
#include "Metadata/Structural/DataDefinitionULs.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/StructuralMetadataULs.h"
#include "Packs/PrimerPack.h"
#include "Types/Collection.h"
#include "Types/References.h"
#include "Types/UniversalLabel.h"
#include "Types/Visitors.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace Metadata
{
namespace
{
typedef Templates::vector<MetadataSet const *> SetList;

// Two sets with one instance UID cannot both be written; neither can a set without one.
void checkInstanceUIDs(PartitionMetadata const & metadata)
{
    Templates::set<Types::UUID> seen;
    for (PartitionMetadata::const_iterator it = metadata.begin(); it != metadata.end(); ++it)
    {
        MetadataSet const & set = *it->second;
        Types::UUID const * uid = set.instanceUID();
        if (uid == nullptr)
            VELLUM_THROW(InvalidFormat, Utils::wide("The ") + set.key().toString(Types::TypeDefault) +
                                            Utils::wide(" metadataSet has no instance UID"));
        if (!seen.insert(*uid).second)
            VELLUM_THROW(InvalidFormat, Utils::wide("The ") + set.key().toString(Types::TypeDefault) +
                                            Utils::wide(" metadataSet has an instance UID, ") +
                                            uid->toString(Types::TypeDefault) + Utils::wide(", already defined!"));
    }
}

void writeDarkSets(PartitionMetadata const & metadata, DataIO::DataSink & sink)
{
    for (PartitionMetadata::const_dark_iterator it = metadata.darkBegin(); it != metadata.darkEnd(); ++it)
        (*it)->serialize(sink);
}

void writeSets(SetList const & list, PartitionDictionary const & dictionary, DataIO::DataSink & sink, bool withDark)
{
    for (SetList::const_iterator it = list.begin(); it != list.end(); ++it)
        (*it)->serialize(sink, dictionary, withDark);
}

// The data definition of the track's sequence is one of time code.
bool isTimeCodeTrack(PartitionMetadata const & metadata, MetadataSet const & track)
{
    Types::Reference const * sequenceReference =
        Support::singleReference(track, Structural::StructuralMetadataULs::sequence());
    if (sequenceReference == nullptr)
        return false;
    MetadataSet const * sequence = Support::referencedSet(metadata, *sequenceReference);
    if (sequence == nullptr)
        return false;
    try
    {
        Types::BaseType const * value = Support::elementValue(
            sequence->find(Structural::StructuralMetadataULs::dataDefinition()));
        Types::UniversalLabel const * label =
            value != nullptr ? Types::Visitors::getAs<Types::UniversalLabel>(*value) : nullptr;
        if (label == nullptr)
            return false;
        return *label == Structural::DataDefinitionULs::timecode12MInactive() ||
               *label == Structural::DataDefinitionULs::timecode12MActive() ||
               *label == Structural::DataDefinitionULs::timecode309M();
    }
    catch (Exceptions::NotFound const &)
    {
        return false;
    }
}

// The collection of strong references of `set` under `label`, or null.
CollectionReferenceElement * referenceCollection(MetadataSet & set, Types::UniversalLabel const & label)
{
    try
    {
        Element & element = set.find(label);
        Visitors::GetNonConstElementVisitor<BatchReferenceElement> batch;
        element.accept(batch);
        if (batch.value() != nullptr)
            return batch.value();
        Visitors::GetNonConstElementVisitor<ArrayReferenceElement> array;
        element.accept(array);
        return array.value();
    }
    catch (Exceptions::NotFound const &)
    {
        return nullptr;
    }
}

typedef Templates::vector<Templates::auto_ptr<Types::Reference>> ReferenceList;

Templates::auto_ptr<Types::Reference> copyReference(Types::Reference const & reference)
{
    Templates::auto_ptr<Types::SimpleDataType> copy = reference.clone();
    return Templates::auto_ptr<Types::Reference>(static_cast<Types::Reference *>(copy.release()));
}

// Takes every member out of the collection, from index 0, into `first` when `isFirst` holds for
// its target and into `rest` otherwise, then appends them again: `first` ahead, each in its order.
template <class Predicate>
void regroup(PartitionMetadata const & metadata, CollectionReferenceElement & collection, Predicate isFirst)
{
    ReferenceList first;
    ReferenceList rest;
    while (collection.size() > 0)
    {
        Types::Reference const & member = collection.at(0);
        MetadataSet const * target = Support::referencedSet(metadata, member);
        ReferenceList & list = (target != nullptr && isFirst(*target)) ? first : rest;
        list.push_back(copyReference(member));
        collection.remove(0);
    }
    ReferenceList * lists[2] = {&first, &rest};
    for (ReferenceList * list : lists)
        for (ReferenceList::iterator it = list->begin(); it != list->end(); ++it)
            collection.appendUnverifiedReference(std::move(*it));
}

// Material Packages ahead of the others, and in each package the time code tracks ahead of the
// others.
void tidy(PartitionMetadata & metadata)
{
    MetadataSet * preface = Support::firstSet(metadata, Structural::StructuralMetadataKeys::preface());
    if (preface == nullptr)
        VELLUM_THROW(NotFound, "Didn't find MetadataSet with specified key.");
    Types::Reference const * storageReference =
        Support::singleReference(*preface, Structural::StructuralMetadataULs::contentStorage());
    MetadataSet * contentStorage =
        storageReference != nullptr ? Support::referencedSet(metadata, *storageReference) : nullptr;
    VELLUM_METADATA_ASSERT(contentStorage != 0, "No ContentStorage");
    CollectionReferenceElement * packages =
        referenceCollection(*contentStorage, Structural::StructuralMetadataULs::packages());
    int const packagesCount = packages != nullptr ? packages->size() : 0;
    VELLUM_METADATA_ASSERT(packagesCount > 0, "No ContentStorage packages");

    regroup(metadata, *packages, [](MetadataSet const & package) {
        return package.key() == Structural::StructuralMetadataKeys::materialPackage();
    });

    for (int index = 0; index < packages->size(); ++index)
    {
        MetadataSet * package = Support::referencedSet(metadata, packages->at(index));
        if (package == nullptr)
            continue;
        CollectionReferenceElement * tracks =
            referenceCollection(*package, Structural::StructuralMetadataULs::tracks());
        if (tracks == nullptr || tracks->size() == 0)
            continue;
        regroup(metadata, *tracks,
                [&metadata](MetadataSet const & track) { return isTimeCodeTrack(metadata, track); });
    }
}

// Children ahead of their parents: every set that is not structural goes to the very front, the
// latest first; a structural one right behind the set at the front at that moment.
void backwardOrder(SetList & list, unsigned int orphans, bool privateFirst, SetList & privateSets)
{
    if (list.size() <= orphans || list.empty())
        return;
    SetList const copy(list);
    std::deque<MetadataSet const *> order;
    order.push_back(copy.front());
    for (SetList::const_iterator it = copy.begin() + 1; it != copy.end(); ++it)
    {
        MetadataSet const * set = *it;
        if (KLV::isStructuralMetadataSet(set->key()))
        {
            MetadataSet const * front = order.front();
            order.pop_front();
            order.push_front(set);
            order.push_front(front);
        }
        else if (privateFirst && set->key()[8] == 15)
            privateSets.push_back(set);
        else
            order.push_front(set);
    }
    list.assign(order.begin(), order.end());
}
} // namespace

void PartitionMetadata::serialize(DataIO::DataSink & sink, bool withDark, SerializationOrder order, bool withPrimer)
{
    switch (order)
    {
    case PrefaceThenKeys:
    {
        checkInstanceUIDs(*this);
        Templates::vector<MetadataSet *> prefaces = find(MetadataKeys::preface());
        if (prefaces.empty())
            VELLUM_THROW(InvalidStructure, "Preface not found in PartitionMetadata");
        if (prefaces.size() > 1)
            VELLUM_THROW(InvalidStructure, "More than one Preface found in PartitionMetadata");
        if (withPrimer)
        {
            generateLocalTags();
            partitionDictionary().primer().serialize(sink);
        }
        MetadataSet const * preface = prefaces.front();
        preface->serialize(sink, partitionDictionary(), withDark);
        for (const_iterator it = begin(); it != end(); ++it)
            if (it->second != preface)
                it->second->serialize(sink, partitionDictionary(), withDark);
        if (withDark)
            writeDarkSets(*this, sink);
        break;
    }
    case ForwardDepthFirst:
        serializeForwardReferences(sink, withDark, true, withPrimer);
        break;
    case ForwardLevelFirst:
        serializeForwardReferences(sink, withDark, false, withPrimer);
        break;
    case ForwardDepthFirstTidied:
        tidy(*this);
        serializeForwardReferences(sink, withDark, true, withPrimer);
        break;
    case BackwardReferences:
    case BackwardReferencesPrivateFirst:
    {
        tidy(*this);
        SetList list;
        unsigned int const orphans = calculateSerializationOrder(list, withDark, true);
        SetList privateSets;
        backwardOrder(list, orphans, order == BackwardReferencesPrivateFirst, privateSets);
        checkInstanceUIDs(*this);
        if (withPrimer)
        {
            generateLocalTags();
            partitionDictionary().primer().serialize(sink);
        }
        writeSets(privateSets, partitionDictionary(), sink, withDark);
        writeSets(list, partitionDictionary(), sink, withDark);
        if (withDark)
            writeDarkSets(*this, sink);
        break;
    }
    default:
        break;
    }
}

void PartitionMetadata::serializeForwardReferences(DataIO::DataSink & sink, bool withDark, bool depthFirst,
                                                   bool withPrimer)
{
    checkInstanceUIDs(*this);
    SetList list;
    calculateSerializationOrder(list, withDark, depthFirst);
    if (withPrimer)
    {
        generateLocalTags();
        partitionDictionary().primer().serialize(sink);
    }
    writeSets(list, partitionDictionary(), sink, withDark);
    if (withDark)
        writeDarkSets(*this, sink);
}

unsigned int PartitionMetadata::calculateSerializationOrder(Templates::vector<MetadataSet const *> & list,
                                                            bool withInvalid, bool depthFirst) const
{
    MetadataSet const * root = Support::firstSet(*this, MetadataKeys::preface());
    if (root == nullptr)
        VELLUM_THROW(NotFound, "Didn't find MetadataSet with specified key.");
    SetList::size_type const start = list.size();
    list.push_back(root);
    Templates::set<Types::UUID> visited;
    getChildStrongReferencesRecursive(*this, *root, list, visited, withInvalid, depthFirst);

    Templates::set<MetadataSet const *> listed(list.begin() + start, list.end());
    unsigned int orphans = 0;
    for (const_iterator it = begin(); it != end(); ++it)
        if (listed.find(it->second) == listed.end())
        {
            list.push_back(it->second);
            ++orphans;
        }
    return orphans;
}

Packs::PartitionPack::PartitionStatus verifyPartitionMetadataStatus(PartitionMetadata const & metadata, bool closed)
{
    Templates::vector<Element *> found;
    metadata.incompleteElements(found);
    bool const incomplete = !found.empty();
    found.clear();
    bool closedOk = false;
    if (closed)
    {
        metadata.openElements(found);
        closedOk = found.empty();
    }
    if (incomplete)
        return closedOk ? Packs::PartitionPack::ClosedIncomplete : Packs::PartitionPack::OpenIncomplete;
    return closedOk ? Packs::PartitionPack::ClosedComplete : Packs::PartitionPack::OpenComplete;
}

void getChildStrongReferences(PartitionMetadata const & metadata, MetadataSet const & set,
                              Templates::vector<MetadataSet const *> & out, Templates::set<Types::UUID> & visited,
                              bool withInvalid)
{
    StrongRefVisitor visitor(metadata, out, visited);
    for (MetadataSet::const_iterator it = set.begin(); it != set.end(); ++it)
        it->second->accept(visitor);
    if (withInvalid)
        for (Element * const * it = set.invalidBegin(); it != set.invalidEnd(); ++it)
            (*it)->accept(visitor);
}

void getChildStrongReferencesRecursive(PartitionMetadata const & metadata, MetadataSet const & set,
                                       Templates::vector<MetadataSet const *> & out,
                                       Templates::set<Types::UUID> & visited, bool withInvalid, bool depthFirst)
{
    SetList children;
    getChildStrongReferences(metadata, set, children, visited, withInvalid);
    if (!depthFirst)
        out.insert(out.end(), children.begin(), children.end());
    for (SetList::const_iterator it = children.begin(); it != children.end(); ++it)
    {
        if (depthFirst)
            out.push_back(*it);
        getChildStrongReferencesRecursive(metadata, **it, out, visited, withInvalid, depthFirst);
    }
}

StrongRefVisitor::StrongRefVisitor(PartitionMetadata const & metadata, Templates::vector<MetadataSet const *> & out,
                                   Templates::set<Types::UUID> & visited)
    : metadata_(metadata), out_(out), visited_(visited)
{
}

void StrongRefVisitor::visit(ReferenceElement const & element)
{
    if (element.value() != nullptr)
        element.value()->accept(*this);
}

void StrongRefVisitor::visit(ArrayReferenceElement const & element)
{
    int const size = element.size();
    for (int index = 0; index < size; ++index)
        element.at(index).accept(*this);
}

void StrongRefVisitor::visit(BatchReferenceElement const & element)
{
    int const size = element.size();
    for (int index = 0; index < size; ++index)
        element.at(index).accept(*this);
}

void StrongRefVisitor::visit(Types::StrongReference const & reference)
{
    MetadataSet const * target = Support::referencedSet(metadata_, reference);
    if (target == nullptr)
        return;
    Types::UUID const uuid(reference.rawBuffer());
    if (!visited_.insert(uuid).second)
        VELLUM_THROW(InvalidFormat,
                     Utils::wide("Circular reference for this instanceUID: ") + uuid.toString(Types::TypeDefault));
    out_.push_back(target);
}

namespace
{
// Counts the strong references of the visited elements to one instance UID.
class StrongRefParentVisitor : public Visitors::NullElementVisitor, public Types::Visitors::NullVisitor
{
public:
    VELLUM_CLASS_ALLOCATION
    explicit StrongRefParentVisitor(Types::UUID const & target) : target_(target), count_(0) {}
    unsigned int count() const { return count_; }

    using Types::Visitors::NullVisitor::visit;
    using Visitors::NullElementVisitor::visit;

    void visit(ReferenceElement const & element) override
    {
        if (element.value() != nullptr)
            element.value()->accept(*this);
    }
    void visit(ArrayReferenceElement const & element) override
    {
        for (int index = 0; index < element.size(); ++index)
            element.at(index).accept(*this);
    }
    void visit(BatchReferenceElement const & element) override
    {
        for (int index = 0; index < element.size(); ++index)
            element.at(index).accept(*this);
    }
    void visit(Types::StrongReference const & reference) override
    {
        if (std::memcmp(reference.rawBuffer(), target_.rawBuffer(), Types::UUID::SIZE) == 0)
            ++count_;
    }

private:
    Types::UUID const & target_;
    unsigned int count_;
};

template <class Set, class Out>
unsigned int collectParents(PartitionMetadata const & metadata, Set * target, Out & out)
{
    if (target == nullptr)
        return 0;
    Types::UUID const * uid = target->instanceUID();
    if (uid == nullptr)
        return 0;
    unsigned int appended = 0;
    for (PartitionMetadata::const_iterator it = metadata.begin(); it != metadata.end(); ++it)
    {
        StrongRefParentVisitor visitor(*uid);
        MetadataSet const & set = *it->second;
        for (MetadataSet::const_iterator element = set.begin(); element != set.end(); ++element)
            element->second->accept(visitor);
        for (unsigned int i = 0; i < visitor.count(); ++i)
            out.push_back(it->second);
        appended += visitor.count();
    }
    return appended;
}
} // namespace

unsigned int PartitionMetadata::parentSets(MetadataSet * set, Templates::vector<MetadataSet *> & out)
{
    return collectParents(*this, set, out);
}

unsigned int PartitionMetadata::parentSets(MetadataSet const * set, Templates::vector<MetadataSet const *> & out) const
{
    return collectParents(*this, set, out);
}
} // namespace Metadata
} // namespace Vellum
