// Finding installed fonts by what a person calls them. Documents' fonts are matched by
// library/FontIndex.h, which is stricter.
#pragma once

#include "fontfile/FontFacts.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillmark::cli {

/// The fonts whose display name is `name`; failing that, those whose display name or PostScript
/// name is, in any case by the rules of `locale`; failing that, those of the family of that name.
/// In the order of `fonts`.
[[nodiscard]] std::vector<FontFacts>
fontsCalled(std::string_view name, std::span<const FontFacts> fonts, const std::string& locale);

/// The PostScript name, display name or family that is nearest to `name`, if one is near; else the
/// first display name that has `name` in it.
[[nodiscard]] std::optional<std::string>
fontNameNear(std::string_view name, std::span<const FontFacts> fonts, const std::string& locale);

} // namespace quillmark::cli
