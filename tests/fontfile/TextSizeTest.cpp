#include "fontfile/TextSize.h"

#include <gtest/gtest.h>

namespace quillmark {
namespace {

TEST(TextSize, AddsEveryTextOfTheFacts)
{
    // Each text is twice as long as the one before it, so that every one shows in the sum.
    FontFacts facts;
    std::size_t length = 1;
    const auto next = [&length] {
        const std::string text(length, 'x');
        length *= 2;
        return text;
    };
    facts.postScriptName = next();
    facts.family = next();
    facts.style = next();
    for (auto* text : {&facts.fullName, &facts.copyright, &facts.trademark, &facts.manufacturer,
                       &facts.designer, &facts.vendorURL, &facts.licenseDescription,
                       &facts.licenseURL, &facts.licenseFile, &facts.filePath, &facts.format})
        *text = next();
    EXPECT_EQ(textSize(facts), 0x3FFFU);
}

TEST(TextSize, AddsEveryTextOfABareProgram)
{
    EXPECT_EQ(textSize(BareFontInfo{"x", "xx", "xxxx", "xxxxxxxx", "xxxxxxxxxxxxxxxx"}), 31U);
}

TEST(TextSize, AbsentTextsTakeNothing)
{
    EXPECT_EQ(textSize(FontFacts{}), 0U);
    EXPECT_EQ(textSize(BareFontInfo{}), 0U);
}

} // namespace
} // namespace quillmark
