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
#include <type_traits>
#include <utility>
#include <vector>

namespace quillmark::FontLibrary {

using Progress = std::function<void(std::size_t done, std::size_t total)>;

/// Takes the fonts of a list while they are read.
class FontSink {
public:
    virtual ~FontSink() = default;
    /// Comes before the first font: how many groups there are, numbered from 0.
    virtual void begin(std::size_t groups) = 0;
    /// A font, on the thread that has just read it. Groups come on several threads at once, the
    /// fonts of one group on one thread and in order.
    virtual void take(std::size_t group, FontFacts&& facts) = 0;
};

/// Where a sink was given a font: the group, and how many fonts the group had before.
struct FontPlace {
    std::size_t group{};
    std::size_t index{};
};

/// Reads the installed fonts and returns the places of those that belong in the list, in its order;
/// see installedFonts.
[[nodiscard]] std::vector<FontPlace> readInstalledFonts(const FontService& service,
                                                        const Collator& order, FontSink& sink,
                                                        const Progress& progress = {});

/// Reads the fonts of a folder and returns the places of those that belong in the list, in its
/// order; see scanFolder.
[[nodiscard]] std::vector<FontPlace> readFolder(const FontService& service, const Collator& order,
                                                const std::filesystem::path& folder,
                                                FontSink& sink);

/// Keeps what a function makes of each font, so that thousands of fonts need not stand in memory
/// with all that they say. The function must be callable from several threads at once.
template <typename Make>
class MadeOfFonts final : public FontSink {
public:
    using Item = std::decay_t<std::invoke_result_t<const Make&, FontFacts>>;

    explicit MadeOfFonts(const Make& make) : m_make(make) {}

    void begin(std::size_t groups) override { m_items.resize(groups); }
    void take(std::size_t group, FontFacts&& facts) override
    {
        m_items[group].push_back(m_make(std::move(facts)));
    }
    /// What was made of the fonts in these places, each of which is named once.
    [[nodiscard]] std::vector<Item> itemsAt(std::span<const FontPlace> places)
    {
        std::vector<Item> items;
        items.reserve(places.size());
        for (const FontPlace& place : places)
            items.push_back(std::move(m_items[place.group][place.index]));
        return items;
    }

private:
    const Make& m_make;
    std::vector<std::vector<Item>> m_items;
};

/// Keeps the fonts themselves.
inline constexpr std::identity asTheyAre;

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

/// Reads all that is read of a file's faces, names or instances, and keeps it instead of the tables
/// that it was read from. Whoever gets the faces then reads of them what he would have otherwise.
void settle(std::vector<PlatformFont>& faces, Faces which);

/// The label for FontFacts::format.
[[nodiscard]] std::string formatName(const PlatformFont& font);

/// A record for each named instance of the variable fonts among `fonts`, in their order, under the
/// instance's own names. Meant for looking names up, not for listing.
[[nodiscard]] std::vector<FontFacts> namedInstances(const FontService& service,
                                                    std::span<const FontFacts> fonts);

} // namespace quillmark::FontLibrary
