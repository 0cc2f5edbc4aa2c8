#pragma once
// The concrete visitors over values: no-ops, forwarding to base classes, the type identifier of a
// value, typed access, and assignment.

#include <type_traits>

#include "Types/Identifiers.h"
#include "Types/SimpleDataType.h"
#include "Types/Visitor.h"

namespace Vellum
{
namespace Types
{
class Collection;

namespace Visitors
{
namespace Detail
{
// Throws InvalidType "The value to set is of another type than the value visited".
[[noreturn]] void throwTypeMismatch();
} // namespace Detail

// Does nothing for any value: a base for visitors that care about a few types.
class NullVisitor : public Visitor
{
public:
#define VELLUM_NULL_VISIT(Type)                                                                   \
    void visit(Type const &) override {}
    VELLUM_FOR_EACH_VALUE_TYPE(VELLUM_NULL_VISIT)
#undef VELLUM_NULL_VISIT
};

class NonConstNullVisitor : public NonConstVisitor
{
public:
#define VELLUM_NULL_VISIT(Type)                                                                   \
    void visit(Type &) override {}
    VELLUM_FOR_EACH_VALUE_TYPE(VELLUM_NULL_VISIT)
#undef VELLUM_NULL_VISIT
};

// Forwards each visit to the visit of the value's base class: identifiers to UID, references to
// Reference, both of those and every other simple value to SimpleDataType, Array and Batch to
// Collection, and SimpleDataType and Collection to BaseType, where it stops. Override at the
// level that matters; everything else does nothing.
class DelegateToBaseVisitor : public Visitor
{
public:
#define VELLUM_DELEGATE_VISIT(Type) void visit(Type const & value) override;
    VELLUM_FOR_EACH_VALUE_TYPE(VELLUM_DELEGATE_VISIT)
#undef VELLUM_DELEGATE_VISIT
    virtual void visit(UID const & value);
    virtual void visit(Reference const & value);
    virtual void visit(SimpleDataType const & value);
    virtual void visit(Collection const & value);
    virtual void visit(BaseType const & value);
};

class NonConstDelegateToBaseVisitor : public NonConstVisitor
{
public:
#define VELLUM_DELEGATE_VISIT(Type) void visit(Type & value) override;
    VELLUM_FOR_EACH_VALUE_TYPE(VELLUM_DELEGATE_VISIT)
#undef VELLUM_DELEGATE_VISIT
    virtual void visit(UID & value);
    virtual void visit(Reference & value);
    virtual void visit(SimpleDataType & value);
    virtual void visit(Collection & value);
    virtual void visit(BaseType & value);
};

// Tells the type identifier of the value visited: UL for a UniversalLabel, ProductVersionType for
// a ProductVersion, and so on. Unknown until a value has been visited.
class GetIdentifierVisitor : public Visitor
{
public:
    GetIdentifierVisitor();
    Identifiers::Identifier identifier() const { return identifier_; }

#define VELLUM_IDENTIFIER_VISIT(Type) void visit(Type const & value) override;
    VELLUM_FOR_EACH_VALUE_TYPE(VELLUM_IDENTIFIER_VISIT)
#undef VELLUM_IDENTIFIER_VISIT

private:
    Identifiers::Identifier identifier_;
};

// The value visited as a T, or null when it is of another type.
template <class T>
class GetVisitor : public Visitor
{
public:
    GetVisitor() : value_(nullptr) {}
    T const * value() const { return value_; }

#define VELLUM_GET_VISIT(Type)                                                                    \
    void visit(Type const & value) override { take(value); }
    VELLUM_FOR_EACH_VALUE_TYPE(VELLUM_GET_VISIT)
#undef VELLUM_GET_VISIT

private:
    template <class U>
    void take(U const & value)
    {
        (void)value;
        if constexpr (std::is_same<U, T>::value)
            value_ = &value;
        else
            value_ = nullptr;
    }

    T const * value_;
};

// The same for a value that may be changed.
template <class T>
class NonConstGetVisitor : public NonConstVisitor
{
public:
    NonConstGetVisitor() : value_(nullptr) {}
    T * value() const { return value_; }

#define VELLUM_GET_VISIT(Type)                                                                    \
    void visit(Type & value) override { take(value); }
    VELLUM_FOR_EACH_VALUE_TYPE(VELLUM_GET_VISIT)
#undef VELLUM_GET_VISIT

private:
    template <class U>
    void take(U & value)
    {
        (void)value;
        if constexpr (std::is_same<U, T>::value)
            value_ = &value;
        else
            value_ = nullptr;
    }

    T * value_;
};

// `value` as a T, or null when it is of another type.
template <class T>
T const * getAs(Visitable const & value)
{
    GetVisitor<T> visitor;
    value.accept(visitor);
    return visitor.value();
}

template <class T>
T * getAs(Visitable & value)
{
    NonConstGetVisitor<T> visitor;
    value.accept(visitor);
    return visitor.value();
}

// Assigns `source` to the value visited, which must be of the same type; otherwise throws
// InvalidType and leaves the value as it was. The source must outlive the visitor.
class SetterVisitor : public NonConstVisitor
{
public:
    explicit SetterVisitor(BaseType const & source) : source_(source) {}

#define VELLUM_SETTER_VISIT(Type) void visit(Type & target) override;
    VELLUM_FOR_EACH_VALUE_TYPE(VELLUM_SETTER_VISIT)
#undef VELLUM_SETTER_VISIT

private:
    BaseType const & source_;
};

// Assigns its own copy of a T to the value visited, which must be a T too; otherwise throws
// InvalidType and leaves the value as it was.
template <class T>
class ValueToSetVisitor : public NonConstVisitor
{
public:
    explicit ValueToSetVisitor(T const & value) : value_(value) {}

#define VELLUM_VALUE_TO_SET_VISIT(Type)                                                           \
    void visit(Type & target) override { assign(target); }
    VELLUM_FOR_EACH_VALUE_TYPE(VELLUM_VALUE_TO_SET_VISIT)
#undef VELLUM_VALUE_TO_SET_VISIT

private:
    template <class U>
    void assign(U & target)
    {
        (void)target;
        if constexpr (std::is_same<U, T>::value)
            target = value_;
        else
            Detail::throwTypeMismatch();
    }

    T value_;
};
} // namespace Visitors
} // namespace Types
} // namespace Vellum
