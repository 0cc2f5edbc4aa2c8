#pragma once
// Follows the strong references of the elements it visits: each target that the partition
// holds is appended to the output, once. A target met a second time (a cycle, or a set owned
// twice) throws InvalidFormat; a weak reference, and a strong one to a set that is not there,
// are passed over.

#include "Metadata/ElementVisitor.h"
#include "Templates/Containers.h"
#include "Types/UUID.h"
#include "Types/Visitors.h"

namespace Vellum
{
namespace Metadata
{
class MetadataSet;
class PartitionMetadata;

class StrongRefVisitor : public Visitors::NullElementVisitor, public Types::Visitors::NullVisitor
{
public:
    VELLUM_CLASS_ALLOCATION
    // Keeps references to all three; `visited` collects the instance UIDs of the targets.
    StrongRefVisitor(PartitionMetadata const & metadata, Templates::vector<MetadataSet const *> & out,
                     Templates::set<Types::UUID> & visited);

    using Types::Visitors::NullVisitor::visit;
    using Visitors::NullElementVisitor::visit;

    void visit(ReferenceElement const & element) override;
    void visit(ArrayReferenceElement const & element) override;
    void visit(BatchReferenceElement const & element) override;
    void visit(Types::StrongReference const & reference) override;

private:
    PartitionMetadata const & metadata_;
    Templates::vector<MetadataSet const *> & out_;
    Templates::set<Types::UUID> & visited_;
};
} // namespace Metadata
} // namespace Vellum
