#pragma once
// What the typed accessors of the structural classes do: find the element of a label, narrow it
// to its kind, and read or change its value through the element, so that every rule of the
// elements (schema checks, announcements) holds for them.

#include <utility>

#include "Metadata/MetadataSet.h"
#include "Metadata/Structural/StructuralVisitors.h"
#include "Templates/AutoPtr.h"
#include "Types/SimpleDataType.h"
#include "Types/UniversalLabel.h"
#include "Types/Visitors.h"

namespace Vellum
{
namespace Metadata
{
namespace Structural
{
namespace Accessors
{
// Each of these finds the element of `label` with MetadataSet::find, which throws NotFound for a
// label that the set's description does not hold.

// The value of a simple element; null when it is empty or not a simple element.
Types::SimpleDataType const * simpleValue(MetadataSet const & set, Types::UniversalLabel const & label);
// SimpleElement::set(value, false). An element of another kind throws InvalidMetaElement.
void setSimpleValue(MetadataSet & set, Types::UniversalLabel const & label,
                    Templates::auto_ptr<Types::SimpleDataType> value);

// The set that a reference element refers to, found through the owner; null when the element is
// empty, of another kind, has no owner, or the set is not there.
MetadataSet * targetSet(MetadataSet const & set, Types::UniversalLabel const & label);
// ReferenceElement::set(target). An element of another kind throws InvalidMetaElement.
void setTarget(MetadataSet & set, Types::UniversalLabel const & label, MetadataSet const * target);

// The number of members of a collection, references or values; 0 when empty.
unsigned int memberCount(MetadataSet const & set, Types::UniversalLabel const & label);
// Member `index` of a collection of values; a bad index throws IndexOutOfBounds.
Types::SimpleDataType const * memberValue(MetadataSet const & set, Types::UniversalLabel const & label,
                                          unsigned int index);
void appendMemberValue(MetadataSet & set, Types::UniversalLabel const & label,
                       Templates::auto_ptr<Types::SimpleDataType> value);
// Only an array can take a member at an index.
void insertMemberValue(MetadataSet & set, Types::UniversalLabel const & label, unsigned int index,
                       Templates::auto_ptr<Types::SimpleDataType> value);
// The set behind member `index` of a collection of references; a bad index throws
// IndexOutOfBounds, a set that is not there gives null.
MetadataSet * targetSetAt(MetadataSet const & set, Types::UniversalLabel const & label, unsigned int index);
void appendTarget(MetadataSet & set, Types::UniversalLabel const & label, MetadataSet * target);
void insertTarget(MetadataSet & set, Types::UniversalLabel const & label, unsigned int index, MetadataSet * target);
// Removes member `index` of a collection of either kind.
void removeMember(MetadataSet & set, Types::UniversalLabel const & label, unsigned int index);

// The set that `reference` names, found through the owner of `holder`; null when none.
MetadataSet * referencedSet(MetadataSet const & holder, Types::SimpleDataType const & reference);

template <class T>
T const * value(MetadataSet const & set, Types::UniversalLabel const & label)
{
    Types::SimpleDataType const * found = simpleValue(set, label);
    return found ? Types::Visitors::getAs<T>(*found) : nullptr;
}

template <class T>
void setValue(MetadataSet & set, Types::UniversalLabel const & label, T const * value)
{
    Templates::auto_ptr<Types::SimpleDataType> copy;
    if (value)
        copy.reset(new T(*value));
    setSimpleValue(set, label, std::move(copy));
}

template <class T>
T * target(MetadataSet const & set, Types::UniversalLabel const & label)
{
    return metadataSetAs<T>(targetSet(set, label));
}

template <class T>
T const * member(MetadataSet const & set, Types::UniversalLabel const & label, unsigned int index)
{
    return Types::Visitors::getAs<T>(*memberValue(set, label, index));
}

template <class T>
void appendMember(MetadataSet & set, Types::UniversalLabel const & label, T const & value)
{
    appendMemberValue(set, label, Templates::auto_ptr<Types::SimpleDataType>(new T(value)));
}

template <class T>
void insertMember(MetadataSet & set, Types::UniversalLabel const & label, unsigned int index, T const & value)
{
    insertMemberValue(set, label, index, Templates::auto_ptr<Types::SimpleDataType>(new T(value)));
}

template <class T>
T * targetAt(MetadataSet const & set, Types::UniversalLabel const & label, unsigned int index)
{
    return metadataSetAs<T>(targetSetAt(set, label, index));
}
} // namespace Accessors
} // namespace Structural
} // namespace Metadata
} // namespace Vellum
