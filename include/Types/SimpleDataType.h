#pragma once
// The roots of the value types: every value holds its bytes in wire order.

#include "DataIO/DataSink.h"
#include "Templates/AutoPtr.h"
#include "Types/Visitor.h"

namespace Vellum
{
namespace Types
{
class BaseType : public Visitors::Visitable
{
public:
    virtual void serialize(DataIO::DataSink & sink) const = 0;
};

class SimpleDataType : public BaseType
{
public:
    // Writes serializedSize() bytes from rawBuffer().
    void serialize(DataIO::DataSink & sink) const override { sink.write(rawBuffer(), serializedSize()); }
    virtual unsigned char const * rawBuffer() const = 0;
    virtual unsigned short serializedSize() const = 0;
    virtual Templates::auto_ptr<SimpleDataType> clone() const = 0;
};

// Identifiers: UUID, UniversalLabel, UMID32, UMID64.
class UID : public SimpleDataType
{
};

// Strong and weak references.
class Reference : public SimpleDataType
{
};
} // namespace Types
} // namespace Vellum
