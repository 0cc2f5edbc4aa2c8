#pragma once
// One delta entry: where an element of an edit unit lies relative to the start of the edit unit.
// On the wire: PosTableIndex (Int8), Slice (UInt8), ElementDelta (UInt32), 6 bytes.

#include "IndexTables/IndexTableSegmentEntry.h"
#include "Platform/Types.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace KLV
{
class Value;
}

namespace IndexTables
{
class DeltaEntry : public IndexTableSegmentEntry
{
public:
    VELLUM_CLASS_ALLOCATION
    enum
    {
        SIZE = 6
    };

    DeltaEntry(signed char posTableIndex, unsigned char slice, unsigned int elementDelta);
    // Reads the next 6 bytes of the value; a shorter value throws InvalidLength.
    explicit DeltaEntry(KLV::Value & value);
    DeltaEntry(DeltaEntry const & other);
    DeltaEntry & operator=(DeltaEntry const & other);
    ~DeltaEntry() override;

    void serialize(DataIO::DataSink & sink) const override;
    unsigned short serializedSize() const override;

    signed char posTableIndex() const;
    unsigned char slice() const;
    unsigned int elementDelta() const;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace IndexTables
} // namespace Vellum
