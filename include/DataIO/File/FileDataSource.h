#pragma once
// A random access source over a file on disk.

#include "DataIO/DataSource.h"
#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace DataIO
{
namespace File
{
// Reads a file opened in binary read mode. The file is closed when the object goes.
class FileDataSource : public RandomAccessDataSource
{
public:
    VELLUM_CLASS_ALLOCATION
    // path: zero-terminated interface text. bufferSize 0: unbuffered; above 0: fully buffered
    // with that many bytes; below 0: the runtime's default buffering.
    FileDataSource(unsigned short const * path, int bufferSize);
    ~FileDataSource() override;

    uint64 absoluteOffset() const override;
    bool endOfStream() const override;
    uint64 read(unsigned char * buffer, uint64 size) override;
    uint64 skip(uint64 size) override;
    uint64 remaining() const override;
    void discard() override;
    // A seek past the end stops at the end; gives the position reached.
    uint64 seek(uint64 position) override;

private:
    FileDataSource(FileDataSource const &) = delete;
    FileDataSource & operator=(FileDataSource const &) = delete;

    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace File
} // namespace DataIO
} // namespace Vellum
