#include "fontfile/FontFacts.h"

#include "support/FontBytes.h"

#include <gtest/gtest.h>

namespace quillmark {
namespace {

using test::FontBytes;

TEST(FontFacts, ReadOfACollectionGivesOneRecordPerFaceInOrder)
{
    const auto font = FontBytes()
                          .face()
                          .name(6, u"Foo-Regular")
                          .name(1, u"Foo")
                          .os2({.version = 3, .fsType = 8, .vendorID = "AB  "})
                          .face("OTTO")
                          .name(4, u"Foo Bold")
                          .build();
    const auto facts = FontFacts::read(font, "/fonts/foo.ttc", FontOrigin::folder);
    ASSERT_EQ(facts.size(), 2U);
    EXPECT_EQ(facts[0].postScriptName, "Foo-Regular");
    EXPECT_EQ(facts[0].family, "Foo");
    EXPECT_EQ(facts[0].format, "TrueType");
    EXPECT_EQ(facts[0].filePath, "/fonts/foo.ttc");
    EXPECT_EQ(facts[0].origin, FontOrigin::folder);
    EXPECT_EQ(facts[0].os2, (OS2Info{3, 8, "AB"}));
    EXPECT_EQ(facts[1].postScriptName, "FooBold");
    EXPECT_EQ(facts[1].family, "Unnamed font");
    EXPECT_EQ(facts[1].format, "OpenType (CFF)");
    EXPECT_EQ(facts[1].os2, std::nullopt);
}

} // namespace
} // namespace quillmark
