#include "library/FontIndex.h"

#include "Fonts.h"
#include "support/FakeFontService.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quillmark {
namespace {

using test::FakeFontService;
using test::platformFont;

FontFacts font(std::string postScriptName, std::string family, FontOrigin origin,
               std::string style = "Regular")
{
    FontFacts facts;
    facts.postScriptName = std::move(postScriptName);
    facts.family = std::move(family);
    facts.style = std::move(style);
    facts.origin = origin;
    return facts;
}

FontIndex indexOf(const std::vector<FontFacts>& fonts)
{
    return {fonts, false};
}

const FakeFontService noService;

TEST(FontIndex, AnEmptyIndexMatchesNothing)
{
    const FontIndex index = indexOf({});
    for (const char* name : {"", "-", "--", "Foo", "Foo-Bold", "-Bold"})
        EXPECT_EQ(index.lookup(name, noService), std::nullopt) << name;
}

TEST(FontIndex, AnExactNameReturnsTheFactsUnchanged)
{
    const FontFacts foo = font("Foo-Bold", "Foo", FontOrigin::folder, "Heavy");
    EXPECT_EQ(indexOf({foo}).lookup("Foo-Bold", noService), foo);
}

TEST(FontIndex, ALaterFontOfTheSameNameReplacesAnEarlierOne)
{
    const FontFacts folder = font("Foo", "Folder", FontOrigin::folder);
    const FontFacts installed = font("Foo", "Installed", FontOrigin::installed);
    EXPECT_EQ(indexOf({folder, installed}).lookup("Foo", noService), installed);
    EXPECT_EQ(indexOf({installed, folder}).lookup("Foo", noService), folder);
}

TEST(FontIndex, OfTwoScannedFontsTheLaterOwnsTheFamily)
{
    const FontFacts first = font("A", "Foo", FontOrigin::folder);
    const FontFacts second = font("B", "foo", FontOrigin::folder);
    EXPECT_EQ(indexOf({first, second}).byFamily.at("foo"), second);
}

TEST(FontIndex, AnInstalledFontDoesNotTakeTheFamilyBack)
{
    const FontFacts first = font("A", "Foo", FontOrigin::folder);
    const FontFacts second = font("B", "Foo", FontOrigin::folder);
    const FontFacts installed = font("C", "Foo", FontOrigin::installed);
    EXPECT_EQ(indexOf({first, second, installed}).byFamily.at("foo"), second);
}

TEST(FontIndex, TheFirstInstalledFontKeepsTheFamilyAgainstOtherInstalledOnes)
{
    const FontFacts first = font("A", "Foo", FontOrigin::installed);
    const FontFacts second = font("B", "Foo", FontOrigin::installed);
    EXPECT_EQ(indexOf({first, second}).byFamily.at("foo"), first);
}

TEST(FontIndex, AScannedFontTakesTheFamilyFromAnInstalledOne)
{
    const FontFacts installed = font("A", "Foo", FontOrigin::installed);
    const FontFacts scanned = font("B", "Foo", FontOrigin::folder);
    EXPECT_EQ(indexOf({installed, scanned}).byFamily.at("foo"), scanned);
}

TEST(FontIndex, ADocumentFontTakesTheFamilyLikeAScannedOne)
{
    const FontFacts installed = font("A", "Foo", FontOrigin::installed);
    const FontFacts document = font("B", "Foo", FontOrigin::document);
    EXPECT_EQ(indexOf({installed, document}).byFamily.at("foo"), document);
}

TEST(FontIndex, NamesDifferingInCaseMatchOnlyByFamily)
{
    const FontFacts lower = font("helvetica", "Helvetica", FontOrigin::installed, "Roman");
    const auto found = indexOf({lower}).lookup("Helvetica", noService);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->postScriptName, "helvetica"); // which tells a family match from a name match
    EXPECT_EQ(found->style, "");
}

TEST(FontIndex, AFamilyMatchHasTheStyleOfTheName)
{
    const auto found = indexOf({font("GaramondPro", "Garamond", FontOrigin::installed)})
                           .lookup("Garamond-BoldItalic", noService);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->postScriptName, "GaramondPro");
    EXPECT_EQ(found->style, "BoldItalic");
}

TEST(FontIndex, PartOfAFamilyDoesNotMatch)
{
    EXPECT_EQ(indexOf({font("GaramondPremier", "Garamond Premier", FontOrigin::installed)})
                  .lookup("Garamond-BoldItalic", noService),
              std::nullopt);
}

struct NameCase {
    const char* name;
    const char* family;
    const char* style;
};

TEST(FontIndex, TheFamilyPartEndsAtTheFirstHyphenAndTheStyleIsWhatFollows)
{
    const std::vector<NameCase> cases{
        {"Foo", "Foo", ""},
        {"Foo-", "Foo", ""},
        {"Foo-Bold-Italic", "Foo", "Bold-Italic"},
        {"Foo--Bold", "Foo", "-Bold"},
        {"-Bold", "Bold", ""},
        {"-Bold-X", "Bold", "-X"},
        {"--Foo-Bold", "Foo", "o-Bold"},
        {"F\u00F6\u00F6-Fett", "F\u00F6\u00F6", "Fett"},
        {"-\u00D6l-Alt", "\u00D6l", "-Alt"},
        {"Times_New_Roman-Bold", "Times New Roman", "Bold"},
        {"TIMESNEWROMAN,Bold", "Times New Roman Bold", ""},
        {"--", "!?", ""}, // only hyphens: the name itself, whose key is empty
    };
    for (const NameCase& next : cases) {
        const auto found = indexOf({font("Indexed", next.family, FontOrigin::folder)})
                               .lookup(next.name, noService);
        ASSERT_TRUE(found) << next.name;
        EXPECT_EQ(found->style, next.style) << next.name;
    }
}

TEST(FontIndex, ANameWithALeadingHyphenHasNoStyle)
{
    const auto found =
        indexOf({font("BoldPS", "Bold", FontOrigin::folder, "Black")}).lookup("-Bold", noService);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->postScriptName, "BoldPS");
    EXPECT_EQ(found->style, "");
}

TEST(FontIndex, TheServiceIsAskedBeforeTheFamilyTable)
{
    FakeFontService service;
    service.installed = {{"Foo-Bold", platformFont("Foo-Bold", {{0, u"from the service"}})}};
    const std::vector fonts{font("Foo", "Foo", FontOrigin::folder)};
    const auto found = FontIndex(fonts, true).lookup("Foo-Bold", service);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->copyright, "from the service");
    EXPECT_EQ(found->origin, FontOrigin::installed);
}

TEST(FontIndex, TheIndexedNameComesBeforeTheService)
{
    FakeFontService service;
    service.installed = {{"Foo", platformFont("Foo", {{0, u"from the service"}})}};
    const std::vector fonts{font("Foo", "Foo", FontOrigin::folder)};
    EXPECT_EQ(FontIndex(fonts, true).lookup("Foo", service), fonts[0]);
}

TEST(FontIndex, TheServiceIsNotAskedUnlessToldSo)
{
    FakeFontService service;
    service.installed = {{"Foo", platformFont("Foo")}};
    EXPECT_EQ(indexOf({}).lookup("Foo", service), std::nullopt);
}

TEST(FontIndex, WhereTheServiceHasNothingTheFamilyTableIsUsed)
{
    const std::vector fonts{font("FooPS", "Foo", FontOrigin::folder)};
    const auto found = FontIndex(fonts, true).lookup("Foo-Bold", noService);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->postScriptName, "FooPS");
    EXPECT_EQ(found->style, "Bold");
}

TEST(FontIndex, NamedInstancesAreFoundByNameOnly)
{
    const std::vector<FontFacts> fonts{font("Var", "Var", FontOrigin::folder)};
    const std::vector instances{font("Var-Bold", "Only Instance", FontOrigin::folder, "Bold")};
    const FontIndex index(fonts, false, instances);
    EXPECT_EQ(index.lookup("Var-Bold", noService), instances[0]);
    EXPECT_EQ(index.lookup("OnlyInstance", noService), std::nullopt);
}

TEST(FontIndex, ANamedInstanceTakesNoOtherFontsPlace)
{
    const std::vector fonts{font("Var-Bold", "Var", FontOrigin::installed, "Bold")};
    const std::vector instances{font("Var-Bold", "Instance", FontOrigin::folder),
                                font("Var-Thin", "First", FontOrigin::folder),
                                font("Var-Thin", "Second", FontOrigin::folder)};
    const FontIndex index(fonts, false, instances);
    EXPECT_EQ(index.lookup("Var-Bold", noService), fonts[0]);
    EXPECT_EQ(index.lookup("Var-Thin", noService), instances[1]);
}

} // namespace
} // namespace quillmark
