// The notes as JSON text (RFC 8259, UTF-8), as docs/notes.md describes it.
#pragma once

#include "notes/NotesBook.h"

#include <string>
#include <string_view>
#include <variant>

namespace quillmark::NotesJson {

struct Decoded {
    NotesBook book{};
    /// Whether that is all that the text says, so that nothing of it is lost with it.
    bool isWhole{true};

    bool operator==(const Decoded&) const = default;
};

/// Why a text holds no notes: the end of a sentence, such as "it is not JSON".
struct Damage {
    std::string reason;
    bool operator==(const Damage&) const = default;
};

/// Indented by two spaces, keys in the order of their bytes, one line end behind it all: the same
/// book always gives the same bytes.
[[nodiscard]] std::string encode(const NotesBook& book);

/// The book that `text` holds. One note that cannot be read is damage to the whole. Ill-formed
/// UTF-8 becomes U+FFFD, of a key that is there twice the last one counts, and a number that is not
/// ours has the digits that a double-precision one has: then the book is not whole.
[[nodiscard]] std::variant<Decoded, Damage> decode(std::string_view text);

} // namespace quillmark::NotesJson
