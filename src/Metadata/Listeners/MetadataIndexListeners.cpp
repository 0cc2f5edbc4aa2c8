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
BaseMetadataIndexListener::ValueKey::ValueKey(Types::SimpleDataType const & value)
    : size(value.serializedSize()), head(0), value(&value)
{
    unsigned char const * bytes = size != 0 ? value.rawBuffer() : nullptr;
    for (unsigned i = 0; i < 8; ++i)
        head = (head << 8) | (i < size ? bytes[i] : 0);
}

bool BaseMetadataIndexListener::ValueLess::operator()(ValueKey const & a, ValueKey const & b) const
{
    if (a.size != b.size)
        return a.size < b.size;
    if (a.head != b.head)
        return a.head < b.head;
    return a.size > 8 && std::memcmp(a.value->rawBuffer() + 8, b.value->rawBuffer() + 8, a.size - 8) < 0;
}

struct BaseMetadataIndexListener::Impl
{
    VELLUM_CLASS_ALLOCATION
    Index index;

    // The values of the label, or null when none was ever indexed.
    ValueIndex * values(Types::UniversalLabel const & label)
    {
        Index::iterator it = index.find(label);
        return it == index.end() ? nullptr : &it->second;
    }
};

namespace
{
typedef BaseMetadataIndexListener::Index Index;
typedef BaseMetadataIndexListener::ValueIndex ValueIndex;

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
        Index::iterator values = index_.find(label_);
        if (values == index_.end())
            values = index_.insert(Index::value_type(label_, ValueIndex())).first;
        values->second.insert(ValueIndex::value_type(BaseMetadataIndexListener::ValueKey(value), &set_));
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
    explicit RemoveFromMetadataElementMapVisitor(ValueIndex * values) : values_(values) {}
    using Types::Visitors::DelegateToBaseVisitor::visit;
    void visit(Types::SimpleDataType const & value) override
    {
        if (values_ == nullptr)
            return;
        std::pair<ValueIndex::iterator, ValueIndex::iterator> range =
            values_->equal_range(BaseMetadataIndexListener::ValueKey(value));
        for (ValueIndex::iterator it = range.first; it != range.second; ++it)
            if (it->first.value == &value)
            {
                values_->erase(it);
                return;
            }
    }

private:
    ValueIndex * values_;
};
} // namespace

BaseMetadataIndexListener::BaseMetadataIndexListener() : impl_(new Impl) {}

BaseMetadataIndexListener::~BaseMetadataIndexListener() = default;

Templates::vector<MetadataSet *> BaseMetadataIndexListener::find(Types::UniversalLabel const & label,
                                                                 Types::SimpleDataType const & value)
{
    Templates::vector<MetadataSet *> result;
    ValueIndex const * values = impl_->values(label);
    if (values == nullptr)
        return result;
    std::pair<ValueIndex::const_iterator, ValueIndex::const_iterator> range = values->equal_range(ValueKey(value));
    for (ValueIndex::const_iterator it = range.first; it != range.second; ++it)
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
    RemoveFromMetadataElementMapVisitor remove(impl_->values(metaElement->universalLabel()));
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
    RemoveFromMetadataElementMapVisitor remove(impl_->values(metaElement->universalLabel()));
    oldValue.accept(remove);
}

uint64 BaseMetadataIndexListener::indexSize() const
{
    uint64 size = 0;
    for (Index::const_iterator it = impl_->index.begin(); it != impl_->index.end(); ++it)
        size += it->second.size();
    return size;
}

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
