#pragma once
// A local tag read from a file that could not be tied to any element, and why.

#include "MetaMetadata/AbstractMetaAttribute.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace Types
{
class LocalTag;
} // namespace Types

namespace MetaMetadata
{
class UnknownAttribute : public AbstractMetaAttribute
{
public:
    VELLUM_CLASS_ALLOCATION
    enum Reason
    {
        NotFoundInPrimerReason = 0,
        NotInDictionaryReason = 1,
        LocalTagNotFoundReason = 2,
        InvalidLocalTagReason = 3,
        LabelCollisionReason = 4,
        InvalidLengthReason = 5
    };

    UnknownAttribute(Types::LocalTag const & tag, Reason reason);
    UnknownAttribute(UnknownAttribute const & other);
    UnknownAttribute & operator=(UnknownAttribute const & other);
    ~UnknownAttribute() override;

    // The tag as read.
    Types::LocalTag const & localTag() const;
    Reason reason() const;

    void accept(AbstractMetaAttributeVisitor & visitor) const override;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};

// The same tag and reason.
bool operator==(UnknownAttribute const & a, UnknownAttribute const & b);
bool operator!=(UnknownAttribute const & a, UnknownAttribute const & b);
} // namespace MetaMetadata
} // namespace Vellum
