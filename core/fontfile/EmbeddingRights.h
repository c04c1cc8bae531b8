// What the embedding permission bits of an `OS/2` table allow, in words.
#pragma once

#include "text/RawValue.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace quillmark {

/// The embedding permission of one font (OpenType `OS/2`, fsType).
struct EmbeddingRights {
    enum class Level { installable, restricted, previewAndPrint, editable };

    std::uint16_t fsType{};

    /// The most permissive level whose bit is set. Other readers take the most restrictive one when
    /// several are set; the OpenType text asks for exactly one, and older fonts that set several
    /// meant the least restrictive to apply.
    [[nodiscard]] Level level() const;
    [[nodiscard]] std::string_view label() const;
    /// The label, then "no subsetting" and "bitmap only" where they apply, joined with ", ".
    [[nodiscard]] std::string summary() const;
    /// `fsType` as "0x" and four upper-case digits.
    [[nodiscard]] std::string hex() const;
    [[nodiscard]] bool noSubsetting() const { return (fsType & 0x0100U) != 0; }
    [[nodiscard]] bool bitmapOnly() const { return (fsType & 0x0200U) != 0; }

    bool operator==(const EmbeddingRights&) const = default;
};

template <>
inline constexpr auto rawValues<EmbeddingRights::Level> = std::to_array<std::string_view>({
    "installable",
    "restricted",
    "previewAndPrint",
    "editable",
});

} // namespace quillmark
