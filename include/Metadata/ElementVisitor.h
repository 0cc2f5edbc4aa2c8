#pragma once
// Visitors over the element classes, and the checked downcasts built on them.

#include "Platform/MallocAlloc.h"

namespace Vellum
{
namespace Metadata
{
class BatchReferenceElement;
class ArrayReferenceElement;
class ReferenceElement;
class BatchElement;
class ArrayElement;
class SimpleElement;

namespace Visitors
{
class ElementVisitor
{
public:
    VELLUM_CLASS_ALLOCATION
    virtual ~ElementVisitor() {}
    virtual void visit(BatchReferenceElement const & element) = 0;
    virtual void visit(ArrayReferenceElement const & element) = 0;
    virtual void visit(ReferenceElement const & element) = 0;
    virtual void visit(BatchElement const & element) = 0;
    virtual void visit(ArrayElement const & element) = 0;
    virtual void visit(SimpleElement const & element) = 0;
};

class NonConstElementVisitor
{
public:
    VELLUM_CLASS_ALLOCATION
    virtual ~NonConstElementVisitor() {}
    virtual void visit(BatchReferenceElement & element) = 0;
    virtual void visit(ArrayReferenceElement & element) = 0;
    virtual void visit(ReferenceElement & element) = 0;
    virtual void visit(BatchElement & element) = 0;
    virtual void visit(ArrayElement & element) = 0;
    virtual void visit(SimpleElement & element) = 0;
};

// Ignores every element: a base for visitors that care about a few classes.
class NullElementVisitor : public ElementVisitor
{
public:
    VELLUM_CLASS_ALLOCATION
    void visit(BatchReferenceElement const &) override {}
    void visit(ArrayReferenceElement const &) override {}
    void visit(ReferenceElement const &) override {}
    void visit(BatchElement const &) override {}
    void visit(ArrayElement const &) override {}
    void visit(SimpleElement const &) override {}
};

class NullNonConstElementVisitor : public NonConstElementVisitor
{
public:
    VELLUM_CLASS_ALLOCATION
    void visit(BatchReferenceElement &) override {}
    void visit(ArrayReferenceElement &) override {}
    void visit(ReferenceElement &) override {}
    void visit(BatchElement &) override {}
    void visit(ArrayElement &) override {}
    void visit(SimpleElement &) override {}
};

// After an element's accept, value() is the element as a T, or null when it is another class.
// T is one of the six concrete element classes.
template <class T>
class GetElementVisitor : public NullElementVisitor
{
public:
    VELLUM_CLASS_ALLOCATION
    GetElementVisitor() : value_(nullptr) {}
    using NullElementVisitor::visit;
    void visit(T const & element) override { value_ = &element; }
    T const * value() const { return value_; }

private:
    T const * value_;
};

template <class T>
class GetNonConstElementVisitor : public NullNonConstElementVisitor
{
public:
    VELLUM_CLASS_ALLOCATION
    GetNonConstElementVisitor() : value_(nullptr) {}
    using NullNonConstElementVisitor::visit;
    void visit(T & element) override { value_ = &element; }
    T * value() const { return value_; }

private:
    T * value_;
};
} // namespace Visitors
} // namespace Metadata
} // namespace Vellum
