// The named instances of a variable font (OpenType `fvar`).
#pragma once

#include "fontfile/NameTable.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace quillmark {

/// One named instance, as programs that write PDFs name it.
struct VariationInstance {
    std::string postScriptName;
    std::string style;
    std::string fullName;
    bool operator==(const VariationInstance&) const = default;
};

namespace VariationInstances {

/// The most instances that are read from one font; no real font comes near it.
inline constexpr std::size_t maximumInstances = 4096;

/// The most characters that are taken of a family, a style and a PostScript name, which may not
/// have more.
inline constexpr std::size_t maximumNameLength = 127;

/// The instances in table order. The PostScript name is the instance's own where `fvar` gives one.
/// Else it is name 25, or what stands before the last hyphen of name 6, followed by "-" and the
/// instance's style, each reduced to its ASCII letters and digits (Adobe Technical Note 5902). The
/// full name is the family and the style. An instance without a style name, or for which no
/// PostScript name can be made, is left out.
[[nodiscard]] std::vector<VariationInstance> read(std::span<const std::byte> fvar,
                                                  const NameStrings& names);

} // namespace VariationInstances
} // namespace quillmark
