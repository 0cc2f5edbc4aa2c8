#include "Exceptions/Exceptions.h"
#include "Metadata/BatchReferenceElement.h"
#include "Metadata/ArrayReferenceElement.h"
#include "Metadata/CollectionReferenceElement.h"
#include "Metadata/ElementVisitor.h"
#include "Metadata/Listeners/GenerationUIDWriterListener.h"
#include "Metadata/Listeners/LastModifiedDateUpdaterListener.h"
#include "Metadata/MetadataSet.h"
#include "Metadata/PartitionMetadata.h"
#include "Metadata/PartitionMetadataSupport.h"
#include "Metadata/SimpleElement.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/StructuralMetadataULs.h"
#include "Types/Factories/TimeStamp.h"
#include "Types/Factories/UID.h"
#include "Types/Timestamp.h"
#include "Types/UUID.h"

namespace Vellum
{
namespace Metadata
{
namespace Listeners
{
namespace
{
// The sets of a list, each once, in the order they first came.
class SetList
{
public:
    void add(MetadataSet * set)
    {
        if (members_.insert(set).second)
            order_.push_back(set);
    }
    void remove(MetadataSet * set)
    {
        if (members_.erase(set) == 0)
            return;
        for (Templates::vector<MetadataSet *>::iterator it = order_.begin(); it != order_.end(); ++it)
            if (*it == set)
            {
                order_.erase(it);
                break;
            }
    }
    bool empty() const { return order_.empty(); }
    Templates::vector<MetadataSet *> const & sets() const { return order_; }
    void clear()
    {
        members_.clear();
        order_.clear();
    }

private:
    Templates::set<MetadataSet *> members_;
    Templates::vector<MetadataSet *> order_;
};

// The simple element of `set` under `label`, or null when the set has none.
SimpleElement * simpleElement(MetadataSet & set, Types::UniversalLabel const & label)
{
    try
    {
        Visitors::GetNonConstElementVisitor<SimpleElement> visitor;
        set.find(label).accept(visitor);
        return visitor.value();
    }
    catch (Exceptions::NotFound const &)
    {
        return nullptr;
    }
}

// Puts a copy of `value` into the element of `set` under `label`; a set without the element is
// left alone.
void setValue(MetadataSet & set, Types::UniversalLabel const & label, Types::SimpleDataType const & value)
{
    SimpleElement * element = simpleElement(set, label);
    if (element != nullptr)
        element->set(value.clone(), false);
}

class Flag
{
public:
    explicit Flag(bool & flag) : flag_(flag) { flag_ = true; }
    ~Flag() { flag_ = false; }

private:
    bool & flag_;
};
} // namespace

struct GenerationUIDWriterListener::Impl
{
    VELLUM_CLASS_ALLOCATION
    Impl() : partition(nullptr), identification(nullptr), inCommit(false) {}

    PartitionMetadata * partition;
    MetadataSet * identification;
    bool inCommit;
    SetList changed;
    SetList created;
    Templates::set<MetadataSet *> removed;

    void takePartition(MetadataSet & set)
    {
        if (partition == nullptr)
            partition = dynamic_cast<PartitionMetadata *>(set.owner());
    }

    void changedSet(MetadataSet & set)
    {
        takePartition(set);
        if (inCommit || removed.find(&set) != removed.end())
            return;
        changed.add(&set);
    }

    // A new Identification with a new ThisGenerationUID, the last of the Preface's, which takes
    // its generation.
    void makeIdentification()
    {
        MetadataSet * made = partition->createMetadataSet(Structural::StructuralMetadataKeys::identification());
        setValue(*made, Structural::StructuralMetadataULs::thisGenerationUID(),
                 Types::Factories::UID::generateUUID());
        identification = made;
        MetadataSet * preface = Support::firstSet(*partition, Structural::StructuralMetadataKeys::preface());
        if (preface == nullptr)
            return;
        try
        {
            Element & list = preface->find(Structural::StructuralMetadataULs::identificationList());
            Visitors::GetNonConstElementVisitor<ArrayReferenceElement> array;
            list.accept(array);
            if (array.value() != nullptr)
                array.value()->append(made);
            Visitors::GetNonConstElementVisitor<BatchReferenceElement> batch;
            list.accept(batch);
            if (batch.value() != nullptr)
                batch.value()->append(made);
        }
        catch (Exceptions::NotFound const &)
        {
        }
        Types::SimpleDataType const * generation = thisGenerationUID();
        if (generation != nullptr)
            setValue(*preface, Structural::StructuralMetadataULs::generationUID(), *generation);
    }

    Types::SimpleDataType const * thisGenerationUID() const
    {
        if (identification == nullptr)
            return nullptr;
        SimpleElement * element = simpleElement(*identification, Structural::StructuralMetadataULs::thisGenerationUID());
        return element != nullptr ? element->value() : nullptr;
    }
};

GenerationUIDWriterListener::GenerationUIDWriterListener() : impl_(new Impl) {}

GenerationUIDWriterListener::~GenerationUIDWriterListener() = default;

void GenerationUIDWriterListener::setIdentification(MetadataSet * identification)
{
    impl_->identification = identification;
}

void GenerationUIDWriterListener::reset() { impl_->identification = nullptr; }

void GenerationUIDWriterListener::commit()
{
    if (impl_->changed.empty() && impl_->created.empty())
        return;
    if (impl_->partition == nullptr)
        return;
    Flag committing(impl_->inCommit);
    if (impl_->identification == nullptr)
        impl_->makeIdentification();

    Types::SimpleDataType const * generation = impl_->thisGenerationUID();
    if (generation != nullptr)
    {
        // The generation is copied: setting it on the Identification itself would replace it.
        Templates::auto_ptr<Types::SimpleDataType> value = generation->clone();
        SetList const * lists[2] = {&impl_->created, &impl_->changed};
        for (SetList const * list : lists)
        {
            Templates::vector<MetadataSet *> const sets = list->sets();
            for (Templates::vector<MetadataSet *>::const_iterator it = sets.begin(); it != sets.end(); ++it)
                setValue(**it, Structural::StructuralMetadataULs::generationUID(), *value);
        }
    }
    impl_->created.clear();
    impl_->changed.clear();
}

void GenerationUIDWriterListener::metadataSetKey(KLV::Key &) {}

void GenerationUIDWriterListener::createdMetadataSet(MetadataSet * set)
{
    if (set == nullptr)
        return;
    impl_->takePartition(*set);
    // A new set may stand where a removed one stood.
    impl_->removed.erase(set);
    if (!impl_->inCommit)
        impl_->created.add(set);
}

void GenerationUIDWriterListener::removedMetadataSet(MetadataSet * set)
{
    impl_->changed.remove(set);
    impl_->created.remove(set);
    impl_->removed.insert(set);
    if (impl_->identification == set)
        impl_->identification = nullptr;
}

void GenerationUIDWriterListener::addedElement(MetadataSet & set, MetaMetadata::MetaElement const *, Element &,
                                               Types::BaseType const &)
{
    impl_->changedSet(set);
}

void GenerationUIDWriterListener::updatedElement(MetadataSet & set, MetaMetadata::MetaElement const *, Element &,
                                                 Types::Collection const &, Types::Collection const &)
{
    impl_->changedSet(set);
}

void GenerationUIDWriterListener::updatedElement(MetadataSet & set, MetaMetadata::MetaElement const *, Element &,
                                                 Types::SimpleDataType const &, Types::SimpleDataType const &)
{
    impl_->changedSet(set);
}

void GenerationUIDWriterListener::updatedElementCollection(MetadataSet & set, MetaMetadata::MetaElement const *,
                                                           Element &, Types::Collection const &, unsigned int,
                                                           Types::BaseType const *)
{
    impl_->changedSet(set);
}

void GenerationUIDWriterListener::removedElement(MetadataSet & set, MetaMetadata::MetaElement const *, Element &,
                                                 Types::BaseType const &)
{
    impl_->changedSet(set);
}

struct LastModifiedDateUpdaterListener::Impl
{
    VELLUM_CLASS_ALLOCATION
    SetList changed;
    Templates::set<MetadataSet *> removed;

    void changedSet(MetadataSet & set)
    {
        if (removed.find(&set) == removed.end())
            changed.add(&set);
    }

    // Stamps the package or Preface at or above `set`, each once.
    void stamp(PartitionMetadata & partition, MetadataSet * set, Types::Timestamp const & now,
               Templates::set<MetadataSet *> & seen)
    {
        if (!seen.insert(set).second)
            return;
        if (Support::isGenericPackage(*set))
            setValue(*set, Structural::StructuralMetadataULs::packageModifiedDate(), now);
        else if (Support::isPreface(*set))
            setValue(*set, Structural::StructuralMetadataULs::lastModifiedDate(), now);
        else
        {
            Templates::vector<MetadataSet *> parents;
            partition.parentSets(set, parents);
            for (Templates::vector<MetadataSet *>::iterator it = parents.begin(); it != parents.end(); ++it)
                stamp(partition, *it, now, seen);
        }
    }
};

LastModifiedDateUpdaterListener::LastModifiedDateUpdaterListener() : impl_(new Impl) {}

LastModifiedDateUpdaterListener::~LastModifiedDateUpdaterListener() = default;

void LastModifiedDateUpdaterListener::commit()
{
    if (impl_->changed.empty())
        return;
    Templates::vector<MetadataSet *> const sets = impl_->changed.sets();
    PartitionMetadata * partition = dynamic_cast<PartitionMetadata *>(sets.front()->owner());
    if (partition != nullptr)
    {
        Types::Timestamp const now = Types::Factories::TimeStamp::getCurrentDate();
        Templates::set<MetadataSet *> seen;
        for (Templates::vector<MetadataSet *>::const_iterator it = sets.begin(); it != sets.end(); ++it)
            impl_->stamp(*partition, *it, now, seen);
    }
    impl_->changed.clear();
}

void LastModifiedDateUpdaterListener::createdMetadataSet(MetadataSet * set)
{
    // A new set may stand where a removed one stood.
    impl_->removed.erase(set);
}

void LastModifiedDateUpdaterListener::removedMetadataSet(MetadataSet * set)
{
    impl_->changed.remove(set);
    impl_->removed.insert(set);
}

void LastModifiedDateUpdaterListener::addedElement(MetadataSet & set, MetaMetadata::MetaElement const *, Element &,
                                                   Types::BaseType const &)
{
    impl_->changedSet(set);
}

void LastModifiedDateUpdaterListener::updatedElement(MetadataSet & set, MetaMetadata::MetaElement const *, Element &,
                                                     Types::Collection const &, Types::Collection const &)
{
    impl_->changedSet(set);
}

void LastModifiedDateUpdaterListener::updatedElement(MetadataSet & set, MetaMetadata::MetaElement const *, Element &,
                                                     Types::SimpleDataType const &, Types::SimpleDataType const &)
{
    impl_->changedSet(set);
}

void LastModifiedDateUpdaterListener::updatedElementCollection(MetadataSet & set, MetaMetadata::MetaElement const *,
                                                               Element &, Types::Collection const &, unsigned int,
                                                               Types::BaseType const *)
{
    impl_->changedSet(set);
}

void LastModifiedDateUpdaterListener::removedElement(MetadataSet & set, MetaMetadata::MetaElement const *, Element &,
                                                     Types::BaseType const &)
{
    impl_->changedSet(set);
}
} // namespace Listeners
} // namespace Metadata
} // namespace Vellum
