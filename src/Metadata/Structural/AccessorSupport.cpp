// The element work behind the typed accessors of the structural classes.

#include "Metadata/Structural/Accessors.h"

#include "Exceptions/Exceptions.h"
#include "Metadata/ArrayElement.h"
#include "Metadata/ArrayReferenceElement.h"
#include "Metadata/BatchElement.h"
#include "Metadata/BatchReferenceElement.h"
#include "Metadata/ElementVisitor.h"
#include "Metadata/MetadataSetOwner.h"
#include "Metadata/MetadataULs.h"
#include "Metadata/ReferenceElement.h"
#include "Metadata/SimpleElement.h"
#include "Types/Collection.h"
#include "Types/UUID.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace Metadata
{
namespace Structural
{
namespace Accessors
{
namespace
{
// Sorts an element into the four kinds that the accessors tell apart.
class ElementKind : public Visitors::NullNonConstElementVisitor
{
public:
    ElementKind()
        : simple(nullptr), reference(nullptr), collection(nullptr), array(nullptr), references(nullptr),
          referenceArray(nullptr)
    {
    }
    void visit(SimpleElement & element) override { simple = &element; }
    void visit(ReferenceElement & element) override { reference = &element; }
    void visit(ArrayElement & element) override
    {
        collection = &element;
        array = &element;
    }
    void visit(BatchElement & element) override { collection = &element; }
    void visit(ArrayReferenceElement & element) override
    {
        references = &element;
        referenceArray = &element;
    }
    void visit(BatchReferenceElement & element) override { references = &element; }

    SimpleElement * simple;
    ReferenceElement * reference;
    CollectionElement * collection;
    ArrayElement * array;
    CollectionReferenceElement * references;
    ArrayReferenceElement * referenceArray;
};

class ConstElementKind : public Visitors::NullElementVisitor
{
public:
    ConstElementKind() : simple(nullptr), reference(nullptr), collection(nullptr), references(nullptr) {}
    void visit(SimpleElement const & element) override { simple = &element; }
    void visit(ReferenceElement const & element) override { reference = &element; }
    void visit(ArrayElement const & element) override { collection = &element; }
    void visit(BatchElement const & element) override { collection = &element; }
    void visit(ArrayReferenceElement const & element) override { references = &element; }
    void visit(BatchReferenceElement const & element) override { references = &element; }

    SimpleElement const * simple;
    ReferenceElement const * reference;
    CollectionElement const * collection;
    CollectionReferenceElement const * references;
};

ConstElementKind kindOf(MetadataSet const & set, Types::UniversalLabel const & label)
{
    ConstElementKind kind;
    set.find(label).accept(kind);
    return kind;
}

ElementKind kindOf(MetadataSet & set, Types::UniversalLabel const & label)
{
    ElementKind kind;
    set.find(label).accept(kind);
    return kind;
}

[[noreturn]] void wrongKind(Types::UniversalLabel const & label, char const * kind)
{
    Templates::wstring message = Utils::wide("The element ");
    message += label.toString();
    message += Utils::wide(" is not ");
    message += Utils::wide(kind);
    VELLUM_THROW(InvalidMetaElement, message);
}
} // namespace

Types::SimpleDataType const * simpleValue(MetadataSet const & set, Types::UniversalLabel const & label)
{
    ConstElementKind kind = kindOf(set, label);
    return kind.simple ? kind.simple->value() : nullptr;
}

void setSimpleValue(MetadataSet & set, Types::UniversalLabel const & label,
                    Templates::auto_ptr<Types::SimpleDataType> value)
{
    ElementKind kind = kindOf(set, label);
    if (!kind.simple)
        wrongKind(label, "a simple element");
    kind.simple->set(std::move(value), false);
}

MetadataSet * referencedSet(MetadataSet const & holder, Types::SimpleDataType const & reference)
{
    MetadataSetOwner * owner = holder.owner();
    if (!owner || reference.serializedSize() != 16)
        return nullptr;
    Types::UUID const uuid(reference.rawBuffer());
    Templates::vector<MetadataSet *> found = owner->find(MetadataULs::instanceUID(), uuid);
    return found.empty() ? nullptr : found.front();
}

MetadataSet * targetSet(MetadataSet const & set, Types::UniversalLabel const & label)
{
    ConstElementKind kind = kindOf(set, label);
    if (!kind.reference || !kind.reference->value())
        return nullptr;
    return referencedSet(set, *kind.reference->value());
}

void setTarget(MetadataSet & set, Types::UniversalLabel const & label, MetadataSet const * target)
{
    ElementKind kind = kindOf(set, label);
    if (!kind.reference)
        wrongKind(label, "a reference");
    kind.reference->set(target);
}

unsigned int memberCount(MetadataSet const & set, Types::UniversalLabel const & label)
{
    ConstElementKind kind = kindOf(set, label);
    if (kind.collection)
        return static_cast<unsigned int>(kind.collection->size());
    if (kind.references)
        return static_cast<unsigned int>(kind.references->size());
    return 0;
}

Types::SimpleDataType const * memberValue(MetadataSet const & set, Types::UniversalLabel const & label,
                                          unsigned int index)
{
    ConstElementKind kind = kindOf(set, label);
    if (!kind.collection)
        wrongKind(label, "a collection of values");
    return &kind.collection->at(index);
}

void appendMemberValue(MetadataSet & set, Types::UniversalLabel const & label,
                       Templates::auto_ptr<Types::SimpleDataType> value)
{
    ElementKind kind = kindOf(set, label);
    if (!kind.collection)
        wrongKind(label, "a collection of values");
    kind.collection->append(std::move(value));
}

void insertMemberValue(MetadataSet & set, Types::UniversalLabel const & label, unsigned int index,
                       Templates::auto_ptr<Types::SimpleDataType> value)
{
    ElementKind kind = kindOf(set, label);
    if (!kind.array)
        wrongKind(label, "an array of values");
    kind.array->insertAt(index, std::move(value));
}

MetadataSet * targetSetAt(MetadataSet const & set, Types::UniversalLabel const & label, unsigned int index)
{
    ConstElementKind kind = kindOf(set, label);
    if (!kind.references)
        wrongKind(label, "a collection of references");
    return referencedSet(set, kind.references->at(index));
}

void appendTarget(MetadataSet & set, Types::UniversalLabel const & label, MetadataSet * target)
{
    ElementKind kind = kindOf(set, label);
    if (!kind.references)
        wrongKind(label, "a collection of references");
    kind.references->append(target);
}

void insertTarget(MetadataSet & set, Types::UniversalLabel const & label, unsigned int index, MetadataSet * target)
{
    ElementKind kind = kindOf(set, label);
    if (!kind.referenceArray)
        wrongKind(label, "an array of references");
    kind.referenceArray->insertAt(index, target);
}

void removeMember(MetadataSet & set, Types::UniversalLabel const & label, unsigned int index)
{
    ElementKind kind = kindOf(set, label);
    if (kind.collection)
        kind.collection->remove(index);
    else if (kind.references)
        kind.references->remove(index);
    else
        wrongKind(label, "a collection");
}
} // namespace Accessors
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
