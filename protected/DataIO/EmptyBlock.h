#pragma once
// The block behind every default slice, so that a slice never has a null block.

#include "DataIO/Block.h"

namespace Vellum
{
namespace DataIO
{
// Has no bytes; references are not counted since the one instance lives as long as the
// process. New blocks of its family come from the MemoryBlockFactory.
class EmptyBlock : public Block
{
public:
    static EmptyBlock & instance();

    unsigned char const * data() const override;
    unsigned char * data() override;
    uint64 size() const override { return 0; }
    void addReference() override {}
    void release() override {}
    BlockHolder create(uint64 size) override;

    EmptyBlock() {}
    ~EmptyBlock() override {}
};
} // namespace DataIO
} // namespace Vellum
