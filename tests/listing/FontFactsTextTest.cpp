#include "listing/FontFactsText.h"

#include <gmock/gmock.h>

namespace quillmark {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

FontFacts talkativeFont()
{
    return {.postScriptName = "Acme-Bold",
            .family = "Acme",
            .style = "Bold",
            .fullName = "Acme Bold",
            .copyright = "(c) Acme",
            .trademark = "Acme is one",
            .manufacturer = "Acme Type",
            .designer = "Ann Acme",
            .vendorURL = "https://acme.example",
            .licenseDescription = "Ask us.",
            .licenseURL = "https://acme.example/license",
            .licenseFile = "/fonts/acme/LICENSE.txt",
            .os2 = OS2Info{.version = 4, .fsType = 0x0104, .vendorID = "ACME"},
            .filePath = "/fonts/acme/acme.ttf",
            .format = "TrueType"};
}

TEST(FontFactsText, SaysAllThatAFontSaysInOrder)
{
    EXPECT_THAT(
        factsOfFont(talkativeFont()),
        ElementsAre(
            Fact{"Family", "Acme"}, Fact{"Copyright", "(c) Acme"}, Fact{"Trademark", "Acme is one"},
            Fact{"Maker", "Acme Type"}, Fact{"Designer", "Ann Acme"}, Fact{"License", "Ask us."},
            Fact{"License file", "LICENSE.txt"},
            Fact{"License URL", "https://acme.example/license", "https://acme.example/license"},
            Fact{"Embedding bits", "Preview & print, no subsetting (fsType 0x0104)"},
            Fact{"Vendor ID", "ACME"}, Fact{"Format", "TrueType"}));
}

TEST(FontFactsText, LeavesOutWhatAFontDoesNotSayButItsEmbeddingBits)
{
    EXPECT_THAT(factsOfFont({}), ElementsAre(Fact{"Embedding bits", "None (no OS/2 table)"}));
}

TEST(FontFactsText, HasALinkOnlyForAnAddressThatBeginsLikeOne)
{
    FontFacts facts;
    facts.licenseURL = "www.acme.example/license";
    EXPECT_EQ(factsOfFont(facts).front(), (Fact{"License URL", "www.acme.example/license"}));
    facts.licenseURL = "http://";
    EXPECT_EQ(factsOfFont(facts).front(), (Fact{"License URL", "http://"}));
}

TEST(FontFactsText, SaysHowADocumentUsesAFont)
{
    PDFFontInfo info{.pdfNames = {"ABCDEF+Acme", "Acme"},
                     .subtype = "Type0 / CIDFontType2",
                     .program = EmbeddedProgram::trueType,
                     .subset = true,
                     .pages = {1, 2, 3, 7},
                     .matchedPath = "/fonts/acme.ttf",
                     .matchedByFamily = true};
    EXPECT_THAT(factsOfUse(info), ElementsAre(Fact{"Name in PDF", "ABCDEF+Acme, Acme"},
                                              Fact{"Font type", "Type0 / CIDFontType2"},
                                              Fact{"Embedded", "Embedded (TrueType), subset"},
                                              Fact{"Pages", "1-3, 7"},
                                              Fact{"Matched to", "/fonts/acme.ttf (by family)"}));
    info.matchedByFamily = false;
    EXPECT_EQ(factsOfUse(info).back(), (Fact{"Matched to", "/fonts/acme.ttf"}));
}

TEST(FontFactsText, SaysThatNoFontWasMatched)
{
    EXPECT_EQ(factsOfUse({}).back(),
              (Fact{"Matched to", "No installed or scanned font with this name"}));
}

} // namespace
} // namespace quillmark
