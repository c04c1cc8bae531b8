#include "pdf/EmbeddedProgram.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quillmark {
namespace {

struct ProgramRow {
    EmbeddedProgram program;
    std::string_view raw;
    std::string_view label;
};

class EmbeddedPrograms : public testing::TestWithParam<ProgramRow> {};

TEST_P(EmbeddedPrograms, HaveTheirLabels)
{
    EXPECT_EQ(label(GetParam().program), GetParam().label);
}

TEST_P(EmbeddedPrograms, AreStoredByTheirRawValues)
{
    EXPECT_EQ(rawValue(GetParam().program), GetParam().raw);
    EXPECT_EQ(fromRawValue<EmbeddedProgram>(GetParam().raw), GetParam().program);
}

constexpr auto programs = std::to_array<ProgramRow>({
    {EmbeddedProgram::notEmbedded, "notEmbedded", "Not embedded"},
    {EmbeddedProgram::trueType, "trueType", "Embedded (TrueType)"},
    {EmbeddedProgram::openType, "openType", "Embedded (OpenType)"},
    {EmbeddedProgram::cff, "cff", "Embedded (CFF)"},
    {EmbeddedProgram::type1, "type1", "Embedded (Type 1)"},
    {EmbeddedProgram::type3, "type3", "Type 3 (drawn glyphs)"},
});

INSTANTIATE_TEST_SUITE_P(EmbeddedProgram, EmbeddedPrograms, testing::ValuesIn(programs),
                         [](const auto& test) { return std::string(test.param.raw); });

TEST(EmbeddedProgram, ThereAreSixInThisOrder)
{
    EXPECT_EQ(rawValues<EmbeddedProgram>.size(), 6U);
    for (std::size_t i = 0; i < programs.size(); ++i)
        EXPECT_EQ(static_cast<std::size_t>(programs[i].program), i);
}

TEST(EmbeddedProgram, CffIsNoKindInCapitals)
{
    EXPECT_EQ(fromRawValue<EmbeddedProgram>("cff"), EmbeddedProgram::cff);
    EXPECT_EQ(fromRawValue<EmbeddedProgram>("CFF"), std::nullopt);
}

} // namespace
} // namespace quillmark
