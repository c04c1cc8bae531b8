#include "notes/LicenseNote.h"

#include <gtest/gtest.h>

#include <chrono>

namespace quillmark {
namespace {

using namespace std::chrono_literals;

TEST(LicenseNote, IsEmptyFromTheStart)
{
    EXPECT_TRUE(LicenseNote{}.isEmpty());
    EXPECT_EQ(LicenseNote{}.license, HeldLicense::notSet);
}

TEST(LicenseNote, IsNotEmptyWithAShop)
{
    EXPECT_FALSE(LicenseNote{.boughtFrom = "Foundry"}.isEmpty());
}

TEST(LicenseNote, IsNotEmptyWithALicense)
{
    EXPECT_FALSE(LicenseNote{.license = HeldLicense::web}.isEmpty());
}

TEST(LicenseNote, IsNotEmptyWithALink)
{
    EXPECT_FALSE(LicenseNote{.url = "https://example.org"}.isEmpty());
}

TEST(LicenseNote, IsNotEmptyWithAnAttachment)
{
    EXPECT_FALSE(LicenseNote{.attachment = "0A1B2C3D-receipt.pdf"}.isEmpty());
}

TEST(LicenseNote, IsNotEmptyWithAnAttachmentWhoseNameIsEmpty)
{
    EXPECT_FALSE(LicenseNote{.attachment = ""}.isEmpty());
}

TEST(LicenseNote, IsNotEmptyWithText)
{
    EXPECT_FALSE(LicenseNote{.text = " "}.isEmpty());
}

TEST(LicenseNote, IsEmptyWithNoMoreThanTheFormerNameOfAnAttachment)
{
    EXPECT_TRUE(LicenseNote{.attachmentName = "receipt.pdf"}.isEmpty());
}

TEST(LicenseNote, IsEmptyWithNoMoreThanATime)
{
    EXPECT_TRUE(LicenseNote{.updated = std::chrono::sys_seconds(1s)}.isEmpty());
}

TEST(LicenseNote, EqualsAnotherOnlyWhenEveryFieldDoes)
{
    const LicenseNote note{.boughtFrom = "Foundry", .text = "two seats"};
    LicenseNote other = note;
    EXPECT_EQ(note, other);
    other.updated += 1s;
    EXPECT_NE(note, other);
}

} // namespace
} // namespace quillmark
