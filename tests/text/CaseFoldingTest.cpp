#include "text/CaseFolding.h"

#include <gtest/gtest.h>

namespace quillmark {
namespace {

TEST(CaseFolding, MakesLettersOfBothCasesTheSame)
{
    const CaseFolding folding("en_US");
    EXPECT_EQ(folding.folded("Brook BOLD 12"), "brook bold 12");
    EXPECT_EQ(folding.folded("ÄRGER"), folding.folded("ärger"));
    EXPECT_EQ(folding.folded("ΟΔΟΣ"), folding.folded("οδος"));
    EXPECT_EQ(folding.folded("ΟΔΟΣ"), folding.folded("οδος")) << "whatever the form of the sigma";
    EXPECT_EQ(folding.folded("STRASSE"), folding.folded("Straße"));
}

TEST(CaseFolding, KeepsAccentsApartFromPlainLetters)
{
    const CaseFolding folding("en_US");
    EXPECT_NE(folding.folded("café"), folding.folded("cafe"));
    EXPECT_EQ(folding.folded("cafe\u0301").find(folding.folded("cafe")), std::string::npos);
}

TEST(CaseFolding, TakesAnAccentOfItsOwnAndAnAccentedLetterAsTheSame)
{
    const CaseFolding folding("en_US");
    EXPECT_EQ(folding.folded("CAFE\u0301"), folding.folded("caf\u00E9"));
}

TEST(CaseFolding, KnowsTheTwoLettersIOfTurkish)
{
    const CaseFolding turkish("tr_TR");
    EXPECT_EQ(turkish.folded("DIŞ"), turkish.folded("dış"));
    EXPECT_NE(turkish.folded("DIŞ"), turkish.folded("diş"));
    EXPECT_EQ(turkish.folded("İNCE"), turkish.folded("ince"));
    EXPECT_EQ(turkish.folded("I"), CaseFolding("az").folded("I"));
    const CaseFolding english("en_US");
    EXPECT_EQ(english.folded("DIŞ"), english.folded("diş"));
}

} // namespace
} // namespace quillmark
