#include "pdf/PDFCheckError.h"

namespace quillmark {

std::string PDFCheckError::message() const
{
    switch (kind) {
    case Kind::unreadable:
        return fileName + " couldn't be opened as a PDF.";
    case Kind::locked:
        return fileName + " is password-protected. Open it in Preview, remove the password, and "
                          "check the copy.";
    }
    return {};
}

} // namespace quillmark
