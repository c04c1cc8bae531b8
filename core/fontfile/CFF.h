// Bare Compact Font Format programs (Adobe Technical Note 5176), as PDF documents embed them.
#pragma once

#include "fontfile/BareFontInfo.h"

#include <cstddef>
#include <optional>
#include <span>

namespace quillmark::CFF {

/// The names and notices of the first font; absent when the bytes are not a readable CFF program.
[[nodiscard]] std::optional<BareFontInfo> read(std::span<const std::byte> program);

} // namespace quillmark::CFF
