// The three values kept from an OpenType `OS/2` table. EmbeddingRights.h says what fsType means.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace quillmark {

struct OS2Info {
    std::uint16_t version{};
    std::uint16_t fsType{};              // embedding permission bits, as stored
    std::optional<std::string> vendorID; // achVendID, trimmed; absent when blank or cut off

    /// Absent for a table of 9 bytes or fewer.
    [[nodiscard]] static std::optional<OS2Info> read(std::span<const std::byte> table);

    bool operator==(const OS2Info&) const = default;
};

} // namespace quillmark
