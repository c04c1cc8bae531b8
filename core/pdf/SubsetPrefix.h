// The tag of six capitals and a plus sign before the name of a subset font (ISO 32000-2, 9.9.2).
#pragma once

#include <string>
#include <string_view>

namespace quillmark {

struct SubsetName {
    std::string cleanName;
    bool subset{};
    bool operator==(const SubsetName&) const = default;
};

/// Splits a raw PDF font name. Without a prefix the clean name is the raw name unchanged.
[[nodiscard]] SubsetName splitSubsetPrefix(std::string_view rawName);

} // namespace quillmark
