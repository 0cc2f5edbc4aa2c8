#include <cstring>

#include "Metadata/Listeners/BaseMetadataIndexListener.h"
#include "Metadata/Listeners/DefaultMetadataIndexListener.h"
#include "Metadata/Structural/StructuralMetadataULs.h"
#include "MetaMetadata/MetaElement.h"
#include "Types/Visitors.h"

namespace Vellum
{
namespace Metadata
{
namespace Listeners
{
bool BaseMetadataIndexListener::IndexKeyLess::operator()(IndexKey const & a, IndexKey const & b) const
{
    if (a.first < b.first)
        return true;
    if (b.first < a.first)
        return false;
    unsigned short const sizeA = a.second->serializedSize();
    unsigned short const sizeB = b.second->serializedSize();
    if (sizeA != sizeB)
        return sizeA < sizeB;
    return sizeA != 0 && std::memcmp(a.second->rawBuffer(), b.second->rawBuffer(), sizeA) < 0;
}

struct BaseMetadataIndexListener::Impl
{
    VELLUM_CLASS_ALLOCATION
    Index index;
};

namespace
{
typedef BaseMetadataIndexListener::Index Index;
typedef BaseMetadataIndexListener::IndexKey IndexKey;

// Enters a simple value under its label; collections and their members stay out.
class LoadToMetadataElementMapVisitor : public Types::Visitors::DelegateToBaseVisitor
{
public:
    LoadToMetadataElementMapVisitor(Index & index, Types::UniversalLabel const & label, MetadataSet & set)
        : index_(index), label_(label), set_(set)
    {
    }
    using Types::Visitors::DelegateToBaseVisitor::visit;
    void visit(Types::SimpleDataType const & value) override
    {
        index_.insert(Index::value_type(IndexKey(label_, &value), &set_));
    }

private:
    Index & index_;
    Types::UniversalLabel const & label_;
    MetadataSet & set_;
};

// Takes out the entry of this very value object; equal values of other sets stay.
class RemoveFromMetadataElementMapVisitor : public Types::Visitors::DelegateToBaseVisitor
{
public:
    RemoveFromMetadataElementMapVisitor(Index & index, Types::UniversalLabel const & label)
        : index_(index), label_(label)
    {
    }
    using Types::Visitors::DelegateToBaseVisitor::visit;
    void visit(Types::SimpleDataType const & value) override
    {
        std::pair<Index::iterator, Index::iterator> range = index_.equal_range(IndexKey(label_, &value));
        for (Index::iterator it = range.first; it != range.second; ++it)
            if (it->first.second == &value)
            {
                index_.erase(it);
                return;
            }
    }

private:
    Index & index_;
    Types::UniversalLabel const & label_;
};
} // namespace

BaseMetadataIndexListener::BaseMetadataIndexListener() : impl_(new Impl) {}

BaseMetadataIndexListener::~BaseMetadataIndexListener() = default;

Templates::vector<MetadataSet *> BaseMetadataIndexListener::find(Types::UniversalLabel const & label,
                                                                 Types::SimpleDataType const & value)
{
    Templates::vector<MetadataSet *> result;
    std::pair<Index::const_iterator, Index::const_iterator> range =
        impl_->index.equal_range(IndexKey(label, &value));
    for (Index::const_iterator it = range.first; it != range.second; ++it)
        result.push_back(it->second);
    return result;
}

void BaseMetadataIndexListener::metadataSetKey(KLV::Key &) {}
void BaseMetadataIndexListener::createdMetadataSet(MetadataSet *) {}
void BaseMetadataIndexListener::removedMetadataSet(MetadataSet *) {}

void BaseMetadataIndexListener::addedElement(MetadataSet & set, MetaMetadata::MetaElement const * metaElement,
                                             Element &, Types::BaseType const & value)
{
    if (metaElement == nullptr || !isIndexed(metaElement->universalLabel()))
        return;
    LoadToMetadataElementMapVisitor visitor(impl_->index, metaElement->universalLabel(), set);
    value.accept(visitor);
}

void BaseMetadataIndexListener::updatedElement(MetadataSet &, MetaMetadata::MetaElement const *, Element &,
                                               Types::Collection const &, Types::Collection const &)
{
}

void BaseMetadataIndexListener::updatedElement(MetadataSet & set, MetaMetadata::MetaElement const * metaElement,
                                               Element &, Types::SimpleDataType const & oldValue,
                                               Types::SimpleDataType const & newValue)
{
    if (metaElement == nullptr || !isIndexed(metaElement->universalLabel()))
        return;
    RemoveFromMetadataElementMapVisitor remove(impl_->index, metaElement->universalLabel());
    oldValue.accept(remove);
    LoadToMetadataElementMapVisitor load(impl_->index, metaElement->universalLabel(), set);
    newValue.accept(load);
}

void BaseMetadataIndexListener::updatedElementCollection(MetadataSet &, MetaMetadata::MetaElement const *, Element &,
                                                         Types::Collection const &, unsigned int,
                                                         Types::BaseType const *)
{
}

void BaseMetadataIndexListener::removedElement(MetadataSet &, MetaMetadata::MetaElement const * metaElement,
                                               Element &, Types::BaseType const & oldValue)
{
    if (metaElement == nullptr || !isIndexed(metaElement->universalLabel()))
        return;
    RemoveFromMetadataElementMapVisitor remove(impl_->index, metaElement->universalLabel());
    oldValue.accept(remove);
}

uint64 BaseMetadataIndexListener::indexSize() const { return impl_->index.size(); }

struct DefaultMetadataIndexListener::Impl
{
    VELLUM_CLASS_ALLOCATION
    Templates::set<Types::UniversalLabel> labels;
};

DefaultMetadataIndexListener::DefaultMetadataIndexListener() : impl_(new Impl)
{
    impl_->labels.insert(Structural::StructuralMetadataULs::instanceUID());
    impl_->labels.insert(Structural::StructuralMetadataULs::thisGenerationUID());
    impl_->labels.insert(Structural::StructuralMetadataULs::linkedPackageUID());
    impl_->labels.insert(Structural::StructuralMetadataULs::trackID());
    impl_->labels.insert(Structural::StructuralMetadataULs::packageUID());
}

DefaultMetadataIndexListener::~DefaultMetadataIndexListener() = default;

bool DefaultMetadataIndexListener::isIndexed(Types::UniversalLabel const & label)
{
    return impl_->labels.find(label) != impl_->labels.end();
}
} // namespace Listeners
} // namespace Metadata
} // namespace Vellum
