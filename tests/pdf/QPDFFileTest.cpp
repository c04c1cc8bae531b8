#include "pdf/QPDFFile.h"

#include "pdf/Limits.h"
#include "support/FontBytes.h"
#include "support/PDFBytes.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace quillmark::PDF {
namespace {

using test::ascii;

TEST(QPDFFile, FindsEachObjectOfItsTableAndNoOther)
{
    const test::Bytes pdf = test::onePage("<<>>").object(9, "1").build();
    QPDFFile file;
    ASSERT_EQ(file.open(memorySource(pdf)), std::nullopt);
    const std::string_view text = test::asText(pdf);
    for (const auto& [number, header] :
         {std::pair(1U, "1 0 obj"), {3U, "3 0 obj"}, {9U, "9 0 obj"}}) {
        const auto location = file.find({number, 0});
        ASSERT_TRUE(location) << number;
        EXPECT_EQ(location->kind, Location::Kind::inFile);
        EXPECT_EQ(location->value, text.find(header));
    }
    for (const Reference& missing :
         {Reference{0, 0}, Reference{1, 1}, Reference{4, 0}, Reference{8, 0}, Reference{10, 0}})
        EXPECT_FALSE(file.find(missing)) << missing.number;
}

TEST(QPDFFile, EntriesThatLeadNowhereAreNone)
{
    std::string text = "%PDF-1.7\n";
    std::string entries;
    const auto entry = [&entries](unsigned kind, std::size_t place) {
        for (const std::size_t byte : {std::size_t{kind}, place >> 8U, place, std::size_t{0}})
            entries += static_cast<char>(byte & 0xFFU);
    };
    entry(1, 9); // there is no object 0
    for (const char* object : {"1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj\n",
                               "2 0 obj<</Type/Pages/Kids[]>>endobj\n"}) {
        entry(1, text.size());
        text += object;
    }
    entry(1, 0); // where the header is
    entry(2, 0); // in the stream of no object
    const std::size_t start = text.size();
    text += "5 0 obj<</Type/XRef/Root 1 0 R/W[1 2 1]/Size 5/Length " +
            std::to_string(entries.size()) + ">>stream\n" + entries +
            "\nendstream endobj\nstartxref\n" + std::to_string(start) + "\n%%EOF\n";
    const test::Bytes pdf = ascii(text);
    QPDFFile file;
    ASSERT_EQ(file.open(memorySource(pdf)), std::nullopt);
    EXPECT_TRUE(file.find({1, 0}));
    EXPECT_TRUE(file.find({2, 0}));
    for (const std::uint32_t number : {0U, 3U, 4U})
        EXPECT_FALSE(file.find({number, 0})) << number;
}

TEST(QPDFFile, IsSearchedForLostObjectsOnlySoOften)
{
    const test::Bytes pdf = test::onePage("<<>>").build();
    QPDFFile file;
    ASSERT_EQ(file.open(memorySource(pdf)), std::nullopt);
    for (int i = 0; i < Limits::repairs; ++i)
        EXPECT_TRUE(file.repair({3, 0})) << i;
    EXPECT_FALSE(file.repair({3, 0}));
    EXPECT_TRUE(file.find({3, 0}));
}

} // namespace
} // namespace quillmark::PDF
