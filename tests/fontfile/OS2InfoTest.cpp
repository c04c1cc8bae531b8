#include "fontfile/OS2Info.h"

#include "support/FontBytes.h"

#include <gtest/gtest.h>

namespace quillmark {
namespace {

using test::Bytes;
using test::os2Table;
using namespace std::string_view_literals;

/// The vendor read from a table whose four vendor bytes are these.
std::optional<std::string> vendor(std::string_view bytes)
{
    const auto info = OS2Info::read(os2Table({.vendorID = std::string(bytes)}));
    return info ? info->vendorID : "no table";
}

TEST(OS2Info, VersionEmbeddingBitsAndVendorAreRead)
{
    const Bytes table = os2Table({.version = 0x0102, .fsType = 0x0308, .vendorID = "ADBE"});
    EXPECT_EQ(OS2Info::read(table), (OS2Info{0x0102, 0x0308, "ADBE"}));
}

TEST(OS2Info, TableOfTenBytesHasNoVendorAndOfNineGivesNothing)
{
    EXPECT_EQ(OS2Info::read(os2Table({.version = 3, .fsType = 4, .size = 10})),
              (OS2Info{3, 4, std::nullopt}));
    EXPECT_EQ(OS2Info::read(os2Table({.version = 3, .fsType = 4, .size = 9})), std::nullopt);
    EXPECT_EQ(OS2Info::read({}), std::nullopt);
}

TEST(OS2Info, TableOf62BytesHasAVendorAndOf61HasNone)
{
    EXPECT_EQ(OS2Info::read(os2Table({.vendorID = "ABCD", .size = 62}))->vendorID, "ABCD");
    EXPECT_EQ(OS2Info::read(os2Table({.vendorID = "ABCD", .size = 61}))->vendorID, std::nullopt);
}

TEST(OS2Info, VendorIsTrimmed)
{
    EXPECT_EQ(vendor("AB  "), "AB");
    EXPECT_EQ(vendor("  AB"), "AB");
    EXPECT_EQ(vendor("AB\0\0"sv), "AB");
    EXPECT_EQ(vendor("\n\tAB"), "AB");
    EXPECT_EQ(vendor("\x01"
                     "A\x7F\x1F"),
              "A");
    EXPECT_EQ(vendor("A  B"), "A  B");
}

TEST(OS2Info, BlankVendorIsAbsent)
{
    EXPECT_EQ(vendor("    "), std::nullopt);
    EXPECT_EQ(vendor("\0\0\0\0"sv), std::nullopt);
    EXPECT_EQ(vendor(" \0\n\x7F"sv), std::nullopt);
}

TEST(OS2Info, VendorBytesBeyondAsciiAreReplaced)
{
    EXPECT_EQ(vendor("A\xE9\xFF "), "A\uFFFD\uFFFD");
    EXPECT_EQ(vendor("\x80\x80\x80\x80"), "\uFFFD\uFFFD\uFFFD\uFFFD");
}

} // namespace
} // namespace quillmark
