// A metadata set: its elements, parsing of local items, writing back, cloning and the
// validation queries.

#include "Metadata/MetadataSet.h"

#include <cstring>

#include "ByteCoders/BER.h"
#include "DataIO/Memory/MemoryDataSource.h"
#include "Exceptions/Exceptions.h"
#include "KLV/Packet.h"
#include "KLV/Value.h"
#include "MetaMetadata/Dictionary.h"
#include "MetaMetadata/MetaAttribute.h"
#include "MetaMetadata/MetaCollectionElement.h"
#include "MetaMetadata/MetaElement.h"
#include "MetaMetadata/MetaMetadataSet.h"
#include "MetaMetadata/MetaReferenceHolder.h"
#include "MetaMetadata/MisplacedAttribute.h"
#include "MetaMetadata/UnknownAttribute.h"
#include "Metadata/ArrayElement.h"
#include "Metadata/ArrayReferenceElement.h"
#include "Metadata/BatchElement.h"
#include "Metadata/BatchReferenceElement.h"
#include "Metadata/DMS1/DMS1MetadataULs.h"
#include "Metadata/Element.h"
#include "Metadata/ElementFactory.h"
#include "Metadata/ElementVisitor.h"
#include "Metadata/MetadataSetFactory.h"
#include "Metadata/MetadataSetOwner.h"
#include "Metadata/MetadataSetVisitor.h"
#include "Metadata/MetadataULs.h"
#include "Metadata/PartitionDictionary.h"
#include "Metadata/ReferenceElement.h"
#include "Metadata/SimpleElement.h"
#include "Metadata/Structural/StructuralMetadataULs.h"
#include "Types/Collection.h"
#include "Types/Factories/BaseTypeFactory.h"
#include "Types/Factories/UID.h"
#include "Types/LocalTag.h"
#include "Types/References.h"
#include "Types/UUID.h"
#include "Types/Unknown.h"
#include "Types/Visitors.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace Metadata
{
namespace
{
typedef Templates::SharedPtr<MetaMetadata::AbstractMetaAttribute const> AttributePtr;

// The element description of an attribute: that of a MetaAttribute or a MisplacedAttribute, null
// for an UnknownAttribute.
class MetaElementOfAttribute : public MetaMetadata::AbstractMetaAttributeVisitor
{
public:
    MetaElementOfAttribute() : element_(nullptr), attribute_(nullptr) {}
    void visit(MetaMetadata::UnknownAttribute const &) override {}
    void visit(MetaMetadata::MisplacedAttribute const & attribute) override { element_ = &attribute.metaElement(); }
    void visit(MetaMetadata::MetaAttribute const & attribute) override
    {
        element_ = &attribute.metaElement();
        attribute_ = &attribute;
    }
    MetaMetadata::MetaElement const * element() const { return element_; }
    // Only for a MetaAttribute.
    MetaMetadata::MetaAttribute const * metaAttribute() const { return attribute_; }

private:
    MetaMetadata::MetaElement const * element_;
    MetaMetadata::MetaAttribute const * attribute_;
};

MetaMetadata::MetaElement const * metaElementOf(Element const & element)
{
    MetaElementOfAttribute visitor;
    AttributePtr attribute = element.metaAttribute();
    if (attribute.get() != nullptr)
        attribute->accept(visitor);
    return visitor.element();
}

MetaMetadata::MetaAttribute const * metaAttributeOf(Element const & element)
{
    MetaElementOfAttribute visitor;
    AttributePtr attribute = element.metaAttribute();
    if (attribute.get() != nullptr)
        attribute->accept(visitor);
    return visitor.metaAttribute();
}

// What a tag turned out to be: an element description (or none) and the attribute for it.
struct Resolution
{
    MetaMetadata::MetaElement const * element;
    AttributePtr attribute;
};

// The invalid list's room for one more element, so that the append after it cannot throw. The
// capacity grows geometrically: a room of exactly one more would copy the list at every append.
template <class List>
void reserveOneMore(List & list)
{
    if (list.size() == list.capacity())
        list.reserve(list.capacity() < 8 ? 8 : list.capacity() * 2);
}

// Sorts a value into the element class that can hold it on the invalid list.
class ValueKindVisitor : public Types::Visitors::DelegateToBaseVisitor
{
public:
    enum Kind
    {
        Simple,
        Reference,
        Array,
        Batch,
        Other
    };
    ValueKindVisitor() : kind_(Other) {}
    using Types::Visitors::DelegateToBaseVisitor::visit;
    void visit(Types::Array const &) override { kind_ = Array; }
    void visit(Types::Batch const &) override { kind_ = Batch; }
    void visit(Types::Reference const &) override { kind_ = Reference; }
    void visit(Types::SimpleDataType const &) override { kind_ = Simple; }
    Kind kind() const { return kind_; }

private:
    Kind kind_;
};

// Makes the element that holds an item the set's description does not provide for.
Element * makeInvalidElement(Templates::auto_ptr<Types::BaseType> value, AttributePtr const & attribute,
                               MetaMetadata::MetaElement const * metaElement, MetadataSet & set)
{
    ValueKindVisitor kind;
    value->accept(kind);
    bool referenceHolder = false;
    if (metaElement != nullptr)
    {
        MetaMetadata::Visitors::GetMetaElementVisitor<MetaMetadata::MetaReferenceHolder> holder;
        metaElement->accept(holder);
        referenceHolder = holder.value() != nullptr;
    }
    switch (kind.kind())
    {
    case ValueKindVisitor::Simple:
        return new SimpleElement(
            Templates::auto_ptr<Types::SimpleDataType>(static_cast<Types::SimpleDataType *>(value.release())),
            attribute, set);
    case ValueKindVisitor::Reference:
        return new ReferenceElement(
            Templates::auto_ptr<Types::Reference>(static_cast<Types::Reference *>(value.release())), attribute,
            set);
    case ValueKindVisitor::Array:
    {
        Templates::auto_ptr<Types::Array> array(static_cast<Types::Array *>(value.release()));
        if (referenceHolder)
            return new ArrayReferenceElement(std::move(array), attribute, set);
        return new ArrayElement(std::move(array), attribute, set);
    }
    case ValueKindVisitor::Batch:
    {
        Templates::auto_ptr<Types::Batch> batch(static_cast<Types::Batch *>(value.release()));
        if (referenceHolder)
            return new BatchReferenceElement(std::move(batch), attribute, set);
        return new BatchElement(std::move(batch), attribute, set);
    }
    case ValueKindVisitor::Other:
        break;
    }
    return nullptr;
}

// Reads the item length, big-endian, in `width` bytes.
uint64 readItemLength(KLV::Value & value, unsigned char width)
{
    unsigned char bytes[4] = {0, 0, 0, 0};
    value.readValue(bytes, width);
    uint64 length = 0;
    for (unsigned char i = 0; i < width; ++i)
        length = (length << 8) | bytes[i];
    return length;
}

// Tells whether the element holds the attribute's distinguished value: the two serialised
// forms agree over the length of the distinguished one. References never do.
class HoldsDistinguishedValue : public Visitors::NullElementVisitor
{
public:
    explicit HoldsDistinguishedValue(DataIO::Memory::MemoryDataSink const & distinguished)
        : distinguished_(distinguished), holds_(false)
    {
    }
    void visit(SimpleElement const & element) override { compare(element.value()); }
    void visit(ArrayElement const & element) override { compare(element.value()); }
    void visit(BatchElement const & element) override { compare(element.value()); }
    bool holds() const { return holds_; }

private:
    void compare(Types::BaseType const * value)
    {
        if (value == nullptr)
            return;
        DataIO::Memory::MemoryDataSink own;
        value->serialize(own);
        uint64 length = distinguished_.serializedSize();
        if (own.serializedSize() < length)
            return;
        holds_ = length == 0 || std::memcmp(own.rawBuffer(), distinguished_.rawBuffer(), length) == 0;
    }

    DataIO::Memory::MemoryDataSink const & distinguished_;
    bool holds_;
};

// Tells the four collection classes from the single values.
class IsCollection : public Visitors::NullElementVisitor
{
public:
    IsCollection() : collection_(false) {}
    void visit(BatchReferenceElement const &) override { collection_ = true; }
    void visit(ArrayReferenceElement const &) override { collection_ = true; }
    void visit(BatchElement const &) override { collection_ = true; }
    void visit(ArrayElement const &) override { collection_ = true; }
    bool collection() const { return collection_; }

private:
    bool collection_;
};

bool isCollection(Element const & element)
{
    IsCollection visitor;
    element.accept(visitor);
    return visitor.collection();
}

// Which question a validation query asks.
enum Query
{
    Open,
    Incomplete,
    PossiblyOpen,
    PossiblyIncomplete,
    PossiblyForbidden,
    SemanticsValidation
};

bool holdsDistinguishedValue(Element const & element, MetaMetadata::MetaAttribute const & attribute)
{
    Types::BaseType const * distinguished = attribute.getDistinguishedValue();
    if (distinguished == nullptr)
        return false;
    DataIO::Memory::MemoryDataSink sink;
    distinguished->serialize(sink);
    HoldsDistinguishedValue visitor(sink);
    element.accept(visitor);
    return visitor.holds();
}

bool passes(Query query, Element const & element)
{
    MetaMetadata::MetaAttribute const * attribute = metaAttributeOf(element);
    if (attribute == nullptr)
        return false;
    static Templates::wstring const propertyName = Utils::wide("RequiresSemanticsValidation");
    unsigned short const * property = attribute->getProperty(propertyName.c_str());
    bool semantic = property != nullptr && property[0] != 0;
    bool empty = element.empty();
    MetaMetadata::AttributeRequiredStatus::Status status = attribute->requiredStatus();
    switch (query)
    {
    case Open:
        return !semantic &&
               (status == MetaMetadata::AttributeRequiredStatus::Required ||
                status == MetaMetadata::AttributeRequiredStatus::EncoderRequired) &&
               empty;
    case Incomplete:
        return !semantic && status == MetaMetadata::AttributeRequiredStatus::BestEffort &&
               (empty || holdsDistinguishedValue(element, *attribute));
    case PossiblyOpen:
        return semantic && empty;
    case PossiblyIncomplete:
        return semantic && !empty && holdsDistinguishedValue(element, *attribute);
    case PossiblyForbidden:
        return semantic && !empty;
    case SemanticsValidation:
        return semantic && (empty || holdsDistinguishedValue(element, *attribute));
    }
    return false;
}

// The UUID held by a simple element, or null.
Types::UUID const * uuidOf(Element const & element)
{
    Visitors::GetElementVisitor<SimpleElement> simple;
    element.accept(simple);
    if (simple.value() == nullptr || simple.value()->value() == nullptr)
        return nullptr;
    Types::Visitors::GetVisitor<Types::UUID> uuid;
    simple.value()->value()->accept(uuid);
    return uuid.value();
}

// The instance UUIDs of the sets whose deep clone is under way, so that a cycle of strong
// references ends instead of recursing without end.
typedef Templates::set<Types::UUID> ClonePath;
} // namespace

struct MetadataSet::Impl
{
    VELLUM_CLASS_ALLOCATION
    Impl(MetadataSet * self, KLV::Key const & key, MetaMetadata::MetaMetadataSet const * meta,
         MetadataSetOwner * owner)
        : self(self), key(key), berLength(4), meta(meta), owner(owner)
    {
    }
    ~Impl()
    {
        for (Elements::iterator it = elements.begin(); it != elements.end(); ++it)
            delete it->second;
        for (std::size_t i = 0; i < invalid.size(); ++i)
            delete invalid[i];
    }

    MetadataSet * self;
    KLV::Key key;
    unsigned char berLength;
    Elements elements;
    Templates::vector<Element *> invalid;
    MetaMetadata::MetaMetadataSet const * meta;
    MetadataSetOwner * owner;

    // The bytes of the items: the non-empty elements, and the invalid ones if asked for.
    uint64 itemsSize(bool includeInvalid) const
    {
        uint64 itemHead = 2 + key.lengthFieldLength();
        uint64 size = 0;
        for (Elements::const_iterator it = elements.begin(); it != elements.end(); ++it)
            if (!it->second->empty())
                size += itemHead + it->second->totalLength();
        if (includeInvalid)
            for (std::size_t i = 0; i < invalid.size(); ++i)
                if (!invalid[i]->empty())
                    size += itemHead + invalid[i]->totalLength();
        return size;
    }

    // The width of the BER length field: the set's own, or wider where the items have outgrown it.
    unsigned char berWidth(uint64 itemsSize) const
    {
        unsigned char needed = ByteCoders::calculateBERSize(itemsSize);
        return needed > berLength ? needed : berLength;
    }

    Element * findElement(Types::UniversalLabel const & label) const
    {
        Elements::const_iterator it = elements.find(label);
        return it == elements.end() ? nullptr : it->second;
    }

    // Steps 2 to 4 of a resolution, once the label is known.
    Resolution resolveLabel(Types::UniversalLabel const & label, Types::LocalTag const & tag,
                            PartitionDictionary const & dictionary) const
    {
        Resolution result;
        result.element = nullptr;
        if (meta != nullptr)
        {
            Templates::SharedPtr<MetaMetadata::MetaAttribute> attribute = meta->findMetaAttribute(label);
            if (attribute.get() != nullptr)
            {
                result.element = &attribute->metaElement();
                result.attribute = AttributePtr(attribute);
                return result;
            }
        }
        MetaMetadata::MetaElement const * element = dictionary.dictionary()->findMetaElement(label);
        if (element != nullptr)
        {
            result.element = element;
            result.attribute = AttributePtr(new MetaMetadata::MisplacedAttribute(*element));
            return result;
        }
        result.attribute = AttributePtr(new MetaMetadata::UnknownAttribute(tag, MetaMetadata::UnknownAttribute::NotInDictionaryReason));
        return result;
    }

    static Resolution unknown(Types::LocalTag const & tag, MetaMetadata::UnknownAttribute::Reason reason)
    {
        Resolution result;
        result.element = nullptr;
        result.attribute = AttributePtr(new MetaMetadata::UnknownAttribute(tag, reason));
        return result;
    }

    // The relaxed second attempt after a strict one failed for `reason`: an element, or an
    // unknown attribute of that reason.
    Resolution retryRelaxed(Types::LocalTag const & tag, PartitionDictionary const & dictionary,
                            MetaMetadata::UnknownAttribute::Reason reason) const
    {
        try
        {
            Resolution result = resolveLabel(dictionary.find(tag, false), tag, dictionary);
            if (result.element != nullptr)
                return result;
        }
        catch (Exceptions::BaseException const &)
        {
        }
        return unknown(tag, reason);
    }

    Resolution resolve(Types::LocalTag const & tag, PartitionDictionary const & dictionary, bool strict) const
    {
        try
        {
            return resolveLabel(dictionary.find(tag, strict), tag, dictionary);
        }
        catch (Exceptions::NotFoundInPrimer const &)
        {
            return retryRelaxed(tag, dictionary, MetaMetadata::UnknownAttribute::NotFoundInPrimerReason);
        }
        catch (Exceptions::LocalTagNotFound const &)
        {
            return retryRelaxed(tag, dictionary, MetaMetadata::UnknownAttribute::LocalTagNotFoundReason);
        }
        catch (Exceptions::UniversalLabelCollision const &)
        {
            if (!strict)
                return unknown(tag, MetaMetadata::UnknownAttribute::LabelCollisionReason);
            return retryRelaxed(tag, dictionary, MetaMetadata::UnknownAttribute::LabelCollisionReason);
        }
        catch (Exceptions::InvalidLocalTag const &)
        {
            return unknown(tag, MetaMetadata::UnknownAttribute::InvalidLocalTagReason);
        }
    }

    // Loads the item into its element. An Extended Clip ID of a basic UMID's 32 bytes is widened
    // to an extended UMID with zeros behind it.
    static void loadElement(Element & element, Types::UniversalLabel const & label, KLV::Value & item)
    {
        try
        {
            if (item.totalLength() == 32 && label == DMS1::DMS1MetadataULs::extendedClipID())
            {
                unsigned char widened[64];
                std::memset(widened, 0, sizeof widened);
                item.readValue(widened, 32);
                DataIO::Memory::MemoryDataSource source(widened, sizeof widened);
                KLV::Value value(source, sizeof widened);
                element.load(value);
            }
            else if (item.totalLength() == 0 && isCollection(element))
            {
                // An empty collection is written as an item of length 0: it reads back as a
                // collection with no members.
                unsigned char header[8];
                std::memset(header, 0, sizeof header);
                DataIO::Memory::MemoryDataSource source(header, sizeof header);
                KLV::Value value(source, sizeof header);
                element.load(value);
            }
            else
                element.load(item);
        }
        catch (Exceptions::InvalidMetaAttribute const &)
        {
        }
    }

    void readItem(KLV::Value & value, PartitionDictionary const & dictionary, bool strict, unsigned char lengthWidth)
    {
        Types::LocalTag tag(value);
        uint64 length = readItemLength(value, lengthWidth);
        KLV::Value item(value, length);

        Resolution resolution = resolve(tag, dictionary, strict);
        if (resolution.element != nullptr)
        {
            Element * element = findElement(resolution.element->universalLabel());
            if (element != nullptr)
            {
                loadElement(*element, resolution.element->universalLabel(), item);
                return;
            }
        }

        Templates::auto_ptr<Types::BaseType> itemValue;
        try
        {
            if (resolution.element != nullptr)
            {
                MetaMetadata::Visitors::GetMetaElementVisitor<MetaMetadata::MetaCollectionElement> collection;
                resolution.element->accept(collection);
                Types::Factories::BaseTypeFactory & factory = Types::Factories::BaseTypeFactory::instance();
                if (collection.value() != nullptr)
                    itemValue = factory.create(item, resolution.element->dataType(), collection.value()->dataSubType());
                else
                    itemValue = factory.create(item, resolution.element->dataType());
            }
            else
                itemValue.reset(new Types::Unknown(item));
        }
        catch (Exceptions::InvalidLength const & e)
        {
            resolution.attribute =
                AttributePtr(new MetaMetadata::UnknownAttribute(tag, MetaMetadata::UnknownAttribute::InvalidLengthReason));
            resolution.element = nullptr;
            itemValue.reset(new Types::Unknown(e.readData(), static_cast<unsigned int>(e.readDataLength())));
        }
        catch (Exceptions::NoFactory const &)
        {
            // A type with no maker leaves nothing to hold: the item is dropped.
            return;
        }

        if (itemValue.get() == nullptr)
            return;
        reserveOneMore(invalid);
        Element * element = makeInvalidElement(std::move(itemValue), resolution.attribute, resolution.element, *self);
        if (element != nullptr)
            invalid.push_back(element);
    }

    // Announces a value that an element was created with.
    static void announceAdded(MetadataSet & set, Element & element, Types::BaseType & value)
    {
        if (set.owner() != nullptr)
            set.owner()->addedElement(set, metaElementOf(element), element, value);
    }

    Element * cloneElement(Element const & element, MetadataSet & target, bool deep, MetadataSetOwner * cloneOwner,
                           ClonePath & path) const;
    MetadataSet * cloneSet(bool deep, MetadataSetOwner * cloneOwner, ClonePath & path) const;
    // The instance UUID of a clone of the set behind `reference`, or false when there is none.
    bool cloneTarget(Types::StrongReference const & reference, bool deep, MetadataSetOwner * cloneOwner,
                     ClonePath & path, Types::UUID & cloneUID) const;

    void query(Query which, Templates::vector<Element *> & out) const
    {
        for (Elements::const_iterator it = elements.begin(); it != elements.end(); ++it)
            if (passes(which, *it->second))
                out.push_back(it->second);
    }
};

MetadataSet::MetadataSet(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet,
                         MetadataSetOwner * owner)
    : impl_(new Impl(this, key, metaMetadataSet, owner))
{
    if (metaMetadataSet == nullptr)
        return;
    if (metaMetadataSet->key() != key)
        VELLUM_THROW(InvalidMetadataSet, "MetadataSet Key and MetaMetadataSet do not agree");
    for (MetaMetadata::MetaMetadataSet::const_iterator it = metaMetadataSet->metaAttributesBegin();
         it != metaMetadataSet->metaAttributesEnd(); ++it)
    {
        Element * element = ElementFactory::create(it->second, *this);
        if (element == nullptr)
            continue;
        Templates::auto_ptr<Element> guard(element);
        // The attributes come in label order: each element goes in at the end.
        impl_->elements.insert(impl_->elements.end(),
                               Elements::value_type(it->second->metaElement().universalLabel(), element));
        guard.release();
    }
}

MetadataSet::~MetadataSet() = default;

void MetadataSet::load(KLV::Packet & packet, PartitionDictionary const & dictionary, bool strictPrimer)
{
    impl_->berLength = packet.berLength();
    unsigned char tagWidth = impl_->key.localTagFieldLength();
    unsigned char lengthWidth = impl_->key.lengthFieldLength();
    if (tagWidth != 2 || (lengthWidth != 1 && lengthWidth != 2 && lengthWidth != 4))
        VELLUM_THROW(InvalidMetadataSet, "Invalid Metadata Set local field length or length field length");
    KLV::Value & value = packet.value();
    while (value.remaining() > 0)
        impl_->readItem(value, dictionary, strictPrimer, lengthWidth);
}

MetaMetadata::MetaMetadataSet const * MetadataSet::metaMetadataSet() const
{
    return impl_->meta;
}

KLV::Key const & MetadataSet::key() const
{
    return impl_->key;
}

Types::UUID const * MetadataSet::instanceUID() const
{
    Element * element = impl_->findElement(MetadataULs::instanceUID());
    if (element != nullptr)
    {
        Types::UUID const * uuid = uuidOf(*element);
        if (uuid != nullptr)
            return uuid;
    }
    Types::UniversalLabel const & label = Structural::StructuralMetadataULs::instanceUID();
    for (std::size_t i = 0; i < impl_->invalid.size(); ++i)
    {
        Element const & candidate = *impl_->invalid[i];
        Visitors::GetElementVisitor<SimpleElement> simple;
        candidate.accept(simple);
        if (simple.value() == nullptr)
            continue;
        MetaMetadata::MetaElement const * metaElement = metaElementOf(candidate);
        if (metaElement != nullptr && metaElement->universalLabel() == label)
            return uuidOf(candidate);
    }
    return nullptr;
}

Element const & MetadataSet::find(Types::UniversalLabel const & label) const
{
    Element * element = impl_->findElement(label);
    if (element == nullptr)
    {
        Templates::wstring message = Utils::wide("No element with this Universal Label was found: ");
        message += label.toString(Types::TypeDefault);
        VELLUM_THROW(NotFound, message);
    }
    return *element;
}

Element & MetadataSet::find(Types::UniversalLabel const & label)
{
    return const_cast<Element &>(static_cast<MetadataSet const &>(*this).find(label));
}

uint64 MetadataSet::size() const
{
    return impl_->elements.size();
}

void MetadataSet::serialize(DataIO::DataSink & sink, PartitionDictionary const & dictionary, bool includeInvalid) const
{
    uint64 itemsSize = impl_->itemsSize(includeInvalid);
    unsigned char width = impl_->berWidth(itemsSize);
    sink.write(impl_->key.rawBuffer(), KLV::Key::SIZE);
    unsigned char ber[9];
    ByteCoders::codeBER(itemsSize, width, ber);
    sink.write(ber, width);
    int lengthWidth = impl_->key.lengthFieldLength();
    for (Elements::const_iterator it = impl_->elements.begin(); it != impl_->elements.end(); ++it)
        it->second->serialize(sink, dictionary, lengthWidth);
    if (includeInvalid)
        for (std::size_t i = 0; i < impl_->invalid.size(); ++i)
            impl_->invalid[i]->serialize(sink, dictionary, lengthWidth);
}

uint64 MetadataSet::serializedSize(bool includeInvalid) const
{
    uint64 itemsSize = impl_->itemsSize(includeInvalid);
    return KLV::Key::SIZE + impl_->berWidth(itemsSize) + itemsSize;
}

void MetadataSet::accept(Visitors::NonConstMetadataSetVisitor & visitor)
{
    visitor.visit(*this);
}

void MetadataSet::accept(Visitors::MetadataSetVisitor & visitor) const
{
    visitor.visit(*this);
}

MetadataSetOwner * MetadataSet::owner() const
{
    return impl_->owner;
}

unsigned char MetadataSet::berLength() const
{
    return impl_->berLength;
}

void MetadataSet::berLength(unsigned char width)
{
    impl_->berLength = width;
}

MetadataSet::iterator MetadataSet::begin()
{
    return impl_->elements.begin();
}

MetadataSet::iterator MetadataSet::end()
{
    return impl_->elements.end();
}

MetadataSet::const_iterator MetadataSet::begin() const
{
    return impl_->elements.begin();
}

MetadataSet::const_iterator MetadataSet::end() const
{
    return impl_->elements.end();
}

Element ** MetadataSet::invalidBegin()
{
    return impl_->invalid.data();
}

Element ** MetadataSet::invalidEnd()
{
    return impl_->invalid.data() + impl_->invalid.size();
}

Element * const * MetadataSet::invalidBegin() const
{
    return impl_->invalid.data();
}

Element * const * MetadataSet::invalidEnd() const
{
    return impl_->invalid.data() + impl_->invalid.size();
}

unsigned int MetadataSet::invalidSize() const
{
    return static_cast<unsigned int>(impl_->invalid.size());
}

Element * MetadataSet::createInvalidElement(Templates::SharedPtr<MetaMetadata::AbstractMetaAttribute const> attribute)
{
    reserveOneMore(impl_->invalid);
    Element * element = ElementFactory::create(attribute, *this);
    if (element != nullptr)
        impl_->invalid.push_back(element);
    return element;
}

void MetadataSet::removedInvalidElement(Element const * element)
{
    for (Templates::vector<Element *>::iterator it = impl_->invalid.begin(); it != impl_->invalid.end(); ++it)
    {
        if (*it == element)
        {
            Element * doomed = *it;
            impl_->invalid.erase(it);
            delete doomed;
            return;
        }
    }
    VELLUM_THROW(NotFound, "Element not found in Invalid Element list!");
}

bool MetadataSet::Impl::cloneTarget(Types::StrongReference const & reference, bool deep,
                                    MetadataSetOwner * cloneOwner, ClonePath & path, Types::UUID & cloneUID) const
{
    if (cloneOwner == nullptr)
        return false;
    Types::UUID target = reference.uuid();
    if (path.count(target) != 0)
        return false;
    // The target stands beside the original, which may belong to another partition than the clone.
    MetadataSetOwner * const origin = owner != nullptr ? owner : cloneOwner;
    Templates::vector<MetadataSet *> found = origin->find(Structural::StructuralMetadataULs::instanceUID(), target);
    if (found.empty() || found.front() == nullptr)
        return false;
    MetadataSet * clone = found.front()->impl_->cloneSet(deep, cloneOwner, path);
    Types::UUID const * uid = clone == nullptr ? nullptr : clone->instanceUID();
    if (uid == nullptr)
        return false;
    cloneUID = *uid;
    return true;
}

Element * MetadataSet::Impl::cloneElement(Element const & element, MetadataSet & target, bool deep,
                                          MetadataSetOwner * cloneOwner, ClonePath & path) const
{
    if (deep)
    {
        Visitors::GetElementVisitor<ReferenceElement> reference;
        element.accept(reference);
        if (reference.value() != nullptr && reference.value()->value() != nullptr)
        {
            Types::Visitors::GetVisitor<Types::StrongReference> strong;
            reference.value()->value()->accept(strong);
            if (strong.value() != nullptr)
            {
                Types::UUID uid;
                if (!cloneTarget(*strong.value(), deep, cloneOwner, path, uid))
                    return nullptr;
                Types::Reference * value = new Types::StrongReference(uid);
                ReferenceElement * clone =
                    new ReferenceElement(Templates::auto_ptr<Types::Reference>(value), element.metaAttribute(), target);
                Templates::auto_ptr<Element> guard(clone);
                announceAdded(target, *clone, *value);
                return guard.release();
            }
        }

        Visitors::GetElementVisitor<ArrayReferenceElement> array;
        Visitors::GetElementVisitor<BatchReferenceElement> batch;
        element.accept(array);
        element.accept(batch);
        CollectionReferenceElement const * collection = array.value() != nullptr
                                                            ? static_cast<CollectionReferenceElement const *>(array.value())
                                                            : batch.value();
        if (collection != nullptr && collection->value() != nullptr && collection->size() > 0)
        {
            Types::Visitors::GetVisitor<Types::StrongReference> first;
            collection->at(0).accept(first);
            if (first.value() != nullptr)
            {
                Templates::auto_ptr<Types::Collection> members;
                if (array.value() != nullptr)
                    members.reset(new Types::Array(Types::StrongReference::SIZE));
                else
                    members.reset(new Types::Batch(Types::StrongReference::SIZE));
                for (int i = 0; i < collection->size(); ++i)
                {
                    Types::Visitors::GetVisitor<Types::StrongReference> member;
                    collection->at(static_cast<unsigned int>(i)).accept(member);
                    Types::UUID uid;
                    if (member.value() != nullptr && cloneTarget(*member.value(), deep, cloneOwner, path, uid))
                        members->append(Templates::auto_ptr<Types::SimpleDataType>(new Types::StrongReference(uid)));
                }
                Types::Collection * value = members.get();
                Templates::auto_ptr<Element> clone;
                if (array.value() != nullptr)
                    clone.reset(new ArrayReferenceElement(
                        Templates::auto_ptr<Types::Array>(static_cast<Types::Array *>(members.release())),
                        element.metaAttribute(), target));
                else
                    clone.reset(new BatchReferenceElement(
                        Templates::auto_ptr<Types::Batch>(static_cast<Types::Batch *>(members.release())),
                        element.metaAttribute(), target));
                announceAdded(target, *clone, *value);
                return clone.release();
            }
        }
    }

    Visitors::GetElementVisitor<SimpleElement> simple;
    Visitors::GetElementVisitor<ArrayElement> array;
    Visitors::GetElementVisitor<BatchElement> batch;
    element.accept(simple);
    element.accept(array);
    element.accept(batch);
    if (simple.value() == nullptr && array.value() == nullptr && batch.value() == nullptr)
        return nullptr;

    MetaMetadata::MetaElement const * metaElement = metaElementOf(element);
    if (metaElement != nullptr && metaElement->universalLabel() == Structural::StructuralMetadataULs::instanceUID())
    {
        Types::SimpleDataType * value = new Types::UUID(Types::Factories::UID::generateUUID());
        SimpleElement * clone =
            new SimpleElement(Templates::auto_ptr<Types::SimpleDataType>(value), element.metaAttribute(), target);
        Templates::auto_ptr<Element> guard(clone);
        announceAdded(target, *clone, *value);
        return guard.release();
    }
    return element.clone(target).release();
}

MetadataSet * MetadataSet::Impl::cloneSet(bool deep, MetadataSetOwner * cloneOwner, ClonePath & path) const
{
    MetaMetadata::MetaMetadataSet const * description = meta;
    if (cloneOwner == nullptr)
        cloneOwner = owner;
    else if (cloneOwner != owner)
        description = cloneOwner->partitionDictionary().dictionary()->find(key);

    Types::UUID const * own = self->instanceUID();
    if (own != nullptr)
        path.insert(*own);

    MetadataSet * clone = MetadataSetFactory::instance().create(key, description, cloneOwner);
    // Until an owner has taken it, the clone is ours to destroy on failure.
    Templates::auto_ptr<MetadataSet> guard(clone);
    if (cloneOwner != nullptr)
    {
        cloneOwner->metadataSetCloned(*self, *clone, deep);
        guard.release();
    }

    for (Elements::const_iterator it = elements.begin(); it != elements.end(); ++it)
    {
        Element * copy = cloneElement(*it->second, *clone, deep, cloneOwner, path);
        if (copy == nullptr)
            continue;
        Elements::iterator slot = clone->impl_->elements.find(it->first);
        if (slot != clone->impl_->elements.end())
        {
            delete slot->second;
            slot->second = copy;
        }
        else if (copy->empty())
            delete copy;
        else
        {
            // The clone's description lacks the label: the value is kept as an invalid element.
            reserveOneMore(clone->impl_->invalid);
            clone->impl_->invalid.push_back(copy);
        }
    }
    for (std::size_t i = 0; i < invalid.size(); ++i)
    {
        Element * copy = cloneElement(*invalid[i], *clone, deep, cloneOwner, path);
        if (copy == nullptr)
            continue;
        reserveOneMore(clone->impl_->invalid);
        clone->impl_->invalid.push_back(copy);
    }

    if (own != nullptr)
        path.erase(*own);
    guard.release();
    return clone;
}

MetadataSet * MetadataSet::clone(bool deep, MetadataSetOwner * owner) const
{
    ClonePath path;
    return impl_->cloneSet(deep, owner, path);
}

void MetadataSet::openElements(Templates::vector<Element *> & elements) const
{
    impl_->query(Open, elements);
}

void MetadataSet::incompleteElements(Templates::vector<Element *> & elements) const
{
    impl_->query(Incomplete, elements);
}

void MetadataSet::possiblyOpenElements(Templates::vector<Element *> & elements) const
{
    impl_->query(PossiblyOpen, elements);
}

void MetadataSet::possiblyIncompleteElements(Templates::vector<Element *> & elements) const
{
    impl_->query(PossiblyIncomplete, elements);
}

void MetadataSet::possiblyForbiddenElements(Templates::vector<Element *> & elements) const
{
    impl_->query(PossiblyForbidden, elements);
}

void MetadataSet::getSemanticsValidationElements(Templates::vector<Element *> & elements) const
{
    impl_->query(SemanticsValidation, elements);
}
} // namespace Metadata
} // namespace Vellum
