#pragma once
// The C stream under every file source, sink and slice source, with the position and length
// this object believes in.

#include <cstdio>

#include "Platform/MallocAlloc.h"
#include "Platform/Types.h"
#include "Templates/Containers.h"

namespace Vellum
{
namespace DataIO
{
namespace File
{
class FileImpl
{
public:
    VELLUM_CLASS_ALLOCATION
    // bufferSize 0: unbuffered; above 0: fully buffered with that many bytes; below 0: the
    // runtime's default.
    FileImpl(unsigned short const * path, unsigned short const * mode, int bufferSize);
    virtual ~FileImpl();

    virtual uint64 read(unsigned char * buffer, uint64 size);
    virtual void write(unsigned char const * data, uint64 size);
    // A seek past the end stops at the end; gives the position reached.
    virtual uint64 seek(uint64 position);
    virtual uint64 absoluteOffset() const;
    virtual uint64 remaining() const;

    void flush();

protected:
    uint64 position;
    FILE * file_;
    uint64 size;

private:
    bool readOnly_;
    // The runtime's buffer, when a size is asked: the C library takes the size only with the bytes.
    Templates::vector<char> buffer_;
    FileImpl(FileImpl const &) = delete;
    FileImpl & operator=(FileImpl const &) = delete;
};
} // namespace File
} // namespace DataIO
} // namespace Vellum
