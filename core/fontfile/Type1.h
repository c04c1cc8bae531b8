// Type 1 programs (Adobe Type 1 Font Format), read from their clear-text part.
#pragma once

#include "fontfile/BareFontInfo.h"

#include <cstddef>
#include <optional>
#include <span>

namespace quillmark::Type1 {

/// The names and notices in the first 65536 bytes; absent when none of /FontName, /Notice and
/// /FullName occurs there.
[[nodiscard]] std::optional<BareFontInfo> read(std::span<const std::byte> program);

} // namespace quillmark::Type1
