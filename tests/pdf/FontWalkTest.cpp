#include "pdf/FontWalk.h"

#include "DocumentFixture.h"
#include "support/FontContainers.h"
#include "support/PDFBytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace quillmark::PDFFontScanner {
namespace {

using test::ascii;
using test::lines;
using test::namesAndPages;
using test::onePage;
using test::pages;
using test::PDFBytes;
using test::scanned;
using testing::UnorderedElementsAre;

/// A font that is not embedded.
std::string plainFont(const std::string& name)
{
    return "<</Type/Font/Subtype/Type1/BaseFont/" + name + ">>";
}

/// Resources with one font that is not embedded, and further entries.
std::string fontNamed(const std::string& name, const std::string& more = {})
{
    return "<</Font<</F " + plainFont(name) + ">>" + more + ">>";
}

std::string reference(int number)
{
    return std::to_string(number) + " 0 R";
}

TEST(FontWalk, DocumentWithoutPagesIsWalkedAndEmpty)
{
    const auto scan = scanned(pages({}));
    EXPECT_EQ(scan.pageCount, 0);
    EXPECT_TRUE(scan.fonts.empty());
}

TEST(FontWalk, PageWithoutResourcesHasItsParentsFonts)
{
    EXPECT_EQ(namesAndPages(scanned(pages({"", ""}, "/Resources" + fontNamed("Inherited")))),
              "Inherited [1-2]");
}

TEST(FontWalk, OwnResourcesHideTheParents)
{
    EXPECT_EQ(namesAndPages(scanned(pages({"/Resources" + fontNamed("Own"), ""},
                                          "/Resources" + fontNamed("Inherited")))),
              "Own [1], Inherited [2]");
}

TEST(FontWalk, ResourcesOfAnotherTypeAreNoResources)
{
    for (const char* resources : {"7", "null", "[]", "/Name", "99 0 R", "5 0 R"}) {
        auto pdf =
            pages({"/Resources " + std::string(resources)}, "/Resources" + fontNamed("Inherited"));
        pdf.stream(5, "/Font<</F " + plainFont("InAStream") + ">>");
        EXPECT_EQ(namesAndPages(scanned(pdf)), "Inherited [1]") << resources;
    }
}

/// A page below a chain of parents, of which only the last has resources; `examined` dictionaries
/// lie on the way, the page and the last parent included.
PDFBytes chain(int examined)
{
    PDFBytes pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>");
    pdf.object(2, "<</Type/Pages/Count 1/Kids[3 0 R]>>");
    for (int i = 0; i + 1 < examined; ++i) {
        const std::string type = i == 0 ? "/Type/Page" : "/Type/Pages";
        pdf.object(3 + i, "<<" + type + "/Parent " + reference(4 + i) + ">>");
    }
    pdf.object(2 + examined, "<</Resources" + fontNamed("Far") + ">>");
    return pdf;
}

TEST(FontWalk, ChainOfThirtyTwoDictionariesYieldsResources)
{
    EXPECT_EQ(namesAndPages(scanned(chain(32))), "Far [1]");
}

TEST(FontWalk, ChainOfThirtyThreeDictionariesYieldsNone)
{
    EXPECT_EQ(namesAndPages(scanned(chain(33))), "");
}

TEST(FontWalk, ParentsThatFormALoopEnd)
{
    EXPECT_EQ(namesAndPages(scanned(pages({""}, "/Parent 3 0 R"))), "");
}

TEST(FontWalk, PagesSharingResourcesShareTheirFontsButNotThoseOfNestedForms)
{
    auto pdf = pages({"/Resources 5 0 R", "/Resources 5 0 R"});
    pdf.object(5, fontNamed("Shared", "/XObject<</X 6 0 R>>"));
    pdf.stream(6, "/Subtype/Form/Resources" + fontNamed("InForm", "/XObject<</X 7 0 R>>"));
    pdf.stream(7, "/Subtype/Form/Resources" + fontNamed("InNestedForm"));
    EXPECT_EQ(namesAndPages(scanned(pdf)), "Shared [1-2], InForm [1], InNestedForm [1]");
}

TEST(FontWalk, ResourcesMetFirstThroughAFormStillCountForTheirPage)
{
    auto pdf = pages({"/Resources<</XObject<</X 6 0 R>>>>", "/Resources 5 0 R"});
    pdf.object(5, fontNamed("Shared"));
    pdf.stream(6, "/Subtype/Form/Resources 5 0 R");
    EXPECT_EQ(namesAndPages(scanned(pdf)), "Shared [1-2]");
}

TEST(FontWalk, FormsInASharedDictionaryCountForEachPageThatHasIt)
{
    // Two resource dictionaries, each new, share the dictionary of XObjects: the form's own fonts
    // are used on both pages, those nested in it only where they were first met.
    auto pdf = pages({"/Resources<</XObject 5 0 R>>", "/Resources<</XObject 5 0 R>>"});
    pdf.object(5, "<</X 6 0 R>>");
    pdf.stream(6, "/Subtype/Form/Resources" + fontNamed("InForm", "/XObject<</X 7 0 R>>"));
    pdf.stream(7, "/Subtype/Form/Resources" + fontNamed("InNestedForm"));
    EXPECT_EQ(namesAndPages(scanned(pdf)), "InForm [1-2], InNestedForm [1]");
}

TEST(FontWalk, FontDictionarySharedByNewResourcesCountsForEachPage)
{
    auto pdf = pages({"/Resources<</Font 6 0 R>>", "", "/Resources<</Font 6 0 R>>"});
    pdf.object(6, "<</F 7 0 R>>");
    pdf.object(7, plainFont("Shared"));
    EXPECT_EQ(namesAndPages(scanned(pdf)), "Shared [1 3]");
}

TEST(FontWalk, FormThatIncludesItselfIsWalkedOnce)
{
    auto pdf = onePage("<</XObject<</X 4 0 R>>>>");
    pdf.stream(4, "/Subtype/Form/Resources" + fontNamed("InForm", "/XObject<</X 4 0 R>>"));
    EXPECT_EQ(namesAndPages(scanned(pdf)), "InForm [1]");
}

TEST(FontWalk, FormsThatIncludeOneAnotherEnd)
{
    auto pdf = onePage("<</XObject<</X 4 0 R>>>>");
    pdf.stream(4, "/Subtype/Form/Resources" + fontNamed("One", "/XObject<</X 5 0 R>>"));
    pdf.stream(5, "/Subtype/Form/Resources" + fontNamed("Two", "/XObject<</X 4 0 R/Y 5 0 R>>"));
    EXPECT_EQ(namesAndPages(scanned(pdf)), "One [1], Two [1]");
}

TEST(FontWalk, FormsAreWalkedDepthFirstInTheOrderOfTheirNames)
{
    auto pdf = onePage("<</Font<</Z " + plainFont("First") + "/A " + plainFont("Zeroth") +
                       ">>/XObject<</B 5 0 R/A 4 0 R>>>>");
    pdf.stream(4, "/Subtype/Form/Resources" + fontNamed("A", "/XObject<</X 6 0 R>>"));
    pdf.stream(5, "/Subtype/Form/Resources" + fontNamed("B"));
    pdf.stream(6, "/Subtype/Form/Resources" + fontNamed("InA"));
    EXPECT_EQ(namesAndPages(scanned(pdf)), "Zeroth [1], First [1], A [1], InA [1], B [1]");
}

TEST(FontWalk, FormsLeadingBackToADictionaryBeingWalkedKeepTheOrderOfRecursion)
{
    // From the form One a new resource dictionary leads back to the XObjects that One is in. A
    // recursive walk finds Two there, before it comes to Last, which stands behind that entry.
    auto pdf = onePage("<</XObject 4 0 R>>");
    pdf.object(4, "<</A 5 0 R/B 6 0 R>>");
    pdf.stream(5, "/Subtype/Form/Resources" + fontNamed("One", "/XObject<</A 7 0 R/B 8 0 R>>"));
    pdf.stream(6, "/Subtype/Form/Resources" + fontNamed("Two"));
    pdf.stream(7, "/Subtype/Form/Resources" + fontNamed("Back", "/XObject 4 0 R"));
    pdf.stream(8, "/Subtype/Form/Resources" + fontNamed("Last"));
    EXPECT_EQ(namesAndPages(scanned(pdf)), "One [1], Back [1], Two [1], Last [1]");
}

TEST(FontWalk, DictionaryOfBothFontsAndFormsIsGoneThroughAsEach)
{
    auto pdf = onePage("<</Font 4 0 R/XObject 4 0 R>>", "/Annots[<</AP<</N 4 0 R>>>>]");
    pdf.object(4, "<</F " + plainFont("Font") + "/X 5 0 R/Y 6 0 R>>");
    pdf.stream(5, "/Subtype/Form/Resources" + fontNamed("InForm"));
    pdf.stream(6, "/Resources" + fontNamed("InState"));
    EXPECT_EQ(namesAndPages(scanned(pdf)), "Font [1], InForm [1], InState [1]");
}

TEST(FontWalk, ImagesAndFormsWithoutResourcesArePassedOver)
{
    auto pdf = onePage("<</XObject<</A 4 0 R/B 5 0 R/C 6 0 R/D 7/E 8 0 R/F 9 0 R>>>>");
    pdf.stream(4, "/Subtype/Image/Resources" + fontNamed("InImage"));
    pdf.stream(5, "/Subtype/Form");
    pdf.stream(6, "/Resources" + fontNamed("InUntyped"));
    pdf.object(8, "<</Subtype/Form/Resources" + fontNamed("InNoStream") + ">>");
    pdf.stream(9, "/Subtype/Form/Resources" + fontNamed("InForm"));
    EXPECT_EQ(namesAndPages(scanned(pdf)), "InForm [1]");
}

TEST(FontWalk, FontsOfPatternsGlyphsSoftMasksAndFormFieldsThemselvesDoNotCount)
{
    PDFBytes pdf;
    pdf.object(1,
               "<</Type/Catalog/Pages 2 0 R/AcroForm<</DR" + fontNamed("InFieldDefaults") + ">>>>");
    pdf.object(2, "<</Type/Pages/Kids[3 0 R]>>");
    pdf.object(3, "<</Type/Page/Resources 4 0 R/Annots[<</DR" + fontNamed("InField") +
                      "/Resources" + fontNamed("InAnnotation") + "/MK<</N 7 0 R>>>>]>>");
    pdf.object(4, "<</Font<</F<</Subtype/Type3/BaseFont/Drawn/Resources" + fontNamed("InGlyphs") +
                      ">>>>/Pattern<</P 5 0 R>>/ExtGState<</G<</SMask<</G 6 0 R>>/Font[8 0 R 9]"
                      ">>>>/XObject<<>>>>");
    pdf.stream(5, "/PatternType 1/Resources" + fontNamed("InPattern"));
    pdf.stream(6, "/Subtype/Form/Resources" + fontNamed("InSoftMask"));
    pdf.stream(7, "/Subtype/Form/Resources" + fontNamed("InIcon"));
    pdf.object(8, plainFont("InGraphicsState"));
    EXPECT_EQ(namesAndPages(scanned(pdf)), "Drawn [1]");
}

TEST(FontWalk, EntriesThatAreNoFontsArePassedOver)
{
    auto pdf = onePage("<</Font<</A 4 0 R/B 7/C[1]/D 5 0 R/E 6 0 R>>>>");
    pdf.object(4, plainFont("Font"));
    pdf.stream(5, "/Subtype/Type1/BaseFont/Stream");
    EXPECT_EQ(namesAndPages(scanned(pdf)), "Font [1]");
}

TEST(FontWalk, FontsOfTheNormalAppearanceCountForThePageOfTheAnnotation)
{
    auto pdf = pages({"", "/Annots[5 0 R]"});
    pdf.object(5, "<</Subtype/Widget/AP<</N 6 0 R/R 7 0 R/D 8 0 R>>>>");
    pdf.stream(6, "/Subtype/Form/Resources" + fontNamed("Normal"));
    pdf.stream(7, "/Subtype/Form/Resources" + fontNamed("Rollover"));
    pdf.stream(8, "/Subtype/Form/Resources" + fontNamed("Down"));
    EXPECT_EQ(namesAndPages(scanned(pdf)), "Normal [2]");
}

TEST(FontWalk, EveryAppearanceStateCounts)
{
    auto pdf = pages({"/Annots[4 0 R]"});
    pdf.object(4, "<</AP<</N<</Yes 6 0 R/No 5 0 R/Other 7>>>>>>");
    pdf.stream(5, "/Resources" + fontNamed("No"));
    pdf.stream(6, "/Resources" + fontNamed("Yes"));
    EXPECT_EQ(namesAndPages(scanned(pdf)), "No [1], Yes [1]");
}

TEST(FontWalk, AppearancesOfAnnotationsInObjectStreamsCountHoweverTheirKeyIsWritten)
{
    auto pdf = pages({"/Annots[5 0 R 6 0 R 7 0 R 8 0 R]"});
    pdf.crossReference(PDFBytes::CrossReference::stream);
    pdf.objectStream(9, {{5, "<</Subtype/Link>>"}, {6, "<</AP<</N 11 0 R>>>>"}});
    pdf.objectStream(10, {{7, "<</A#50<</N 12 0 R>>>>"}, {8, "<</Contents(#/AP)>>"}});
    pdf.stream(11, "/Resources" + fontNamed("Plain"));
    pdf.stream(12, "/Resources" + fontNamed("Escaped"));
    EXPECT_EQ(namesAndPages(scanned(pdf)), "Plain [1], Escaped [1]");
}

TEST(FontWalk, AppearanceNeedsNoSubtypeAndDoesNotInheritResources)
{
    auto pdf =
        pages({"/Annots[<</AP<</N 4 0 R>>>><</AP<</N 5 0 R>>>>]"}, "/Resources<</XObject<<>>>>");
    pdf.stream(4, "/Parent 6 0 R");
    pdf.stream(5, "/Resources" + fontNamed("Direct"));
    pdf.object(6, "<</Resources" + fontNamed("Inherited") + ">>");
    EXPECT_EQ(namesAndPages(scanned(pdf)), "Direct [1]");
}

TEST(FontWalk, AppearancesFormsAreFollowed)
{
    auto pdf = pages({"/Annots[<</AP<</N 4 0 R>>>>]"});
    pdf.stream(4, "/Resources" + fontNamed("Outer", "/XObject<</X 5 0 R>>"));
    pdf.stream(5, "/Subtype/Form/Resources" + fontNamed("Inner"));
    EXPECT_EQ(namesAndPages(scanned(pdf)), "Outer [1], Inner [1]");
}

TEST(FontWalk, AnnotationsThatAreNoneArePassedOver)
{
    auto pdf = pages(
        {"/Annots[7 null (x)<<>><</AP 5>><</AP<<>>>><</AP<</N 5>>>> 9 0 R<</AP<</N 4 0 R>>>>]",
         "/Annots 7"});
    pdf.stream(4, "/Resources" + fontNamed("Font"));
    EXPECT_EQ(namesAndPages(scanned(pdf)), "Font [1]");
}

TEST(FontWalk, AnnotationsSharedByPagesCountForEach)
{
    auto pdf = pages({"/Annots 6 0 R", "/Annots 6 0 R", "/Annots[7 0 R]"});
    pdf.object(6, "[7 0 R]");
    pdf.object(7, "<</AP<</N 8 0 R>>>>");
    pdf.object(8, "<</On 9 0 R>>");
    pdf.stream(9, "/Resources" + fontNamed("Shared", "/XObject<</X 10 0 R>>"));
    pdf.stream(10, "/Subtype/Form/Resources" + fontNamed("Nested"));
    EXPECT_EQ(namesAndPages(scanned(pdf)), "Shared [1-3], Nested [1]");
}

TEST(FontWalk, ResourcesComeBeforeAnnotations)
{
    auto pdf = pages({"/Annots[<</AP<</N 4 0 R>>>>]/Resources" + fontNamed("OnPage")});
    pdf.stream(4, "/Resources" + fontNamed("InAnnotation"));
    EXPECT_EQ(namesAndPages(scanned(pdf)), "OnPage [1], InAnnotation [1]");
}

TEST(FontWalk, PageListedTwiceIsTwoPages)
{
    PDFBytes pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>");
    pdf.object(2, "<</Type/Pages/Kids[3 0 R 4 0 R 3 0 R]>>");
    pdf.object(3, "<</Type/Page/Resources" + fontNamed("Twice") + ">>");
    pdf.object(4, "<</Type/Page/Resources" + fontNamed("Once") + ">>");
    const auto scan = scanned(pdf);
    EXPECT_EQ(scan.pageCount, 3);
    EXPECT_EQ(namesAndPages(scan), "Twice [1 3], Once [2]");
}

/// A font with a descriptor that has these entries.
PDFBytes described(const std::string& fontEntries, const std::string& descriptorEntries)
{
    auto pdf = onePage("<</Font<</F<<" + fontEntries + "/FontDescriptor 4 0 R>>>>>>");
    pdf.object(4, "<</Type/FontDescriptor" + descriptorEntries + ">>");
    pdf.stream(5, "/Filter/FlateDecode", test::deflated(ascii("the program")));
    pdf.stream(6, "/Subtype/OpenType", "an OpenType font");
    pdf.stream(7, "/Subtype/Type1C", "a CFF program");
    return pdf;
}

struct Program {
    const char* name;
    std::string font;
    std::string descriptor;
    std::string line;

    friend std::ostream& operator<<(std::ostream& out, const Program& row)
    {
        return out << row.name;
    }
};

class Programs : public testing::TestWithParam<Program> {};

TEST_P(Programs, AreToldByTheDescriptor)
{
    EXPECT_EQ(lines(scanned(described(GetParam().font, GetParam().descriptor))),
              GetParam().line + "\n");
}

INSTANTIATE_TEST_SUITE_P(
    FontWalk, Programs,
    testing::Values(
        Program{"TrueType", "/Subtype/TrueType/BaseFont/A", "/FontFile2 5 0 R",
                "A TrueType trueType [1] 11 bytes"},
        Program{"OpenType", "/Subtype/Type1/BaseFont/A", "/FontFile3 6 0 R",
                "A Type1 openType [1] 16 bytes"},
        Program{"CFF", "/Subtype/Type1/BaseFont/A", "/FontFile3 7 0 R", "A Type1 cff [1] 13 bytes"},
        Program{"CFFWithoutSubtype", "/Subtype/Type1/BaseFont/A", "/FontFile3 5 0 R",
                "A Type1 cff [1] 11 bytes"},
        Program{"Type1", "/Subtype/Type1/BaseFont/A", "/FontFile 5 0 R",
                "A Type1 type1 [1] 11 bytes"},
        Program{"TrueTypeBeforeTheOthers", "/Subtype/TrueType/BaseFont/A",
                "/FontFile 5 0 R/FontFile2 7 0 R/FontFile3 6 0 R",
                "A TrueType trueType [1] 13 bytes"},
        Program{"FontFile3BeforeFontFile", "/Subtype/Type1/BaseFont/A",
                "/FontFile 5 0 R/FontFile3 7 0 R", "A Type1 cff [1] 13 bytes"},
        Program{"NothingEmbedded", "/Subtype/TrueType/BaseFont/A", "",
                "A TrueType notEmbedded [1]"},
        Program{"FontFileThatIsNoStream", "/Subtype/TrueType/BaseFont/A", "/FontFile2 4 0 R",
                "A TrueType notEmbedded [1]"},
        Program{"MissingFontFile", "/Subtype/TrueType/BaseFont/A", "/FontFile2 99 0 R",
                "A TrueType notEmbedded [1]"},
        Program{"Type3WithDescriptor", "/Subtype/Type3/BaseFont/A", "/FontFile 5 0 R",
                "A Type3 type3 [1]"},
        Program{"Type3NamedByItsDescriptor", "/Subtype/Type3", "/FontName/B", "B Type3 type3 [1]"},
        Program{"SubtypeInOtherLetters", "/Subtype/type3/BaseFont/A", "/FontFile 5 0 R",
                "A type3 type1 [1] 11 bytes"},
        Program{"NoSubtype", "/BaseFont/A", "/FontFile 5 0 R", "A Unknown type1 [1] 11 bytes"},
        Program{"SubtypeThatIsNoName", "/Subtype(Type3)/BaseFont/A", "",
                "A Unknown notEmbedded [1]"},
        Program{"NameOfTheDescriptor", "/Subtype/Type1", "/FontName/ABCDEF+B",
                "B Type1 notEmbedded subset [1]"},
        Program{"BaseFontBeforeTheDescriptorsName", "/Subtype/Type1/BaseFont/A", "/FontName/B",
                "A Type1 notEmbedded [1]"},
        Program{"NoName", "/Subtype/Type1", "", "(unnamed font) Type1 notEmbedded [1]"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(FontWalk, FontWithoutNameAndDescriptorIsUnnamedAndNotEmbedded)
{
    EXPECT_EQ(lines(scanned(onePage("<</Font<</F<<>>>>>>"))),
              "(unnamed font) Unknown notEmbedded [1]\n");
}

/// A Type0 font with these entries; its descendant is object 4.
PDFBytes composite(const std::string& entries, const std::string& descendant)
{
    auto pdf = onePage("<</Font<</F<</Subtype/Type0/BaseFont/Whole" + entries + ">>>>>>");
    pdf.object(4, "<<" + descendant + ">>");
    pdf.object(5, "<</FontFile2 6 0 R/FontName/FromDescriptor>>");
    pdf.stream(6, "", "program");
    return pdf;
}

TEST(FontWalk, CompositeFontHasItsDescendantsTypeAndProgram)
{
    EXPECT_EQ(lines(scanned(composite("/DescendantFonts[4 0 R]",
                                      "/Subtype/CIDFontType2/FontDescriptor 5 0 R"))),
              "Whole Type0 / CIDFontType2 trueType [1] 7 bytes\n");
}

TEST(FontWalk, OnlyTheFirstOfSeveralDescendantsCounts)
{
    EXPECT_EQ(lines(scanned(composite("/DescendantFonts[4 0 R<</Subtype/CIDFontType2/"
                                      "FontDescriptor 5 0 R>>]",
                                      "/Subtype/CIDFontType0"))),
              "Whole Type0 / CIDFontType0 notEmbedded [1]\n");
    EXPECT_EQ(lines(scanned(composite("/DescendantFonts[null 4 0 R]",
                                      "/Subtype/CIDFontType2/FontDescriptor 5 0 R"))),
              "Whole Type0 notEmbedded [1]\n");
}

TEST(FontWalk, CompositeFontWithoutDescendantsAndDescriptorIsType0)
{
    EXPECT_EQ(lines(scanned(composite("", ""))), "Whole Type0 notEmbedded [1]\n");
}

TEST(FontWalk, CompositeFontWithoutDescendantsKeepsItsOwnDescriptor)
{
    const std::string line = "Whole Type0 trueType [1] 7 bytes\n";
    EXPECT_EQ(lines(scanned(composite("/FontDescriptor 5 0 R", ""))), line);
    EXPECT_EQ(lines(scanned(composite("/FontDescriptor 5 0 R/DescendantFonts[]", ""))), line);
    EXPECT_EQ(lines(scanned(composite("/FontDescriptor 5 0 R/DescendantFonts[7]", ""))), line);
    EXPECT_EQ(lines(scanned(composite("/FontDescriptor 5 0 R/DescendantFonts 4 0 R", ""))), line);
}

TEST(FontWalk, DescendantWithoutDescriptorHidesTheFontsOwn)
{
    EXPECT_EQ(lines(scanned(composite("/FontDescriptor 5 0 R/DescendantFonts[4 0 R]",
                                      "/Subtype/CIDFontType0"))),
              "Whole Type0 / CIDFontType0 notEmbedded [1]\n");
}

TEST(FontWalk, DescendantWithoutSubtypeShowsAsAQuestionMark)
{
    EXPECT_EQ(lines(scanned(composite("/DescendantFonts[4 0 R]", "/FontDescriptor 5 0 R"))),
              "Whole Type0 / ? trueType [1] 7 bytes\n");
}

TEST(FontWalk, OnlyCompositeFontsHaveDescendants)
{
    auto pdf = onePage("<</Font<</F<</Subtype/Type1/BaseFont/A/DescendantFonts[4 0 R]>>>>>>");
    pdf.object(4, "<</Subtype/CIDFontType2/FontDescriptor 5 0 R>>");
    pdf.object(5, "<</FontFile2 6 0 R>>");
    pdf.stream(6, "", "program");
    EXPECT_EQ(lines(scanned(pdf)), "A Type1 notEmbedded [1]\n");
}

TEST(FontWalk, CompositeFontWithoutNameHasTheDescendantsDescriptors)
{
    auto pdf = onePage("<</Font<</F<</Subtype/Type0/DescendantFonts[4 0 R]>>>>>>");
    pdf.object(4, "<</BaseFont/Descendant/FontDescriptor<</FontName/FromDescriptor>>>>");
    EXPECT_EQ(lines(scanned(pdf)), "FromDescriptor Type0 / ? notEmbedded [1]\n");
}

/// An embedded font with a program of its own.
std::string embedded(const std::string& name, int program)
{
    return "<</Subtype/Type1/BaseFont/" + name + "/FontDescriptor<</FontFile3 " +
           reference(program) + ">>>>";
}

std::string resourcesWith(const std::string& font)
{
    return "/Resources<</Font<</F " + font + ">>>>";
}

TEST(FontWalk, SubsetsOfOneFontMergeButAnUnembeddedOneStaysApart)
{
    auto pdf = pages({resourcesWith(embedded("ABCDEF+Helvetica", 10)),
                      resourcesWith(embedded("GHIJKL+Helvetica", 11)),
                      resourcesWith(plainFont("Helvetica"))});
    pdf.stream(10, "", "first").stream(11, "", "second one");
    const auto scan = scanned(pdf);
    EXPECT_EQ(lines(scan), "Helvetica Type1 cff subset [1-2] 5 bytes\n"
                           "Helvetica Type1 notEmbedded [3]\n");
    ASSERT_EQ(scan.fonts.size(), 2U);
    EXPECT_THAT(scan.fonts[0].pdfNames,
                UnorderedElementsAre("ABCDEF+Helvetica", "GHIJKL+Helvetica"));
    EXPECT_THAT(scan.fonts[1].pdfNames, UnorderedElementsAre("Helvetica"));
}

TEST(FontWalk, MergedFontIsASubsetIfOneOfItsNamesIs)
{
    auto pdf = pages({resourcesWith(plainFont("A")), resourcesWith(plainFont("ABCDEF+A"))});
    const auto scan = scanned(pdf);
    EXPECT_EQ(lines(scan), "A Type1 notEmbedded subset [1-2]\n");
    EXPECT_THAT(scan.fonts[0].pdfNames, UnorderedElementsAre("A", "ABCDEF+A"));
}

TEST(FontWalk, MergedFontKeepsTheTypeAndProgramOfTheFirst)
{
    auto pdf = pages({resourcesWith("<</Subtype/Type3/BaseFont/A>>"),
                      resourcesWith("<</Subtype/TrueType/BaseFont/A/FontDescriptor<</FontFile2 10 "
                                    "0 R>>>>")});
    pdf.stream(10, "", "program");
    EXPECT_EQ(lines(scanned(pdf)), "A Type3 type3 [1-2] 7 bytes\n");
}

TEST(FontWalk, MergedFontTakesTheFirstDataThatCanBeRead)
{
    auto pdf = pages({resourcesWith(embedded("A", 10)), resourcesWith(embedded("A", 11)),
                      resourcesWith(embedded("A", 12))});
    pdf.stream(10, "/Filter/DCTDecode", "a picture");
    pdf.stream(11, "", "second");
    pdf.stream(12, "", "the third");
    EXPECT_EQ(lines(scanned(pdf)), "A Type1 cff [1-3] 6 bytes\n");
}

TEST(FontWalk, NamesThatDifferInMoreThanThePrefixDoNotMerge)
{
    auto pdf = pages({resourcesWith(plainFont("A")), resourcesWith(plainFont("a")),
                      resourcesWith(plainFont("A|n"))});
    EXPECT_EQ(namesAndPages(scanned(pdf)), "A [1], a [2], A|n [3]");
}

TEST(FontWalk, FontsAreInTheOrderInWhichTheyAreFirstMet)
{
    auto pdf =
        pages({"/Resources<</Font<</F2 " + plainFont("B") + "/F1 " + plainFont("C") + ">>>>",
               "/Resources<</Font<</F2 " + plainFont("A") + "/F1 " + plainFont("B") + ">>>>"});
    EXPECT_EQ(namesAndPages(scanned(pdf)), "C [1], B [1-2], A [2]");
}

TEST(FontWalk, FontDictionaryReachedInTwoWaysIsOneFont)
{
    auto pdf = pages({"/Resources<</Font<</A 5 0 R/B 5 0 R>>>>", resourcesWith("5 0 R")});
    pdf.object(5, plainFont("Shared"));
    EXPECT_EQ(namesAndPages(scanned(pdf)), "Shared [1-2]");
}

TEST(FontWalk, NamesAreReadAsUtf8WithRepair)
{
    auto pdf = pages({resourcesWith(plainFont("Gr#C3#B6#20e")), resourcesWith(plainFont("A#FFB"))});
    EXPECT_EQ(namesAndPages(scanned(pdf)), "Gr\xC3\xB6 e [1], A\xEF\xBF\xBD"
                                           "B [2]");
}

TEST(FontWalk, PrefixOfCapitalsOutsideASCIIIsAPrefix)
{
    // Six Greek capitals; five capitals and a small letter; an E with its accent as one character.
    auto pdf =
        pages({resourcesWith(plainFont("\xCE\x91\xCE\x92\xCE\x93\xCE\x94\xCE\x95\xCE\x96+A")),
               resourcesWith(plainFont("\xCE\x91\xCE\x92\xCE\x93\xCE\x94\xCE\x95\xCE\xB6+B")),
               resourcesWith(plainFont("#C3#89BCDEF+C")),
               resourcesWith(plainFont("E#CC#81"
                                       "BCDEF+D"))});
    const auto scan = scanned(pdf);
    EXPECT_EQ(lines(scan),
              "A Type1 notEmbedded subset [1]\n"
              "\xCE\x91\xCE\x92\xCE\x93\xCE\x94\xCE\x95\xCE\xB6+B Type1 notEmbedded [2]\n"
              "C Type1 notEmbedded subset [3]\n"
              "D Type1 notEmbedded subset [4]\n");
}

TEST(FontWalk, RepairedPrefixIsNone)
{
    EXPECT_EQ(namesAndPages(scanned(onePage(fontNamed("#FFBCDEF+A")))), "\xEF\xBF\xBD"
                                                                        "BCDEF+A [1]");
}

} // namespace
} // namespace quillmark::PDFFontScanner
