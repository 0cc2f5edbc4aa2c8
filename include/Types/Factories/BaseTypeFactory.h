#pragma once
// Makes values from the bytes of a KLV value, by the type identifier that the schema gives.

#include "Platform/MallocAlloc.h"
#include "Templates/AutoPtr.h"
#include "Types/Identifiers.h"
#include "Types/SimpleDataType.h"

namespace Vellum
{
namespace KLV
{
class Value;
}

namespace Types
{
namespace Factories
{
// One instance for the process, made on first use. Its two tables of makers are open: modules
// may add their own types, or replace a maker, by registering under an identifier.
class BaseTypeFactory
{
public:
    VELLUM_CLASS_ALLOCATION

    // Makes a simple value from the KLV value alone: every type whose value tells its own size,
    // whether that size is fixed by the type (integers, labels) or the value's (strings).
    typedef Templates::auto_ptr<SimpleDataType> (*FixedSizeMaker)(KLV::Value & value);
    // Makes a value that needs one number more than the KLV value: for Array and Batch that is
    // the identifier of their element type.
    typedef Templates::auto_ptr<BaseType> (*VariableSizeMaker)(KLV::Value & value, unsigned int size);

    static BaseTypeFactory & instance();

    virtual ~BaseTypeFactory();

    // Uses the variable-size maker of `type` with `size`; a type with only a fixed-size maker is
    // made by that one, and `size` is not used. No maker throws NoFactory "No Factory for type".
    virtual Templates::auto_ptr<BaseType> create(KLV::Value & value, Identifiers::Identifier type,
                                                 unsigned int size) = 0;
    // Uses the fixed-size maker of `type`. No maker throws NoFactory "No Factory for type".
    virtual Templates::auto_ptr<SimpleDataType> create(KLV::Value & value, Identifiers::Identifier type) = 0;

    // Registering replaces the maker held for `type`; a null maker removes it.
    virtual void registerFixedSizeMaker(Identifiers::Identifier type, FixedSizeMaker maker) = 0;
    virtual bool hasFixedSizeMaker(Identifiers::Identifier type) const = 0;
    virtual void registerVariableSizeMaker(Identifiers::Identifier type, VariableSizeMaker maker) = 0;
    virtual bool hasVariableSizeMaker(Identifiers::Identifier type) const = 0;

protected:
    BaseTypeFactory() {}

private:
    BaseTypeFactory(BaseTypeFactory const &) = delete;
    BaseTypeFactory & operator=(BaseTypeFactory const &) = delete;
};
} // namespace Factories
} // namespace Types
} // namespace Vellum
