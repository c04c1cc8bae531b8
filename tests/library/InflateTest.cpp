#include "library/Inflate.h"

#include "support/FontContainers.h"

#include <gtest/gtest.h>

#include <span>

namespace quillmark {
namespace {

using test::Bytes;

std::optional<Bytes> inflate(const Bytes& bytes, Wrapper wrapper, std::size_t limit = 1U << 20U)
{
    return inflated(MemorySource(bytes), 0, bytes.size(), wrapper, limit);
}

TEST(Inflate, GivesBackWhatWasCompressed)
{
    for (const std::size_t size : {0U, 1U, 1000U, 16384U, 16385U, 500000U}) {
        Bytes plain(size);
        for (std::size_t i = 0; i < size; ++i)
            plain[i] = static_cast<std::byte>(i * i % 253);
        EXPECT_EQ(inflate(test::deflated(plain), Wrapper::zlib), plain) << size;
        EXPECT_EQ(inflate(test::gzipped(plain), Wrapper::gzip), plain) << size;
    }
}

TEST(Inflate, TheWrapperMustBeTheOneAskedFor)
{
    EXPECT_FALSE(inflate(test::gzipped(Bytes(10)), Wrapper::zlib));
    EXPECT_FALSE(inflate(test::deflated(Bytes(10)), Wrapper::gzip));
}

TEST(Inflate, DamagedAndCutDataGiveNothing)
{
    const Bytes sound = test::deflated(test::ascii("some text that is compressed here"));
    for (std::size_t size = 0; size < sound.size(); ++size)
        EXPECT_FALSE(
            inflate(Bytes(sound.begin(), sound.begin() + static_cast<long>(size)), Wrapper::zlib))
            << size;
    Bytes damaged = sound;
    damaged.back() ^= std::byte{1}; // the checksum
    EXPECT_FALSE(inflate(damaged, Wrapper::zlib));
}

TEST(Inflate, TheLimitIsTheLastSizeThatIsAllowed)
{
    const Bytes bytes = test::deflated(Bytes(50000));
    EXPECT_TRUE(inflate(bytes, Wrapper::zlib, 50000));
    EXPECT_FALSE(inflate(bytes, Wrapper::zlib, 49999));
    EXPECT_FALSE(inflate(bytes, Wrapper::zlib, 0));
}

TEST(Inflate, ReadsTheStretchThatItIsTold)
{
    const Bytes plain = test::ascii("inside");
    Bytes bytes = test::deflated(plain);
    const std::size_t length = bytes.size();
    bytes.insert(bytes.begin(), 100, std::byte{0xAA});
    bytes.insert(bytes.end(), 100, std::byte{0xAA});
    EXPECT_EQ(inflated(MemorySource(bytes), 100, length, Wrapper::zlib, 100), plain);
    EXPECT_FALSE(inflated(MemorySource(bytes), 100, length - 1, Wrapper::zlib, 100));
    // What follows the end of the compressed data does not matter.
    EXPECT_EQ(inflated(MemorySource(bytes), 100, length + 50, Wrapper::zlib, 100), plain);
}

} // namespace
} // namespace quillmark
