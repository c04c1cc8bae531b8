// The decision on one font and its grounds. Made by Classifier.h.
#pragma once

#include "assessment/LicenseKind.h"
#include "text/RawValue.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace quillmark {

/// May the font be embedded in something that is sold? Declared, and sorted, worst first.
enum class Verdict { restricted, unknown, likelyOK };

template <>
inline constexpr auto rawValues<Verdict> = std::to_array<std::string_view>({
    "restricted",
    "unknown",
    "likelyOK",
});

[[nodiscard]] std::string_view label(Verdict verdict);
[[nodiscard]] std::string_view shortLabel(Verdict verdict);

struct Assessment {
    Verdict verdict{Verdict::unknown};
    std::string headline;
    std::vector<std::string> reasons; // whole sentences, in the order in which they are shown
    LicenseKind license{LicenseKind::none};
    bool appleBundled{}; // the font comes with macOS
    bool operator==(const Assessment&) const = default;
};

} // namespace quillmark
