// The words of the check for updates, apart from the windows that show them.
#pragma once

#include "update/BundleInfo.h"

#include <string>
#include <string_view>

namespace quillmark {

/// A message with one button.
struct UpdateAlert {
    std::string title;
    std::string text;
    bool operator==(const UpdateAlert&) const = default;
};

namespace UpdateTexts {

[[nodiscard]] UpdateAlert upToDate(const BundleInfo& bundle);
/// No answer came, or one that cannot be made use of.
[[nodiscard]] UpdateAlert unreachable(const BundleInfo& bundle);
/// An answer came that is no list of updates; `reason` is the end of a sentence.
[[nodiscard]] UpdateAlert unusable(std::string_view reason);
/// There is nothing to ask: the build names no list.
[[nodiscard]] UpdateAlert fromPackages(const BundleInfo& bundle);

/// The question whether to check without being asked.
[[nodiscard]] UpdateAlert consent(const BundleInfo& bundle);

} // namespace UpdateTexts
} // namespace quillmark
