#include "text/Case.h"
#include "text/Characters.h"
#include "text/Collation.h"
#include "text/FamilyKey.h"
#include "text/Printable.h"
#include "text/Trim.h"

#include <gtest/gtest.h>

namespace quillmark {
namespace {

TEST(Text, EveryFunctionWorksOnTextBeyondAscii)
{
    EXPECT_EQ(lowercased("ÀB"), "àb");
    EXPECT_TRUE(containsIgnoringCase("Straße", "STRASSE"));
    EXPECT_EQ(familyKey("Times-New Römisch"), "timesnewrömisch");
    EXPECT_EQ(printable("a\x1b[1m\u202E"), "a\uFFFD[1m\uFFFD");
    EXPECT_EQ(trimmed("\u3000 x\u0085\n"), "x");
    EXPECT_EQ(userCharacters("ae\u0301b", 5).size(), 3U);
    EXPECT_LT(Collator("en").compare("Font 2", "Font 10"), 0);
}

} // namespace
} // namespace quillmark
