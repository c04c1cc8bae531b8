#include "pdf/PDFCheckError.h"

#include <gtest/gtest.h>

namespace quillmark {
namespace {

using Kind = PDFCheckError::Kind;

TEST(PDFCheckError, AnUnreadableFileCouldNotBeOpened)
{
    const PDFCheckError error{Kind::unreadable, "book.pdf"};
    EXPECT_EQ(error.message(), "book.pdf couldn't be opened as a PDF.");
}

TEST(PDFCheckError, ALockedFileIsPasswordProtected)
{
    const PDFCheckError error{Kind::locked, "Größe 2.pdf"};
    EXPECT_EQ(error.message(), "Größe 2.pdf is password-protected. Open it in Preview, remove the "
                               "password, and check the copy.");
}

TEST(PDFCheckError, EqualsAnotherOfTheSameKindAndFile)
{
    EXPECT_EQ((PDFCheckError{Kind::locked, "a.pdf"}), (PDFCheckError{Kind::locked, "a.pdf"}));
    EXPECT_NE((PDFCheckError{Kind::locked, "a.pdf"}), (PDFCheckError{Kind::unreadable, "a.pdf"}));
    EXPECT_NE((PDFCheckError{Kind::locked, "a.pdf"}), (PDFCheckError{Kind::locked, "b.pdf"}));
}

} // namespace
} // namespace quillmark
