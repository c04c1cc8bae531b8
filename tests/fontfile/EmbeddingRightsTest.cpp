#include "fontfile/EmbeddingRights.h"

#include <gtest/gtest.h>

#include <ostream>

namespace quillmark {
namespace {

using Level = EmbeddingRights::Level;

constexpr std::string_view installable = "Installable (no restriction bits set)";
constexpr std::string_view restricted = "Restricted license (no embedding)";

struct RightsCase {
    const char* name;
    std::uint16_t fsType;
    Level level;
    std::string_view label;
    std::string summary;
    std::string hex;

    friend std::ostream& operator<<(std::ostream& out, const RightsCase& row)
    {
        return out << row.name;
    }
};

class EmbeddingRightsOf : public testing::TestWithParam<RightsCase> {};

TEST_P(EmbeddingRightsOf, AreInWords)
{
    const EmbeddingRights rights{GetParam().fsType};
    EXPECT_EQ(rights.level(), GetParam().level);
    EXPECT_EQ(rights.label(), GetParam().label);
    EXPECT_EQ(rights.summary(), GetParam().summary);
    EXPECT_EQ(rights.hex(), GetParam().hex);
}

INSTANTIATE_TEST_SUITE_P(
    EmbeddingRights, EmbeddingRightsOf,
    testing::Values(
        RightsCase{"NoBits", 0x0000, Level::installable, installable,
                   "Installable (no restriction bits set)", "0x0000"},
        RightsCase{"ReservedLowestBit", 0x0001, Level::installable, installable,
                   "Installable (no restriction bits set)", "0x0001"},
        RightsCase{"Restricted", 0x0002, Level::restricted, restricted,
                   "Restricted license (no embedding)", "0x0002"},
        RightsCase{"RestrictedWithTheReservedBit", 0x0003, Level::restricted, restricted,
                   "Restricted license (no embedding)", "0x0003"},
        RightsCase{"PreviewAndPrint", 0x0004, Level::previewAndPrint, "Preview & print",
                   "Preview & print", "0x0004"},
        RightsCase{"PreviewAndPrintBeatsRestricted", 0x0006, Level::previewAndPrint,
                   "Preview & print", "Preview & print", "0x0006"},
        RightsCase{"Editable", 0x0008, Level::editable, "Editable", "Editable", "0x0008"},
        RightsCase{"EditableBeatsRestricted", 0x000A, Level::editable, "Editable", "Editable",
                   "0x000A"},
        RightsCase{"EditableBeatsPreviewAndPrint", 0x000C, Level::editable, "Editable", "Editable",
                   "0x000C"},
        RightsCase{"EditableBeatsBoth", 0x000E, Level::editable, "Editable", "Editable", "0x000E"},
        RightsCase{"NoSubsettingAlone", 0x0100, Level::installable, installable,
                   "Installable (no restriction bits set), no subsetting", "0x0100"},
        RightsCase{"BitmapOnlyAlone", 0x0200, Level::installable, installable,
                   "Installable (no restriction bits set), bitmap only", "0x0200"},
        RightsCase{"RestrictedWithoutSubsetting", 0x0102, Level::restricted, restricted,
                   "Restricted license (no embedding), no subsetting", "0x0102"},
        RightsCase{"EditableBitmapOnly", 0x0208, Level::editable, "Editable",
                   "Editable, bitmap only", "0x0208"},
        RightsCase{"PreviewAndPrintWithBothLimits", 0x0304, Level::previewAndPrint,
                   "Preview & print", "Preview & print, no subsetting, bitmap only", "0x0304"},
        RightsCase{"OtherBitsChangeNothing", 0xFCF1, Level::installable, installable,
                   "Installable (no restriction bits set)", "0xFCF1"},
        RightsCase{"AllBits", 0xFFFF, Level::editable, "Editable",
                   "Editable, no subsetting, bitmap only", "0xFFFF"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(EmbeddingRights, LimitsAreSingleBits)
{
    EXPECT_TRUE(EmbeddingRights{0x0100}.noSubsetting());
    EXPECT_FALSE(EmbeddingRights{0xFEFF}.noSubsetting());
    EXPECT_TRUE(EmbeddingRights{0x0200}.bitmapOnly());
    EXPECT_FALSE(EmbeddingRights{0xFDFF}.bitmapOnly());
}

TEST(EmbeddingRights, LevelsHaveTheirRawValuesInOrder)
{
    EXPECT_EQ(rawValue(Level::installable), "installable");
    EXPECT_EQ(rawValue(Level::restricted), "restricted");
    EXPECT_EQ(rawValue(Level::previewAndPrint), "previewAndPrint");
    EXPECT_EQ(rawValue(Level::editable), "editable");
    EXPECT_EQ(rawValues<Level>.size(), 4U);
    EXPECT_LT(Level::installable, Level::restricted);
    EXPECT_LT(Level::restricted, Level::previewAndPrint);
    EXPECT_LT(Level::previewAndPrint, Level::editable);
}

TEST(EmbeddingRights, AreEqualByTheirBits)
{
    EXPECT_EQ(EmbeddingRights{8}, EmbeddingRights{8});
    EXPECT_NE(EmbeddingRights{8}, EmbeddingRights{10});
}

} // namespace
} // namespace quillmark
