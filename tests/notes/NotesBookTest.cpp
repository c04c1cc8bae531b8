#include "notes/NotesBook.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>

namespace quillmark {
namespace {

LicenseNote noteWithText(std::string text)
{
    return {.text = std::move(text)};
}

TEST(NotesBook, HasNoNoteUnderAnUnknownKey)
{
    EXPECT_EQ(NotesBook{}.note("Garamond-Bold"), nullptr);
}

TEST(NotesBook, GivesBackTheNoteKeptUnderAKey)
{
    NotesBook book;
    book.set(noteWithText("one"), "Garamond-Bold");
    ASSERT_NE(book.note("Garamond-Bold"), nullptr);
    EXPECT_EQ(*book.note("Garamond-Bold"), noteWithText("one"));
}

TEST(NotesBook, ComparesKeysExactly)
{
    NotesBook book;
    book.set(noteWithText("one"), "Garamond-Bold");
    EXPECT_EQ(book.note("garamond-bold"), nullptr);
    EXPECT_EQ(book.note("Garamond-Bold "), nullptr);
}

TEST(NotesBook, KeepsTheLaterOfTwoNotesUnderOneKey)
{
    NotesBook book;
    book.set(noteWithText("one"), "Garamond");
    book.set(noteWithText("two"), "Garamond");
    EXPECT_EQ(book.note("Garamond")->text, "two");
    EXPECT_EQ(book.notes.size(), 1U);
}

TEST(NotesBook, RemovesTheKeyWhenEveryFieldIsCleared)
{
    NotesBook book;
    book.set(noteWithText("one"), "Garamond");
    book.set(LicenseNote{}, "Garamond");
    EXPECT_TRUE(book.notes.empty());
}

TEST(NotesBook, RemovesTheKeyWhenThereIsNoNote)
{
    NotesBook book;
    book.set(noteWithText("one"), "Garamond");
    book.set(std::nullopt, "Garamond");
    EXPECT_TRUE(book.notes.empty());
}

TEST(NotesBook, RemovesANoteWithOnlyTheFormerNameOfAnAttachment)
{
    NotesBook book;
    book.set(noteWithText("one"), "Garamond");
    book.set(LicenseNote{.attachmentName = "receipt.pdf"}, "Garamond");
    EXPECT_TRUE(book.notes.empty());
}

TEST(NotesBook, IgnoresTheRemovalOfWhatIsNotThere)
{
    NotesBook book;
    book.set(noteWithText("one"), "Garamond");
    book.set(std::nullopt, "Bodoni");
    EXPECT_EQ(book.notes.size(), 1U);
}

TEST(NotesBook, TakesUnknownKeysOverFromTheFormerNote)
{
    NotesBook book;
    book.set(LicenseNote{.text = "one", .unknownKeys = {{"seats", "2"}, {"tags", "[]"}}},
             "Garamond");
    book.set(LicenseNote{.text = "two", .unknownKeys = {{"seats", "3"}}}, "Garamond");
    EXPECT_EQ(*book.note("Garamond"),
              (LicenseNote{.text = "two", .unknownKeys = {{"seats", "3"}, {"tags", "[]"}}}));
}

} // namespace
} // namespace quillmark
