#pragma once
// A random access sink over a file on disk.

#include "DataIO/DataSink.h"
#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Templates/AutoPtr.h"

namespace Vellum
{
namespace DataIO
{
namespace File
{
// Writes a file. Without append the file is created or emptied; with append an existing file is
// opened for update and writing starts at its end. The file is closed when the object goes.
class FileDataSink : public RandomAccessDataSink
{
public:
    VELLUM_CLASS_ALLOCATION
    // path: zero-terminated interface text. bufferSize 0: unbuffered; above 0: fully buffered
    // with that many bytes; below 0: the runtime's default buffering.
    FileDataSink(unsigned short const * path, bool append, int bufferSize);
    ~FileDataSink() override;

    void write(unsigned char const * data, uint64 size) override;
    uint64 absoluteOffset() const override;
    // Moves the write position; a seek past the furthest byte known stops there. Gives the
    // position reached.
    uint64 seek(uint64 position) override;
    // Hands what the stream still buffers to the system.
    void flush();

private:
    FileDataSink(FileDataSink const &) = delete;
    FileDataSink & operator=(FileDataSink const &) = delete;

    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace File
} // namespace DataIO
} // namespace Vellum
