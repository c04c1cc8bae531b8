// The copies of licences and receipts that are kept with the notes. A note holds a copy's name,
// which may have been written by anybody: only a name without folders is taken, and nothing outside
// the folder is ever opened, replaced or removed. The folder itself may not be a link.
#pragma once

#include "files/FileError.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace quillmark {

/// Makes the text form of a random UUID (RFC 4122), in capitals.
using MakeUUID = std::function<std::string()>;

class Attachments {
public:
    explicit Attachments(std::filesystem::path folder) : m_folder(std::move(folder)) {}

    /// Whether `name` can be that of a copy.
    [[nodiscard]] static bool isName(std::string_view name);

    /// A name that no copy has yet, for one of a file called `fileName`: eight random digits, a
    /// hyphen and that name.
    [[nodiscard]] std::string newName(const MakeUUID& makeUUID, std::string_view fileName) const;

    /// Copies a file of any size into the folder, which is made if it is missing. The copy is there
    /// whole or not at all, and its owner's alone.
    [[nodiscard]] std::optional<FileError> copy(const std::filesystem::path& file,
                                                const std::string& name) const;
    /// The path of a copy that is there and is a file itself, no link to one.
    [[nodiscard]] std::variant<std::filesystem::path, FileError>
    find(const std::string& name) const;
    /// A copy that is not there is no error.
    [[nodiscard]] std::optional<FileError> remove(const std::string& name) const;

private:
    std::filesystem::path m_folder;
};

} // namespace quillmark
