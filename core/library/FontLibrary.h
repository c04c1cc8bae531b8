// Lists of font facts: the installed fonts, the fonts of a folder, the faces of a file.
#pragma once

#include "fontfile/FontFacts.h"
#include "library/FontService.h"
#include "library/LicenseFile.h"
#include "text/Collation.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillmark::FontLibrary {

using Progress = std::function<void(std::size_t done, std::size_t total)>;

/// Every installed font, without duplicates, sorted by family and style in `order`. `progress`, if
/// given, is called from this thread at every hundredth font and at the end.
[[nodiscard]] std::vector<FontFacts>
installedFonts(const FontService& service, const Collator& order, const Progress& progress = {});

/// Every font in `folder` and its subfolders, with the licence files found beside fonts that carry
/// no licence of their own, without duplicates, sorted by family and style in `order`. Empty when
/// the folder cannot be listed. Files are read on all cores; the result is always in the same
/// order.
[[nodiscard]] std::vector<FontFacts> scanFolder(const FontService& service, const Collator& order,
                                                const std::filesystem::path& folder);

/// The faces of one font file, whatever its extension, as a scan of its folder lists them; `beside`
/// are the licence files in that folder.
[[nodiscard]] std::vector<FontFacts> scanFile(const FontService& service, const Collator& order,
                                              const std::filesystem::path& file,
                                              const LicenseFile::Candidates& beside);

/// One record per face of one font file, whatever its extension. `file` is its path as bytes:
/// taking a path apart for each of thousands of files would cost more than reading their names.
[[nodiscard]] std::vector<FontFacts> readFile(const FontService& service, const std::string& file,
                                              FontOrigin origin);

/// The installed font with exactly this PostScript name.
[[nodiscard]] std::optional<FontFacts> installedFont(const FontService& service,
                                                     std::string_view postScriptName);

/// The facts of one face as the service knows it.
[[nodiscard]] FontFacts facts(PlatformFont font, FontOrigin origin);

/// Reads the font's names, keeps them instead of what they were read from, and fills in the
/// PostScript name by which they call it. `budget` is how much of `name` tables may still be read
/// for the font's file; see NameTable::strings.
void settleNames(PlatformFont& font, std::size_t& budget);

/// The label for FontFacts::format.
[[nodiscard]] std::string formatName(const PlatformFont& font);

/// A record for each named instance of the variable fonts among `fonts`, in their order, under the
/// instance's own names. Meant for looking names up, not for listing.
[[nodiscard]] std::vector<FontFacts> namedInstances(const FontService& service,
                                                    std::span<const FontFacts> fonts);

} // namespace quillmark::FontLibrary
