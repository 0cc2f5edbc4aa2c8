#pragma once
// Visitors over the descriptions of values, and the checked downcast built on them.

#include "Platform/MallocAlloc.h"

namespace Vellum
{
namespace MetaMetadata
{
class MetaCollectionElement;
class MetaReferenceHolder;
class MetaValueHolder;
class MetaReferenceCollection;
class MetaReferenceElement;
class MetaCollection;
class MetaSimpleElement;

namespace Visitors
{
class MetaElementVisitor
{
public:
    VELLUM_CLASS_ALLOCATION
    virtual ~MetaElementVisitor() {}
    virtual void visit(MetaCollectionElement const & element) = 0;
    virtual void visit(MetaReferenceHolder const & holder) = 0;
    virtual void visit(MetaValueHolder const & holder) = 0;
    virtual void visit(MetaReferenceCollection const & element) = 0;
    virtual void visit(MetaReferenceElement const & element) = 0;
    virtual void visit(MetaCollection const & element) = 0;
    virtual void visit(MetaSimpleElement const & element) = 0;
};

class NonConstMetaElementVisitor
{
public:
    VELLUM_CLASS_ALLOCATION
    virtual ~NonConstMetaElementVisitor() {}
    virtual void visit(MetaCollectionElement & element) = 0;
    virtual void visit(MetaReferenceHolder & holder) = 0;
    virtual void visit(MetaValueHolder & holder) = 0;
    virtual void visit(MetaReferenceCollection & element) = 0;
    virtual void visit(MetaReferenceElement & element) = 0;
    virtual void visit(MetaCollection & element) = 0;
    virtual void visit(MetaSimpleElement & element) = 0;
};

// Passes each concrete class on to its bases: a collection to its holder, then to
// MetaCollectionElement; a reference element to MetaReferenceHolder. A simple element goes
// nowhere, not even to MetaValueHolder.
class NullMetaElementVisitor : public MetaElementVisitor
{
public:
    VELLUM_CLASS_ALLOCATION
    void visit(MetaCollectionElement const & element) override;
    void visit(MetaReferenceHolder const & holder) override;
    void visit(MetaValueHolder const & holder) override;
    void visit(MetaReferenceCollection const & element) override;
    void visit(MetaReferenceElement const & element) override;
    void visit(MetaCollection const & element) override;
    void visit(MetaSimpleElement const & element) override;
};

// The same forwarding over descriptions that may be changed.
class NullNonConstMetaElementVisitor : public NonConstMetaElementVisitor
{
public:
    VELLUM_CLASS_ALLOCATION
    void visit(MetaCollectionElement & element) override;
    void visit(MetaReferenceHolder & holder) override;
    void visit(MetaValueHolder & holder) override;
    void visit(MetaReferenceCollection & element) override;
    void visit(MetaReferenceElement & element) override;
    void visit(MetaCollection & element) override;
    void visit(MetaSimpleElement & element) override;
};

// After an element's accept, value() is the element as a T, or null when it is none. Made for
// T = MetaCollectionElement, MetaReferenceCollection and MetaReferenceHolder.
template <class T>
class GetMetaElementVisitor : public NullMetaElementVisitor
{
public:
    VELLUM_CLASS_ALLOCATION
    GetMetaElementVisitor() : value_(nullptr) {}
    using NullMetaElementVisitor::visit;
    void visit(T const & element) override { value_ = &element; }
    T const * value() const { return value_; }

private:
    T const * value_;
};
} // namespace Visitors
} // namespace MetaMetadata
} // namespace Vellum
