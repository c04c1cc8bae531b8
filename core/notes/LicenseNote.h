// What the user knows about the licence of one font, which no font file can say.
#pragma once

#include "notes/HeldLicense.h"

#include <chrono>
#include <map>
#include <optional>
#include <string>

namespace quillmark {

/// Members of a JSON object that this version does not know: each key with its value as JSON text.
/// They are carried along, so that a newer version finds them again.
using UnknownKeys = std::map<std::string, std::string, std::less<>>;

struct LicenseNote {
    std::string boughtFrom{}; // shop, foundry or web site; empty when not given
    HeldLicense license{HeldLicense::notSet};
    std::string url{};                       // of the licence or the receipt; empty when not given
    std::optional<std::string> attachment{}; // file name of the kept copy, never a path
    std::optional<std::string> attachmentName{}; // the file's name where the user picked it
    std::string text{};                          // free notes
    std::chrono::sys_seconds updated{};          // when the note was last saved
    UnknownKeys unknownKeys{};

    /// Whether the note says nothing. The attached file's former name and the time of the last save
    /// say nothing by themselves.
    [[nodiscard]] bool isEmpty() const;

    bool operator==(const LicenseNote&) const = default;
};

} // namespace quillmark
