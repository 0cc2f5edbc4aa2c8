#include "Metadata/PartitionMetadataSupport.h"

#include <cstdio>
#include <cstdlib>

#include "Exceptions/Exceptions.h"
#include "Metadata/ArrayElement.h"
#include "Metadata/ArrayReferenceElement.h"
#include "Metadata/BatchElement.h"
#include "Metadata/BatchReferenceElement.h"
#include "Metadata/ElementVisitor.h"
#include "Metadata/MetadataSet.h"
#include "Metadata/MetadataULs.h"
#include "Metadata/PartitionMetadata.h"
#include "Metadata/ReferenceElement.h"
#include "Metadata/SimpleElement.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "MetaMetadata/Helpers.h"
#include "MetaMetadata/MetaElement.h"
#include "Types/Collection.h"
#include "Types/References.h"

namespace Vellum
{
namespace Metadata
{
namespace Support
{
namespace
{
class ValueVisitor : public Visitors::ElementVisitor
{
public:
    ValueVisitor() : value_(nullptr) {}
    Types::BaseType const * value() const { return value_; }

    void visit(BatchReferenceElement const & element) override { value_ = element.value(); }
    void visit(ArrayReferenceElement const & element) override { value_ = element.value(); }
    void visit(ReferenceElement const & element) override { value_ = element.value(); }
    void visit(BatchElement const & element) override { value_ = element.value(); }
    void visit(ArrayElement const & element) override { value_ = element.value(); }
    void visit(SimpleElement const & element) override { value_ = element.value(); }

private:
    Types::BaseType const * value_;
};
} // namespace

Types::BaseType const * elementValue(Element const & element)
{
    ValueVisitor visitor;
    element.accept(visitor);
    return visitor.value();
}

MetaMetadata::MetaElement const * elementMetaElement(Element const & element)
{
    return MetaMetadata::Helpers::abstractMetaAttributeToMetaElement(element.metaAttribute());
}

Types::UniversalLabel const & elementLabel(Element const & element)
{
    MetaMetadata::MetaElement const * metaElement = elementMetaElement(element);
    return metaElement != nullptr ? metaElement->universalLabel() : MetadataULs::null();
}

MetadataSet * referencedSet(PartitionMetadata const & metadata, Types::Reference const & reference)
{
    // The index compares values by size and bytes, and a reference has the bytes of the UUID
    // that it names.
    Templates::vector<MetadataSet *> found = metadata.find(MetadataULs::instanceUID(), reference);
    return found.empty() ? nullptr : found.front();
}

MetadataSet * firstSet(PartitionMetadata const & metadata, KLV::Key const & key)
{
    Templates::vector<MetadataSet *> found = metadata.find(key);
    return found.empty() ? nullptr : found.front();
}

Types::Reference const * singleReference(MetadataSet const & set, Types::UniversalLabel const & label)
{
    try
    {
        Visitors::GetElementVisitor<ReferenceElement> visitor;
        set.find(label).accept(visitor);
        return visitor.value() != nullptr ? visitor.value()->value() : nullptr;
    }
    catch (Exceptions::NotFound const &)
    {
        return nullptr;
    }
}

bool isGenericPackage(MetadataSet const & set)
{
    return set.key() == Structural::StructuralMetadataKeys::materialPackage() ||
           set.key() == Structural::StructuralMetadataKeys::sourcePackage();
}

bool isPreface(MetadataSet const & set) { return set.key() == Structural::StructuralMetadataKeys::preface(); }

void assertionFailed(char const * condition, char const * message, char const * file, int line)
{
    std::fprintf(stderr, "Assertion failed: %s: %s (%s:%d)\n", condition, message, file, line);
    std::fflush(stderr);
    std::abort();
}
} // namespace Support
} // namespace Metadata
} // namespace Vellum
