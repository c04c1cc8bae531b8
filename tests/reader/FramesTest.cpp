#include "reader/Frames.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>

namespace quillmark::reader {
namespace {

void receive(FrameBuffer& buffer, std::string_view bytes)
{
    while (!bytes.empty()) {
        const std::span<char> room = buffer.room();
        const std::size_t count = std::min(room.size(), bytes.size());
        std::ranges::copy(bytes.substr(0, count), room.begin());
        buffer.filled(count);
        bytes.remove_prefix(count);
    }
}

TEST(Frames, FieldsComeBackAsTheyWereWritten)
{
    std::string bytes;
    {
        FrameWriter writer(bytes, 7);
        writer.u8(1);
        writer.u16(2);
        writer.u32(3);
        writer.text("four");
        writer.compact(5);
        writer.compact(std::numeric_limits<std::uint64_t>::max());
        writer.bytes("six");
    }
    FrameBuffer buffer(1'000);
    receive(buffer, bytes);
    const auto frame = buffer.next();
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->kind, 7U);
    FrameFields fields(frame->bytes);
    EXPECT_EQ(fields.u8(), 1);
    EXPECT_EQ(fields.u16(), 2);
    EXPECT_EQ(fields.u32(), 3U);
    EXPECT_EQ(fields.text(), "four");
    EXPECT_EQ(fields.compact(), 5U);
    EXPECT_EQ(fields.compact(), std::numeric_limits<std::uint64_t>::max());
    EXPECT_FALSE(fields.isComplete());
    EXPECT_EQ(fields.bytes(3), "six");
    EXPECT_TRUE(fields.isComplete());
    EXPECT_TRUE(buffer.isEmpty());
}

TEST(Frames, FieldBeyondTheEndIsEmptyAndUnsoundForGood)
{
    FrameFields fields("\x05\0\0\0abc");
    EXPECT_EQ(fields.text(), "");
    EXPECT_FALSE(fields.isSound());
    EXPECT_EQ(fields.u8(), 0);
    EXPECT_FALSE(fields.isComplete());
}

TEST(Frames, NumberOfMoreThanTenBytesIsUnsound)
{
    FrameFields fields(std::string_view("\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x01", 11));
    EXPECT_EQ(fields.compact(), 0U);
    EXPECT_FALSE(fields.isSound());
}

TEST(Frames, TextIsRepaired)
{
    std::string bytes;
    FrameWriter(bytes, 0).text("a\xFFz");
    FrameFields fields(std::string_view(bytes).substr(8));
    EXPECT_EQ(fields.text(), "a\xEF\xBF\xBDz");
}

TEST(Frames, ComeWholeHoweverTheyArrive)
{
    std::string bytes;
    for (std::uint32_t i = 0; i < 50; ++i)
        FrameWriter(bytes, i).bytes(std::string(i * i * 400, 'x'));
    for (const std::size_t piece : {std::size_t{1'000}, std::size_t{7'777}, bytes.size()}) {
        FrameBuffer buffer(1'000'000);
        std::uint32_t found = 0;
        for (std::size_t at = 0; at < bytes.size(); at += piece) {
            receive(buffer, std::string_view(bytes).substr(at, piece));
            while (const auto frame = buffer.next()) {
                EXPECT_EQ(frame->kind, found);
                EXPECT_EQ(frame->bytes.size(), found * found * 400);
                ++found;
            }
        }
        EXPECT_EQ(found, 50U);
    }
}

TEST(Frames, ThatAnnounceMoreThanTheyMayHaveBreakTheBuffer)
{
    FrameBuffer buffer(100);
    std::string bytes;
    FrameWriter(bytes, 0).bytes(std::string(101, 'x'));
    receive(buffer, bytes);
    EXPECT_FALSE(buffer.next());
    EXPECT_TRUE(buffer.isBroken());
}

TEST(Frames, TakeNoRoomForWhatIsOnlyAnnounced)
{
    FrameBuffer buffer(std::numeric_limits<std::uint32_t>::max());
    receive(buffer, std::string_view("\0\0\0\0\xFF\xFF\xFF\xFF", 8));
    EXPECT_FALSE(buffer.next());
    EXPECT_LT(buffer.room().size(), 1'000'000U);
}

} // namespace
} // namespace quillmark::reader
