#include "Metadata/Element.h"

#include "DataIO/DataSink.h"
#include "Exceptions/Exceptions.h"
#include "MetaMetadata/MetaAttribute.h"
#include "MetaMetadata/MetaElement.h"
#include "MetaMetadata/MisplacedAttribute.h"
#include "MetaMetadata/UnknownAttribute.h"
#include "Metadata/PartitionDictionary.h"
#include "Types/Integers.h"
#include "Types/LocalTag.h"

namespace Vellum
{
namespace Metadata
{
namespace
{
// The local tag of an element in one partition: the Primer's for a label the schema knows, the
// tag as read for an unknown one.
class GetLocalTagVisitor : public MetaMetadata::AbstractMetaAttributeVisitor
{
public:
    explicit GetLocalTagVisitor(PartitionDictionary const & dictionary) : dictionary_(dictionary), tag_() {}

    void visit(MetaMetadata::UnknownAttribute const & attribute) override { tag_ = attribute.localTag(); }
    void visit(MetaMetadata::MisplacedAttribute const & attribute) override
    {
        tag_ = dictionary_.find(attribute.metaElement().universalLabel());
    }
    void visit(MetaMetadata::MetaAttribute const & attribute) override
    {
        tag_ = dictionary_.find(attribute.metaElement().universalLabel());
    }

    Types::LocalTag const & tag() const { return tag_; }

private:
    PartitionDictionary const & dictionary_;
    Types::LocalTag tag_;
};

[[noreturn]] void throwTypeSizeExceeded()
{
    VELLUM_THROW(InvalidElementLength, "Type size exceeded");
}
} // namespace

void Element::serialize(DataIO::DataSink & sink, PartitionDictionary const & dictionary, int lengthSize) const
{
    if (empty())
        return;

    GetLocalTagVisitor tagVisitor(dictionary);
    MetaAttributePtr const attribute = metaAttribute();
    if (attribute.get() != nullptr)
        attribute->accept(tagVisitor);

    uint64 const length = totalLength();
    Templates::auto_ptr<Types::SimpleDataType> lengthField;
    switch (lengthSize)
    {
    case 1:
        if (length > 0xFFu)
            throwTypeSizeExceeded();
        lengthField.reset(new Types::UInt8(static_cast<unsigned char>(length)));
        break;
    case 2:
        if (length > 0xFFFFu)
            throwTypeSizeExceeded();
        lengthField.reset(new Types::UInt16(static_cast<Platform::UInt16>(length)));
        break;
    case 4:
        if (length > 0xFFFFFFFFu)
            throwTypeSizeExceeded();
        lengthField.reset(new Types::UInt32(static_cast<Platform::UInt32>(length)));
        break;
    default:
        // Any other width writes no length field.
        break;
    }

    tagVisitor.tag().serialize(sink);
    if (lengthField.get() != nullptr)
        lengthField->serialize(sink);
    serializeValue(sink);
}
} // namespace Metadata
} // namespace Vellum
