#pragma once
// The value of a KLV packet: a bounded view on the bytes that follow the length in the source.
// Nothing is copied; reading a value reads the source.

#include "DataIO/DataSource.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace KLV
{
class Value : public DataIO::BoundedDataSource
{
public:
    // A value of `length` bytes that starts where `source` stands now.
    Value(DataIO::DataSource & source, uint64 length);
    // Skips what is left of the value, so that the source stands behind it. Two values over one
    // source must be destroyed in order.
    ~Value() override;
    Value(Value const &) = delete;
    Value & operator=(Value const &) = delete;

    uint64 absoluteOffset() const override;
    bool endOfStream() const override;
    // Reads at most remaining() bytes.
    uint64 read(unsigned char * buffer, uint64 size) override;
    uint64 skip(uint64 size) override;
    // Bytes between the source's position and the end of the value; 0 once the source has
    // passed the end.
    uint64 remaining() const override;
    void discard() override;

    // Reads exactly `size` bytes, or throws InvalidLength carrying the bytes that were read.
    void readValue(unsigned char * out, uint64 size);
    // The length of the whole value.
    uint64 totalLength() const;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace KLV
} // namespace Vellum
