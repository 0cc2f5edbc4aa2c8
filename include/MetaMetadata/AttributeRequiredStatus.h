#pragma once
// Whether an attribute must be present in a set, with the short texts of each status.

#include "Platform/MallocAlloc.h"

namespace Vellum
{
namespace MetaMetadata
{
class AttributeRequiredStatus
{
public:
    VELLUM_CLASS_ALLOCATION
    enum Status
    {
        Required = 0,        // "Req"
        EncoderRequired = 1, // "E/req"
        DecoderRequired = 2, // "D/req"
        BestEffort = 3,      // "B.Effort"
        Optional = 4         // "Opt"
    };

    // The one instance, made on first use.
    static AttributeRequiredStatus & instance();

    virtual ~AttributeRequiredStatus();
    // The status of a text; an unknown text throws NotFound "StatusNotFound: <text>".
    virtual Status statusFromName(unsigned short const * name) const = 0;
    // The text of a status; an unknown value throws NotFound "StatusNotFound: <value>".
    virtual unsigned short const * statusToName(Status status) const = 0;
};
} // namespace MetaMetadata
} // namespace Vellum
