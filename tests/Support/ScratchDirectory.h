#pragma once
// A private directory under the system's temporary directory, removed with everything in it.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <unistd.h>

#include "Templates/Containers.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace TestSupport
{
class ScratchDirectory
{
public:
    ScratchDirectory()
    {
        char const * tmp = std::getenv("TMPDIR");
        std::string pattern = std::string(tmp != nullptr && *tmp != 0 ? tmp : "/tmp") + "/vellum-test-XXXXXX";
        std::vector<char> name(pattern.begin(), pattern.end());
        name.push_back(0);
        if (::mkdtemp(name.data()) != nullptr)
            root_ = name.data();
    }
    ~ScratchDirectory()
    {
        std::error_code ignored;
        if (!root_.empty())
            std::filesystem::remove_all(root_, ignored);
    }
    bool ok() const { return !root_.empty(); }

    // The narrow (UTF-8) path of a file in the directory.
    std::string path(std::string const & name) const { return root_ + "/" + name; }
    // The same as interface text.
    Templates::wstring widePath(std::string const & name) const { return Utils::wide(path(name).c_str()); }

    void put(std::string const & name, std::vector<unsigned char> const & bytes) const
    {
        std::ofstream out(path(name), std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<char const *>(bytes.data()), std::streamsize(bytes.size()));
    }
    std::vector<unsigned char> get(std::string const & name) const
    {
        std::ifstream in(path(name), std::ios::binary);
        return std::vector<unsigned char>(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }

private:
    std::string root_;
};

// n bytes of a recognisable pattern.
inline std::vector<unsigned char> patternBytes(size_t n, unsigned salt = 7)
{
    std::vector<unsigned char> bytes(n);
    for (size_t i = 0; i < n; ++i)
        bytes[i] = static_cast<unsigned char>((i * 31 + salt * 17 + (i >> 8)) & 0xFF);
    return bytes;
}
} // namespace TestSupport
} // namespace Vellum
