// Why a PDF could not be checked.
#pragma once

#include <string>

namespace quillmark {

struct PDFCheckError {
    enum class Kind {
        unreadable, // not a PDF, or too damaged to open
        locked,     // needs a password
    };
    Kind kind{};
    std::string fileName;

    /// The sentence for the user, with the file's name.
    [[nodiscard]] std::string message() const;
    bool operator==(const PDFCheckError&) const = default;
};

} // namespace quillmark
