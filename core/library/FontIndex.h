// Finding known fonts by the names that documents use.
#pragma once

#include "fontfile/FontFacts.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>

namespace quillmark {

class FontService;

/// Immutable once built, so that a check may look names up from its own thread.
struct FontIndex {
    std::unordered_map<std::string, FontFacts> byName;   // by PostScript name, exactly as read
    std::unordered_map<std::string, FontFacts> byFamily; // by family key
    bool useCoreText{}; // whether the system's font service is asked before the family table

    /// An index over `fonts`, later ones taking the place of earlier ones of the same name.
    /// `namedInstances` are found by name only, and never take another font's place.
    FontIndex(std::span<const FontFacts> fonts, bool useCoreText,
              std::span<const FontFacts> namedInstances = {});

    /// The facts for a font name without subset prefix. A match on the family only has the name's
    /// own style and a PostScript name that differs from `name`. `service` is asked only if
    /// `useCoreText` is set.
    [[nodiscard]] std::optional<FontFacts> lookup(std::string_view name,
                                                  const FontService& service) const;
};

} // namespace quillmark
