// A licence text lying next to a font that carries no licence of its own.
#pragma once

#include "fontfile/FontFacts.h"

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillmark::LicenseFile {

/// Files of this size or more, in bytes, are not licence texts.
inline constexpr std::size_t maximumFileSize = 524288;
/// How many bytes of a licence text are read.
inline constexpr std::size_t maximumTextSize = 4000;

/// Whether a file of this name can be a licence text: ofl*, license*, licence* or copying*, without
/// extension or with txt or md, in any case.
[[nodiscard]] bool isCandidate(const std::filesystem::path& file);

/// The licence files of one folder, made ready for the many fonts that may lie beside them.
/// Immutable once made.
class Candidates {
public:
    explicit Candidates(std::span<const std::filesystem::path> files);

    /// The file that goes with a font family: of those named after it the one with the shortest
    /// name, else the only one there is. Null when there is none.
    [[nodiscard]] const std::filesystem::path* fileFor(std::string_view family) const;

private:
    struct Candidate {
        std::filesystem::path file;
        std::string key;          // its stem, reduced like a family name
        std::size_t nameLength{}; // of its file name, in code points
    };
    std::vector<Candidate> m_candidates; // shortest name first
};

/// `facts` with the text and path of the licence file that goes with the font's family. Unchanged
/// when there is none that can be read.
[[nodiscard]] FontFacts attach(FontFacts facts, const Candidates& candidates);
[[nodiscard]] FontFacts attach(FontFacts facts, std::span<const std::filesystem::path> candidates);

} // namespace quillmark::LicenseFile
