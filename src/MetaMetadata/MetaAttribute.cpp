// Attributes of sets: the schema attribute, the misplaced and the unknown one, and the element
// behind any of them.

#include "MetaMetadata/MetaAttribute.h"

#include "MetaMetadata/Helpers.h"
#include "MetaMetadata/MetaElement.h"
#include "MetaMetadata/MisplacedAttribute.h"
#include "MetaMetadata/UnknownAttribute.h"
#include "Types/LocalTag.h"

namespace Vellum
{
namespace MetaMetadata
{
struct MetaAttribute::Impl
{
    VELLUM_CLASS_ALLOCATION
    Impl(MetaElement const * e, AttributeRequiredStatus::Status s, Types::LocalTag const * t)
        : element(e), requiredStatus(s), staticLocalTag(t ? new Types::LocalTag(*t) : nullptr)
    {
    }
    Impl(Impl const &) = delete;
    Impl & operator=(Impl const &) = delete;

    MetaElement const * element;
    AttributeRequiredStatus::Status requiredStatus;
    Templates::auto_ptr<Types::BaseType const> distinguishedValue;
    Templates::auto_ptr<Types::LocalTag const> staticLocalTag;
};

MetaAttribute::MetaAttribute(MetaElement const & element, AttributeRequiredStatus::Status requiredStatus,
                             Templates::auto_ptr<Types::BaseType const> distinguishedValue,
                             Types::LocalTag const * staticLocalTag)
    : AbstractMetaAttribute(), PropertyMap(), impl_(new Impl(&element, requiredStatus, staticLocalTag))
{
    impl_->distinguishedValue = std::move(distinguishedValue);
}

MetaAttribute::~MetaAttribute() = default;

MetaElement const & MetaAttribute::metaElement() const { return *impl_->element; }

AttributeRequiredStatus::Status MetaAttribute::requiredStatus() const { return impl_->requiredStatus; }

Types::BaseType const * MetaAttribute::getDistinguishedValue() const { return impl_->distinguishedValue.get(); }

Types::LocalTag const * MetaAttribute::staticLocalTag() const { return impl_->staticLocalTag.get(); }

void MetaAttribute::accept(AbstractMetaAttributeVisitor & visitor) const { visitor.visit(*this); }

bool operator==(MetaAttribute const & a, MetaAttribute const & b)
{
    if (&a.metaElement() != &b.metaElement() || a.requiredStatus() != b.requiredStatus())
        return false;
    if (a.staticLocalTag() != nullptr &&
        (b.staticLocalTag() == nullptr || *a.staticLocalTag() != *b.staticLocalTag()))
        return false;
    return static_cast<PropertyMap const &>(a) == static_cast<PropertyMap const &>(b);
}

bool operator!=(MetaAttribute const & a, MetaAttribute const & b) { return !(a == b); }

// ---------------------------------------------------------------------------------------------

MisplacedAttribute::MisplacedAttribute(MetaElement const & element) : element_(&element) {}

MisplacedAttribute::MisplacedAttribute(MisplacedAttribute const & other)
    : AbstractMetaAttribute(), element_(other.element_)
{
}

MisplacedAttribute & MisplacedAttribute::operator=(MisplacedAttribute const & other)
{
    element_ = other.element_;
    return *this;
}

MisplacedAttribute::~MisplacedAttribute() {}

MetaElement const & MisplacedAttribute::metaElement() const { return *element_; }

void MisplacedAttribute::accept(AbstractMetaAttributeVisitor & visitor) const { visitor.visit(*this); }

bool operator==(MisplacedAttribute const & a, MisplacedAttribute const & b)
{
    return &a.metaElement() == &b.metaElement();
}

bool operator!=(MisplacedAttribute const & a, MisplacedAttribute const & b) { return !(a == b); }

// ---------------------------------------------------------------------------------------------

struct UnknownAttribute::Impl
{
    VELLUM_CLASS_ALLOCATION
    Impl(Types::LocalTag const & t, Reason r) : tag(t), reason(r) {}
    Types::LocalTag tag;
    Reason reason;
};

UnknownAttribute::UnknownAttribute(Types::LocalTag const & tag, Reason reason) : impl_(new Impl(tag, reason)) {}

UnknownAttribute::UnknownAttribute(UnknownAttribute const & other)
    : AbstractMetaAttribute(), impl_(new Impl(other.impl_->tag, other.impl_->reason))
{
}

UnknownAttribute & UnknownAttribute::operator=(UnknownAttribute const & other)
{
    if (this != &other)
    {
        impl_->tag = other.impl_->tag;
        impl_->reason = other.impl_->reason;
    }
    return *this;
}

UnknownAttribute::~UnknownAttribute() = default;

Types::LocalTag const & UnknownAttribute::localTag() const { return impl_->tag; }

UnknownAttribute::Reason UnknownAttribute::reason() const { return impl_->reason; }

void UnknownAttribute::accept(AbstractMetaAttributeVisitor & visitor) const { visitor.visit(*this); }

bool operator==(UnknownAttribute const & a, UnknownAttribute const & b)
{
    return a.localTag() == b.localTag() && a.reason() == b.reason();
}

bool operator!=(UnknownAttribute const & a, UnknownAttribute const & b) { return !(a == b); }

// ---------------------------------------------------------------------------------------------

namespace
{
class ElementOfAttribute : public AbstractMetaAttributeVisitor
{
public:
    ElementOfAttribute() : element(nullptr) {}
    void visit(UnknownAttribute const &) override { element = nullptr; }
    void visit(MisplacedAttribute const & attribute) override { element = &attribute.metaElement(); }
    void visit(MetaAttribute const & attribute) override { element = &attribute.metaElement(); }
    MetaElement const * element;
};
} // namespace

namespace Helpers
{
MetaElement const * abstractMetaAttributeToMetaElement(Templates::SharedPtr<AbstractMetaAttribute const> attribute)
{
    if (attribute.get() == nullptr)
        return nullptr;
    ElementOfAttribute visitor;
    attribute->accept(visitor);
    return visitor.element;
}
} // namespace Helpers
} // namespace MetaMetadata
} // namespace Vellum
