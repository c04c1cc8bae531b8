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

/// A book with one note; an empty name of a copy for none.
NotesBook bookWithCopy(const std::string& text, const std::string& copy)
{
    NotesBook book;
    LicenseNote note = noteWithText(text);
    if (!copy.empty()) {
        note.attachment = copy;
        note.attachmentName = copy + " where it was picked";
    }
    book.set(std::move(note), "Garamond");
    return book;
}

TEST(NotesBook, TakesAnAttachmentOverIntoANoteOfWhichTheRestStaysOurs)
{
    for (const std::string later : {"second", ""}) {
        NotesBook ours = bookWithCopy("ours", "first");
        ours.takeOver(bookWithCopy("1", "first"), bookWithCopy("theirs", later));
        EXPECT_EQ(ours, bookWithCopy("ours", later));
    }
    NotesBook ours = bookWithCopy("ours", "first");
    ours.takeOver(bookWithCopy("1", "first"), NotesBook());
    EXPECT_EQ(ours, bookWithCopy("ours", ""));
    ours = bookWithCopy("ours", "");
    ours.takeOver(NotesBook(), bookWithCopy("theirs", "first"));
    EXPECT_EQ(ours, bookWithCopy("ours", "first"));
}

TEST(NotesBook, TakesAnotherNameOfAnAttachmentOver)
{
    NotesBook ours = bookWithCopy("ours", "copy");
    NotesBook theirs = bookWithCopy("1", "copy");
    theirs.notes.begin()->second.attachmentName = "picked again";
    ours.takeOver(bookWithCopy("1", "copy"), theirs);
    ASSERT_NE(ours.note("Garamond"), nullptr);
    EXPECT_EQ(ours.note("Garamond")->text, "ours");
    EXPECT_EQ(ours.note("Garamond")->attachment, "copy");
    EXPECT_EQ(ours.note("Garamond")->attachmentName, "picked again");
}

TEST(NotesBook, LeavesUnknownKeysOfOursThatOthersHaveNotChanged)
{
    const auto book = [](UnknownKeys keys) {
        NotesBook made;
        made.unknownKeys = std::move(keys);
        return made;
    };
    NotesBook ours = book({{"ours", "1"}, {"same", "3"}});
    ours.takeOver(book({{"same", "2"}, {"theirs", "1"}}), book({{"same", "2"}, {"theirs", "2"}}));
    EXPECT_EQ(ours, book({{"ours", "1"}, {"same", "3"}}));
}

TEST(NotesBook, TakesNoAttachmentOverWhereOursHasChanged)
{
    for (const std::string attached : {"ours", ""}) {
        NotesBook ours = bookWithCopy("1", attached);
        ours.takeOver(bookWithCopy("1", "first"), bookWithCopy("1", "theirs"));
        EXPECT_EQ(ours, bookWithCopy("1", attached));
    }
}

TEST(NotesBook, TakesNoAttachmentOverIntoANoteThatWasRemoved)
{
    NotesBook ours;
    ours.takeOver(bookWithCopy("1", "first"), bookWithCopy("1", "theirs"));
    EXPECT_EQ(ours, NotesBook());
}

TEST(NotesBook, KeepsNoNoteThatHadNothingButTheAttachmentThatIsGone)
{
    NotesBook ours = bookWithCopy("", "first");
    ours.takeOver(bookWithCopy("1", "first"), bookWithCopy("1", ""));
    EXPECT_TRUE(ours.notes.empty());
}

struct TakenOver {
    std::string name; // of the case
    std::optional<std::string> before, ours, theirs, expected;
};

class NotesBookTakesOver : public testing::TestWithParam<TakenOver> {};

TEST_P(NotesBookTakesOver, WhatOthersHaveChangedAndWeHaveNot)
{
    const auto book = [](const std::optional<std::string>& text) {
        NotesBook made{.notes = {{"Bodoni", noteWithText("the same everywhere")}}};
        if (text) {
            made.set(noteWithText(*text), "Garamond");
            made.unknownKeys["colour"] = '"' + *text + '"';
        }
        return made;
    };
    NotesBook ours = book(GetParam().ours);
    ours.takeOver(book(GetParam().before), book(GetParam().theirs));
    EXPECT_EQ(ours, book(GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(
    , NotesBookTakesOver,
    testing::Values(TakenOver{"nothing", "1", "1", "1", "1"},
                    TakenOver{"a new one", {}, {}, "theirs", "theirs"},
                    TakenOver{"another text", "1", "1", "theirs", "theirs"},
                    TakenOver{"a removal", "1", "1", {}, {}},
                    TakenOver{"but not over our text", "1", "ours", "theirs", "ours"},
                    TakenOver{"but not over our new one", {}, "ours", "theirs", "ours"},
                    TakenOver{"but not over our removal", "1", {}, "theirs", {}},
                    TakenOver{"but no removal of our text", "1", "ours", {}, "ours"},
                    TakenOver{"and leaves ours where they did nothing", "1", "ours", "1", "ours"}),
    [](const auto& tested) {
        std::string name = tested.param.name;
        for (char& character : name)
            if (character == ' ') character = '_';
        return name;
    });

} // namespace
} // namespace quillmark
