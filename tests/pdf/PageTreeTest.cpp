#include "pdf/PageTree.h"

#include "pdf/Limits.h"
#include "pdf/PDFDocument.h"
#include "support/PDFBytes.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace quillmark::PDF {
namespace {

using test::PDFBytes;

/// The names that the pages have as /N, in order.
std::string pageNames(const PDFBytes& pdf)
{
    const auto bytes = pdf.build();
    const auto opened = open(bytes);
    if (!std::holds_alternative<std::unique_ptr<Document>>(opened)) return "does not open";
    PageTree tree(*std::get<std::unique_ptr<Document>>(opened));
    std::string names;
    while (const auto page = tree.next())
        names += page->name("N").value_or("?") + " ";
    return names;
}

/// A catalog, and page tree objects from 2 on; object 2 is the root.
PDFBytes tree(const std::vector<std::string>& objects)
{
    PDFBytes pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>");
    for (const auto& object : objects)
        pdf.object(pdf.nextNumber(), "<<" + object + ">>");
    return pdf;
}

struct Tree {
    const char* name;
    std::vector<std::string> objects;
    std::string pages;

    friend std::ostream& operator<<(std::ostream& out, const Tree& row) { return out << row.name; }
};

class Trees : public testing::TestWithParam<Tree> {};

TEST_P(Trees, GiveTheirPagesFromLeftToRight)
{
    EXPECT_EQ(pageNames(tree(GetParam().objects)), GetParam().pages);
}

TEST(PageTree, EndsInListsThatNodesShareByTheThousand)
{
    constexpr std::size_t nodes = 1'000;
    std::string list = "[";
    for (std::size_t i = 0; i < Limits::treeEntries / nodes; ++i)
        list += "0 ";
    const auto found = [&](std::size_t count) {
        std::string kids = "3 0 R ";
        for (std::size_t i = 0; i < count; ++i)
            kids += std::to_string(10 + i) + " 0 R ";
        PDFBytes pdf = tree({"/Kids[" + kids + "4 0 R]", "/Type/Page/N/A", "/Type/Page/N/B"});
        pdf.object(5, list + "]");
        for (std::size_t i = 0; i < count; ++i)
            pdf.object(static_cast<int>(10 + i), "<</Kids 5 0 R>>");
        return pageNames(pdf);
    };
    EXPECT_EQ(found(nodes / 10), "A B ");
    EXPECT_EQ(found(nodes), "A ");
}

INSTANTIATE_TEST_SUITE_P(
    PageTree, Trees,
    testing::Values(
        Tree{"Nested",
             {"/Type/Pages/Kids[3 0 R 4 0 R 6 0 R]", "/Type/Page/N/A",
              "/Type/Pages/Kids[5 0 R 7 0 R]", "/Type/Page/N/B", "/Type/Page/N/D",
              "/Type/Page/N/C"},
             "A B C D "},
        Tree{"DirectKids", {"/Type/Pages/Kids[<</Type/Page/N/A>><</Kids[<</N/B>>]>>]"}, "A B "},
        Tree{
            "WrongCountDoesNotMatter", {"/Type/Pages/Count 9/Kids[3 0 R]", "/Type/Page/N/A"}, "A "},
        Tree{"NodeWithoutType", {"/Kids[3 0 R]", "/Kids[4 0 R]", "/Type/Page/N/A"}, "A "},
        Tree{"PageWithoutType", {"/Type/Pages/Kids[3 0 R]", "/N/A"}, "A "},
        Tree{
            "PageWithKidsIsAPage", {"/Type/Pages/Kids[3 0 R]", "/Type/Page/N/A/Kids[2 0 R]"}, "A "},
        Tree{"OtherTypeWithKidsIsANode",
             {"/Type/Pages/Kids[3 0 R]", "/Type/X/Kids[4 0 R]", "/Type/Page/N/A"},
             "A "},
        Tree{
            "OtherTypeWithoutKidsIsNothing", {"/Type/Pages/Kids[3 0 R]", "/Type/Template/N/A"}, ""},
        Tree{"NodeWithoutKidsIsNothing", {"/Type/Pages/Kids[3 0 R]", "/Type/Pages/N/A"}, ""},
        Tree{"KidsThatAreNoDictionaries",
             {"/Type/Pages/Kids[7 null 99 0 R(x)3 0 R[3 0 R]]", "/Type/Page/N/A"},
             "A "},
        Tree{"SinglePageAsRoot", {"/Type/Page/N/A"}, "A "}, Tree{"EmptyRoot", {""}, ""},
        Tree{"RootWithoutKids", {"/Type/Pages/Count 3"}, ""},
        Tree{"KidsOfAnotherType", {"/Type/Pages/Kids 3 0 R", "/Type/Page/N/A"}, ""},
        Tree{"PageListedTwiceComesTwice",
             {"/Type/Pages/Kids[3 0 R 3 0 R]", "/Type/Page/N/A"},
             "A A "},
        Tree{
            "NodeThatIsItsOwnKid", {"/Type/Pages/Kids[2 0 R 3 0 R 2 0 R]", "/Type/Page/N/A"}, "A "},
        Tree{"NodesThatAreOneAnothersKids",
             {"/Type/Pages/Kids[3 0 R]", "/Type/Pages/Kids[2 0 R 4 0 R]", "/Type/Page/N/A"},
             "A "},
        Tree{"SharedBranchComesOnce",
             {"/Type/Pages/Kids[3 0 R 3 0 R]", "/Type/Pages/Kids[4 0 R]", "/Type/Page/N/A"},
             "A "}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(PageTree, CatalogMayStandInTheTrailer)
{
    PDFBytes pdf;
    pdf.trailer("/Root<</Type/Catalog/Pages 2 0 R>>");
    pdf.object(2, "<</Type/Pages/Kids[3 0 R]>>").object(3, "<</Type/Page/N/A>>");
    EXPECT_EQ(pageNames(pdf), "A ");
}

TEST(PageTree, RootMayStandInTheCatalog)
{
    PDFBytes pdf;
    pdf.object(1, "<</Type/Catalog/Pages<</Type/Pages/Kids[3 0 R]>>>>");
    pdf.object(3, "<</Type/Page/N/A>>");
    EXPECT_EQ(pageNames(pdf), "A ");
}

TEST(PageTree, DocumentWithoutTreeHasNoPages)
{
    PDFBytes pdf;
    pdf.object(1, "<</Type/Catalog>>");
    EXPECT_EQ(pageNames(pdf), "");
}

/// A tree in which each node has two kids that are both the next node: 2 to the power of 60 ways
/// to the one page.
TEST(PageTree, BranchesSharedAtEveryLevelEnd)
{
    std::vector<std::string> objects;
    for (int i = 0; i < 60; ++i) {
        const std::string next = std::to_string(3 + i) + " 0 R ";
        objects.push_back(std::string("/Type/Pages/Kids[").append(next).append(next).append("]"));
    }
    objects.emplace_back("/Type/Page/N/A");
    EXPECT_EQ(pageNames(tree(objects)), "A A ");
}

TEST(PageTree, TreeAsDeepAsItHasNodesIsWalked)
{
    std::vector<std::string> objects;
    objects.reserve(100'001);
    for (int i = 0; i < 100'000; ++i)
        objects.push_back("/Kids[" + std::to_string(3 + i) + " 0 R]");
    objects.emplace_back("/Type/Page/N/A");
    PDFBytes pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>");
    int number = 2;
    for (const auto& object : objects)
        pdf.object(number++, "<<" + object + ">>");
    EXPECT_EQ(pageNames(pdf), "A ");
}

} // namespace
} // namespace quillmark::PDF
