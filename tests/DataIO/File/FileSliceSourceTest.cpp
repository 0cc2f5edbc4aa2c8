#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <unistd.h>

#include "DataIO/File/FileSliceSource.h"
#include "DataIO/SliceReader.h"
#include "DataIO/SliceTestHelpers.h"
#include "Exceptions/Exceptions.h"
#include "Utils/Text.h"

using namespace Vellum;
using namespace Vellum::DataIO;
using Vellum::DataIO::File::FileSliceSource;
using Vellum::DataIO::Testing::CountingBlockFactory;
using Vellum::DataIO::Testing::bytesOf;

namespace
{
// A file of `size` bytes (i * 7 mod 256) in the temporary directory, removed afterwards.
class TemporaryFile
{
public:
    explicit TemporaryFile(size_t size) : bytes(size)
    {
        char name[] = "/tmp/vellum_slice_XXXXXX";
        int fd = ::mkstemp(name);
        path = name;
        for (size_t i = 0; i < size; ++i)
            bytes[i] = static_cast<unsigned char>(i * 7);
        if (fd >= 0)
        {
            if (size != 0 && ::write(fd, bytes.data(), size) != ssize_t(size))
                path.clear();
            ::close(fd);
        }
    }
    ~TemporaryFile() { std::remove(path.c_str()); }
    Templates::wstring wide() const { return Utils::wide(path.c_str()); }

    std::string path;
    std::vector<unsigned char> bytes;
};
} // namespace

TEST(FileSliceSourceTest, ReadOfOneGivesSixtyFourKibibytes)
{
    TemporaryFile file(200000);
    FileSliceSource source(file.wide().c_str());
    Templates::auto_ptr<Slice> slice = source.read(1);
    ASSERT_EQ(65536u, slice->size());
    EXPECT_EQ(std::vector<unsigned char>(file.bytes.begin(), file.bytes.begin() + 65536), bytesOf(*slice));
    EXPECT_EQ(65536u, source.absoluteOffset());
    // A large read is capped at 2 MiB, and at the end of the file.
    Templates::auto_ptr<Slice> rest = source.read(5000000);
    EXPECT_EQ(200000u - 65536u, rest->size());
    EXPECT_EQ(rest->size(), rest->block()->size());
    EXPECT_TRUE(source.endOfStream());
    EXPECT_EQ(0u, source.read(1)->size());
}

TEST(FileSliceSourceTest, LimitsSkipAndAFactoryOfItsOwn)
{
    TemporaryFile file(100);
    CountingBlockFactory * counting = new CountingBlockFactory;
    Templates::SharedPtr<BlockFactory> factory(counting);
    {
        FileSliceSource source(file.wide().c_str(), factory, 10, 16);
        EXPECT_EQ(10u, source.read(1)->size());
        EXPECT_EQ(16u, source.read(40)->size());
        EXPECT_EQ(12u, source.read(12)->size());
        EXPECT_EQ(3, counting->created);
        EXPECT_EQ(0, counting->live);
        EXPECT_EQ(38u, source.absoluteOffset());
        EXPECT_EQ(50u, source.skip(50));
        EXPECT_EQ(88u, source.absoluteOffset());
        EXPECT_EQ(12u, source.skip(~uint64(0) - 5));
        EXPECT_TRUE(source.endOfStream());
        EXPECT_EQ(0u, source.skip(1));
    }
    // The whole file through a reader equals the file.
    SliceReader reader(Templates::SharedPtr<SliceSource>(new FileSliceSource(file.wide().c_str(), 7, 9)));
    Templates::auto_ptr<Slice> all = reader.read(100);
    EXPECT_EQ(file.bytes, bytesOf(*all));
    EXPECT_TRUE(reader.endOfStream());
}

TEST(FileSliceSourceTest, AMissingFileIsAnIOError)
{
    Templates::wstring path = Utils::wide("/nonexistent/vellum/none.mxf");
    try
    {
        FileSliceSource source(path.c_str());
        FAIL() << "no exception";
    }
    catch (Exceptions::IOError const & e)
    {
        EXPECT_EQ(0u, Utils::narrow(e.message()).find("file_ != 0: Error opening: '/nonexistent/vellum/none.mxf'. "));
    }
}
