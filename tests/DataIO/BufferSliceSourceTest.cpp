#include <gtest/gtest.h>

#include "Support/Mxf.h"

#include "DataIO/BufferSliceSource.h"
#include "DataIO/SliceReader.h"
#include "DataIO/SliceTestHelpers.h"
#include "Exceptions/Exceptions.h"
#include "Utils/Text.h"

using namespace Vellum;
using namespace Vellum::DataIO;
using Vellum::DataIO::Testing::CountingBlockFactory;
using Vellum::DataIO::Testing::bytesOf;
using Vellum::DataIO::Testing::counting;
using Vellum::DataIO::Testing::window;

namespace
{
} // namespace

TEST(BufferSliceSourceTest, QueueReadSkipAndClose)
{
    CountingBlockFactory factory;
    {
        BlockHolder a = factory.make(counting(10));
        BlockHolder b = factory.make(counting(10, 10));
        BufferSliceSource buffer;
        EXPECT_FALSE(buffer.closed());
        EXPECT_FALSE(buffer.endOfStream());
        // Open and empty: an empty slice, no error.
        EXPECT_EQ(0u, buffer.read(100)->size());

        buffer.write(window(a, 0, 10));
        buffer.write(window(b, 0, 4));
        buffer.write(window(b, 4, 6)); // continues the last: one slice in the queue
        EXPECT_EQ(20u, buffer.accessible());

        // The head, whatever size is asked.
        Templates::auto_ptr<Slice> head = buffer.read(1);
        EXPECT_EQ(counting(10), bytesOf(*head));
        EXPECT_EQ(10u, buffer.absoluteOffset());
        EXPECT_EQ(3u, buffer.skip(3));
        EXPECT_EQ(13u, buffer.absoluteOffset());
        EXPECT_EQ(7u, buffer.accessible());

        buffer.close();
        EXPECT_TRUE(buffer.closed());
        EXPECT_FALSE(buffer.endOfStream());
        EXPECT_EQ(VellumTest::messageOf<Exceptions::InvalidValue>([&] { buffer.write(window(a, 0, 1)); }), "this -> closed () == false: BufferSliceSource already closed.");
        EXPECT_EQ(7u, buffer.accessible());

        // Skipping more than is queued gives what there was, without waiting.
        EXPECT_EQ(7u, buffer.skip(50));
        EXPECT_EQ(20u, buffer.absoluteOffset());
        EXPECT_TRUE(buffer.endOfStream());
        try
        {
            buffer.read(1);
            FAIL() << "no exception";
        }
        catch (Exceptions::InvalidValue const & e)
        {
            EXPECT_EQ("!impl_ -> closed_: BufferSliceSource::read: Source closed and empty!",
                      Utils::narrow(e.message()));
            EXPECT_EQ(16, e.errorCode());
        }
    }
    EXPECT_EQ(0, factory.live);
}

TEST(BufferSliceSourceTest, FeedsASliceReader)
{
    CountingBlockFactory factory;
    BufferSliceSource * buffer = new BufferSliceSource;
    SliceReader reader((Templates::SharedPtr<SliceSource>(buffer)));
    BlockHolder a = factory.make(counting(6));
    BlockHolder b = factory.make(counting(6, 6));
    buffer->write(window(a, 0, 6));
    buffer->write(window(b, 0, 6));
    EXPECT_EQ(counting(8), bytesOf(*reader.read(8)));
    EXPECT_EQ(8u, reader.absoluteOffset());
    // Open but drained: a read that cannot be completed keeps the bytes.
    EXPECT_THROW(reader.read(8), Exceptions::NotEnoughData);
    EXPECT_EQ(4u, reader.cachedSize());
    buffer->close();
    EXPECT_FALSE(reader.endOfStream());
    EXPECT_EQ(counting(4, 8), bytesOf(*reader.read(4)));
    EXPECT_TRUE(reader.endOfStream());
}
