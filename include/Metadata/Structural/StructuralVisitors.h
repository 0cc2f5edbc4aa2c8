#pragma once
// Visitors over the structural classes that pass each visit on to the visit of the base class,
// and the checked downcasts built on them.

#include "Metadata/MetadataSet.h"
#include "Metadata/MetadataSetVisitor.h"

namespace Vellum
{
namespace Metadata
{
namespace Visitors
{
// Each visit of a structural class calls the visit of its base class, up to the one of
// MetadataSet, which does nothing. Override at the level that matters.
class DelegateMetadataSetVisitor : public MetadataSetVisitor
{
public:
    VELLUM_CLASS_ALLOCATION
    void visit(MetadataSet const & set) override;
#define VELLUM_DELEGATE_CONST_VISIT(Class, Base) void visit(Structural::Class const & set) override;
    VELLUM_STRUCTURAL_SET_CLASSES(VELLUM_DELEGATE_CONST_VISIT)
#undef VELLUM_DELEGATE_CONST_VISIT
};

class NonConstDelegateMetadataSetVisitor : public NonConstMetadataSetVisitor
{
public:
    VELLUM_CLASS_ALLOCATION
    void visit(MetadataSet & set) override;
#define VELLUM_DELEGATE_NON_CONST_VISIT(Class, Base) void visit(Structural::Class & set) override;
    VELLUM_STRUCTURAL_SET_CLASSES(VELLUM_DELEGATE_NON_CONST_VISIT)
#undef VELLUM_DELEGATE_NON_CONST_VISIT
};

// After accept, the set visited as a T (a T or one of its subclasses), or null.
template <class T>
class GetMetadataSetVisitor : public NonConstDelegateMetadataSetVisitor
{
public:
    VELLUM_CLASS_ALLOCATION
    GetMetadataSetVisitor() : value_(nullptr) {}
    using NonConstDelegateMetadataSetVisitor::visit;
    void visit(T & set) override { value_ = &set; }
    T * value() const { return value_; }

private:
    T * value_;
};

template <class T>
class GetConstMetadataSetVisitor : public DelegateMetadataSetVisitor
{
public:
    VELLUM_CLASS_ALLOCATION
    GetConstMetadataSetVisitor() : value_(nullptr) {}
    using DelegateMetadataSetVisitor::visit;
    void visit(T const & set) override { value_ = &set; }
    T const * value() const { return value_; }

private:
    T const * value_;
};
} // namespace Visitors

namespace Structural
{
// `set` as a T, or null when it is null or of another class.
template <class T>
T * metadataSetAs(MetadataSet * set)
{
    if (!set)
        return nullptr;
    Visitors::GetMetadataSetVisitor<T> visitor;
    set->accept(visitor);
    return visitor.value();
}

template <class T>
T const * metadataSetAs(MetadataSet const * set)
{
    if (!set)
        return nullptr;
    Visitors::GetConstMetadataSetVisitor<T> visitor;
    set->accept(visitor);
    return visitor.value();
}
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
