#pragma once
// The consistency check of a whole MXF file behind `vellum check`: one walk over every KLV packet
// (essence values are stepped over, never read), then the cross checks between partition packs,
// the Random Index Pack, the header metadata and the index tables.

#include <cstdint>
#include <string>
#include <vector>

namespace VellumTool
{
// One inconsistency: where it is (absolute byte offset in the file), a short stable code word and
// a readable text.
struct Finding
{
    std::uint64_t offset;
    std::string code;
    std::string message;
};

class Checker
{
public:
    explicit Checker(std::string const & path);
    ~Checker();
    Checker(Checker const &) = delete;
    Checker & operator=(Checker const &) = delete;

    // Walks the file and gives the findings in order of offset. A file that cannot be opened
    // gives one finding "file-unreadable".
    std::vector<Finding> run();

private:
    struct Impl;
    Impl * impl_;
};
} // namespace VellumTool
