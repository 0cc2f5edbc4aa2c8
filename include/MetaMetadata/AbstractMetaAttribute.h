#pragma once
// What describes one element of a set: a schema attribute, a known value in the wrong set, or a
// tag that could not be tied to anything.

#include "Platform/MallocAlloc.h"

namespace Vellum
{
namespace MetaMetadata
{
class UnknownAttribute;
class MisplacedAttribute;
class MetaAttribute;

class AbstractMetaAttributeVisitor
{
public:
    VELLUM_CLASS_ALLOCATION
    virtual ~AbstractMetaAttributeVisitor() {}
    virtual void visit(UnknownAttribute const & attribute) = 0;
    virtual void visit(MisplacedAttribute const & attribute) = 0;
    virtual void visit(MetaAttribute const & attribute) = 0;
};

class AbstractMetaAttribute
{
public:
    VELLUM_CLASS_ALLOCATION
    virtual ~AbstractMetaAttribute() {}
    virtual void accept(AbstractMetaAttributeVisitor & visitor) const = 0;
};
} // namespace MetaMetadata
} // namespace Vellum
