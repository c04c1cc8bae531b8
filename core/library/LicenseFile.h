// A licence text lying next to a font that carries no licence of its own.
#pragma once

#include "fontfile/FontFacts.h"

#include <cstddef>
#include <filesystem>
#include <span>

namespace quillmark::LicenseFile {

/// Files of this size or more, in bytes, are not licence texts.
inline constexpr std::size_t maximumFileSize = 524288;
/// How many bytes of a licence text are read.
inline constexpr std::size_t maximumTextSize = 4000;

/// Whether a file of this name can be a licence text: ofl*, license*, licence* or copying*, without
/// extension or with txt or md, in any case.
[[nodiscard]] bool isCandidate(const std::filesystem::path& file);

/// `facts` with the text and path of the licence file that goes with the font's family: the one
/// named after it, else the only one. Unchanged when there is none that can be read.
[[nodiscard]] FontFacts attach(const FontFacts& facts,
                               std::span<const std::filesystem::path> candidates);

} // namespace quillmark::LicenseFile
