// The files of the report's own face.
#pragma once

#include <array>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace quillmark {

/// A face in a font file: what fontconfig calls its index, with a named instance in the upper bits.
struct FontFile {
    std::string path;
    int index{};
    bool operator==(const FontFile&) const = default;
};

/// Receives lines that tell what goes otherwise than it should, without a line end.
using Diagnostic = std::function<void(std::string_view)>;

struct ReportFonts {
    FontFile regular;
    FontFile bold;

    /// Courier Prime from `folder`. What is missing there, or cannot be read, is replaced by the
    /// system's "Courier" and told to `diagnostic`, in a line that starts "Quillmark report font:
    /// ". On a system without fonts one face stands in for the other; both have empty paths when
    /// there is neither.
    [[nodiscard]] static ReportFonts load(const std::filesystem::path& folder,
                                          const Diagnostic& diagnostic);
};

/// Where the report's own faces are, beside the running program.
[[nodiscard]] std::filesystem::path reportFontFolder();

} // namespace quillmark
