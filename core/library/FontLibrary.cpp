#include "library/FontLibrary.h"

#include "fontfile/NameTable.h"
#include "fontfile/OS2Info.h"
#include "fontfile/TextSize.h"
#include "fontfile/VariationInstances.h"
#include "library/FileName.h"
#include "library/FolderWalk.h"
#include "library/Limits.h"
#include "library/Parallel.h"
#include "text/Case.h"
#include "text/Encoding.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace quillmark {
namespace {

/// The names that the service is asked for where a font's `name` table lacks them.
constexpr std::array<NameID, 11> platformNames{
    NameID::copyright,          NameID::family,         NameID::subfamily,
    NameID::fullName,           NameID::postScriptName, NameID::trademark,
    NameID::manufacturer,       NameID::designer,       NameID::vendorURL,
    NameID::licenseDescription, NameID::licenseURL,
};

/// The name of the font's file; empty without one.
std::string_view fileName(const PlatformFont& font)
{
    return font.path ? FileName::ofPath(*font.path) : std::string_view{};
}

/// The strings of a `name` table, and those that the service knows where the table lacks them.
NameStrings completed(NameStrings names, NameStrings known)
{
    if (known.empty()) return names;
    for (const NameID id : platformNames) {
        const auto identifier = static_cast<std::uint16_t>(id);
        const auto found = known.find(identifier);
        if (found != known.end() && !found->second.empty())
            names.add(identifier, std::move(found->second));
    }
    return names;
}

/// Takes out of the font the names that facts are made from. `budget` is how much of `name` tables
/// may still be read for its file.
NameStrings takeNames(PlatformFont& font, std::size_t& budget)
{
    if (font.settledNames) return *std::move(font.settledNames);
    return completed(font.name ? NameTable::strings(*font.name, budget, FontFacts::nameIDs)
                               : NameStrings{},
                     std::move(font.names));
}

std::string postScriptName(const PlatformFont& font, const NameStrings& names)
{
    if (!font.postScriptName.empty()) return font.postScriptName;
    auto name = FontFacts::postScriptNameAmong(names);
    return name ? *std::move(name) : FileName::stem(fileName(font));
}

FontFacts factsFromNames(NameStrings names, const PlatformFont& font, FontOrigin origin)
{
    std::optional<std::string> path;
    if (font.path) path = repairedUtf8(*font.path);
    // With a PostScript name among the names nothing is left to fall back on.
    std::string fallbackName = font.postScriptName;
    if (fallbackName.empty() &&
        names.find(static_cast<std::uint16_t>(NameID::postScriptName)) == names.end())
        fallbackName = FileName::stem(fileName(font));

    FontFacts facts =
        FontFacts::fromNames(std::move(names), font.os2 ? OS2Info::read(*font.os2) : std::nullopt,
                             fallbackName, std::move(path), FontLibrary::formatName(font), origin);
    if (!font.postScriptName.empty()) facts.postScriptName = font.postScriptName;
    return facts;
}

/// What the place of a font in a list depends on.
struct ListedFont {
    std::string family;
    std::string style;
    FontLibrary::FontPlace place;
};

/// Sort keys, made once for each text: most fonts share their family or style with others.
class SortKeys {
public:
    explicit SortKeys(const Collator& order) : m_order(order) {}

    const std::string& of(std::string_view text)
    {
        const auto [entry, isNew] = m_keys.try_emplace(text);
        if (isNew) entry->second = m_order.sortKey(text);
        return entry->second;
    }

private:
    const Collator& m_order;
    std::unordered_map<std::string_view, std::string> m_keys;
};

/// The fonts' places by family and style.
std::vector<FontLibrary::FontPlace> sorted(std::span<const std::vector<ListedFont>> groups,
                                           const Collator& order)
{
    struct Keyed {
        const std::string* family{};
        const std::string* style{};
        FontLibrary::FontPlace place;
    };
    SortKeys keys(order);
    std::vector<Keyed> fonts;
    fonts.reserve(groups.size());
    for (const auto& group : groups)
        for (const ListedFont& font : group)
            fonts.push_back({&keys.of(font.family), &keys.of(font.style), font.place});
    std::ranges::stable_sort(fonts, [](const Keyed& left, const Keyed& right) {
        const int families = left.family->compare(*right.family);
        return families != 0 ? families < 0 : *left.style < *right.style;
    });

    std::vector<FontLibrary::FontPlace> places;
    places.reserve(fonts.size());
    for (const Keyed& font : fonts)
        places.push_back(font.place);
    return places;
}

/// Leaves out those with the PostScript name of an earlier one.
void removeDuplicates(std::vector<FontFacts>& faces)
{
    if (faces.size() < 2) return;
    std::unordered_set<std::string> seen;
    std::erase_if(
        faces, [&seen](const FontFacts& face) { return !seen.insert(face.postScriptName).second; });
}

/// Hands the faces of one file on, and returns what their places in the list depend on.
std::vector<ListedFont> handOn(std::vector<FontFacts> faces, std::size_t group,
                               FontLibrary::FontSink& sink)
{
    removeDuplicates(faces);
    std::vector<ListedFont> listed;
    listed.reserve(faces.size());
    for (FontFacts& face : faces) {
        listed.push_back({face.family, face.style, {group, listed.size()}});
        sink.take(group, std::move(face));
    }
    return listed;
}

/// The named instances of one file's variable fonts, by the fonts' PostScript names.
using FileInstances = std::unordered_map<std::string, std::vector<VariationInstance>>;

/// Leaves the variable ones of a file's faces, with their instances in place of their tables.
void settleInstances(std::vector<PlatformFont>& faces)
{
    std::size_t budget = NameTable::maximumFileBytes;
    std::size_t instancesLeft = Limits::instances;
    for (PlatformFont& face : faces) {
        if (!face.settledInstances && face.fvar) {
            NameStrings names = face.name ? NameTable::strings(*face.name, budget) : NameStrings{};
            face.settledInstances = VariationInstances::read(*face.fvar, names);
            names = completed(std::move(names), std::move(face.names));
            face.postScriptName = postScriptName(face, names);
        }
        const std::size_t count = face.settledInstances ? face.settledInstances->size() : 0;
        if (count > instancesLeft) {
            instancesLeft = 0; // and none of the faces behind it has any
            face.settledInstances.reset();
        }
        instancesLeft -= std::min(count, instancesLeft);
        face.fvar.reset();
        face.name.reset();
        face.names = {};
    }
    std::erase_if(faces, [](const PlatformFont& face) { return !face.settledInstances; });
}

FileInstances instancesOf(std::vector<PlatformFont> faces)
{
    settleInstances(faces);
    FileInstances instances;
    for (PlatformFont& face : faces)
        instances.try_emplace(face.postScriptName, *std::move(face.settledInstances));
    return instances;
}

/// One record per face of a file.
std::vector<FontFacts> factsOfFaces(std::vector<PlatformFont> faces, FontOrigin origin)
{
    std::vector<FontFacts> records;
    records.reserve(faces.size());
    std::size_t budget = NameTable::maximumFileBytes;
    for (PlatformFont& face : faces) {
        NameStrings names = takeNames(face, budget);
        records.push_back(factsFromNames(std::move(names), face, origin));
    }
    return records;
}

/// The faces of a scanned file; those without a licence of their own get that of a file beside it.
std::vector<FontFacts> scannedFaces(std::vector<PlatformFont> read,
                                    const LicenseFile::Candidates& beside)
{
    std::vector<FontFacts> faces = factsOfFaces(std::move(read), FontOrigin::folder);
    for (FontFacts& facts : faces) {
        if (!facts.licenseDescription && !facts.licenseURL && facts.filePath)
            facts = LicenseFile::attach(std::move(facts), beside);
    }
    return faces;
}

} // namespace

namespace FontLibrary {

std::string formatName(const PlatformFont& font)
{
    const std::string extension = FileName::extension(fileName(font));
    if (font.format) {
        switch (*font.format) {
        case FontFormat::openTypePostScript:
            return std::string(FormatLabel::openTypeCFF);
        case FontFormat::openTypeTrueType:
        case FontFormat::trueType:
            return std::string(extension == "ttc" ? FormatLabel::trueTypeCollection
                                                  : FormatLabel::trueType);
        case FontFormat::postScript:
            return std::string(FormatLabel::postScriptType1);
        case FontFormat::bitmap:
            return std::string(FormatLabel::bitmap);
        }
    }
    return extension.empty() ? std::string(FormatLabel::font) : uppercased(extension);
}

FontFacts facts(PlatformFont font, FontOrigin origin)
{
    std::size_t budget = NameTable::maximumFileBytes;
    NameStrings names = takeNames(font, budget);
    return factsFromNames(std::move(names), font, origin);
}

void settleNames(PlatformFont& font, std::size_t& budget)
{
    NameStrings names = takeNames(font, budget);
    font.postScriptName = postScriptName(font, names);
    font.name.reset();
    font.names = {};
    font.settledNames = std::move(names);
}

void settle(std::vector<PlatformFont>& faces, Faces which)
{
    switch (which) {
    case Faces::all: {
        std::size_t budget = NameTable::maximumFileBytes;
        for (PlatformFont& face : faces) {
            face.settledNames = takeNames(face, budget);
            face.name.reset();
            face.names = {};
        }
        break;
    }
    case Faces::variable:
        settleInstances(faces);
        break;
    }
}

std::vector<FontFacts> readFile(const FontService& service, const std::string& file,
                                FontOrigin origin)
{
    return factsOfFaces(service.facesOf(file, Faces::all), origin);
}

std::vector<FontPlace> readInstalledFonts(const FontService& service, const Collator& order,
                                          FontSink& sink, const Progress& progress)
{
    const std::vector<std::string> names = service.installedNames();
    std::vector<std::vector<ListedFont>> listed(names.size());
    sink.begin(names.size());
    const auto readFont = [&](std::size_t i) {
        auto font = service.installedFont(names[i]);
        if (!font || font->postScriptName != names[i]) return;
        listed[i] = handOn({facts(*std::move(font), FontOrigin::installed)}, i, sink);
    };
    constexpr std::size_t step = 100; // fonts between two calls of `progress`
    for (std::size_t done = 0; done < names.size();) {
        const std::size_t next = progress ? done + (done == 0 ? 1 : step) : names.size();
        const std::size_t end = std::min(next, names.size());
        forEachIndex(end - done, [&](std::size_t i) { readFont(done + i); });
        done = end;
        if (progress && (done - 1) % step == 0 && !listed[done - 1].empty())
            progress(done - 1, names.size());
    }
    if (progress) progress(names.size(), names.size());

    // The service answers to a name always with the same font of the same file.
    std::unordered_set<std::string_view> seen;
    for (std::size_t i = 0; i < names.size(); ++i)
        if (!seen.insert(names[i]).second) listed[i].clear();
    return sorted(listed, order);
}

std::vector<FontPlace> readFolder(const FontService& service, const Collator& order,
                                  const std::filesystem::path& folder, FontSink& sink)
{
    FolderContents contents = walkFolder(folder);
    std::vector<std::string> files;
    files.reserve(contents.fonts.size());
    for (auto& font : contents.fonts)
        files.push_back(std::move(font.path));
    std::vector<LicenseFile::Candidates> candidates;
    candidates.reserve(contents.licenseCandidates.size());
    for (const auto& ofFolder : contents.licenseCandidates)
        candidates.emplace_back(ofFolder);

    std::vector<std::vector<ListedFont>> listed(files.size());
    sink.begin(files.size());
    service.facesOfEach(files, Faces::all, [&](std::size_t i, std::vector<PlatformFont>&& faces) {
        const auto& licenses = candidates[contents.fonts[i].folder];
        listed[i] = handOn(scannedFaces(std::move(faces), licenses), i, sink);
    });
    return sorted(listed, order);
}

std::vector<FontFacts> installedFonts(const FontService& service, const Collator& order,
                                      const Progress& progress)
{
    MadeOfFonts fonts(asTheyAre);
    return fonts.itemsAt(readInstalledFonts(service, order, fonts, progress));
}

std::vector<FontFacts> scanFolder(const FontService& service, const Collator& order,
                                  const std::filesystem::path& folder)
{
    MadeOfFonts fonts(asTheyAre);
    return fonts.itemsAt(readFolder(service, order, folder, fonts));
}

std::vector<FontFacts> scanFile(const FontService& service, const Collator& order,
                                const std::filesystem::path& file,
                                const LicenseFile::Candidates& beside)
{
    MadeOfFonts fonts(asTheyAre);
    fonts.begin(1);
    const std::vector<std::vector<ListedFont>> listed{
        handOn(scannedFaces(service.facesOf(file.native(), Faces::all), beside), 0, fonts)};
    return fonts.itemsAt(sorted(listed, order));
}

std::optional<FontFacts> installedFont(const FontService& service, std::string_view postScriptName)
{
    if (postScriptName.empty()) return std::nullopt;
    auto font = service.installedFont(postScriptName);
    if (!font || font->postScriptName != postScriptName) return std::nullopt;
    return facts(*std::move(font), FontOrigin::installed);
}

std::vector<FontFacts> namedInstances(const FontService& service, std::span<const FontFacts> fonts)
{
    std::unordered_map<std::string_view, std::size_t> positions;
    std::vector<std::string> files;
    for (const FontFacts& font : fonts) {
        if (!font.filePath) continue;
        if (positions.try_emplace(*font.filePath, files.size()).second)
            files.push_back(*font.filePath);
    }
    std::vector<FileInstances> instances(files.size());
    service.facesOfEach(files, Faces::variable,
                        [&](std::size_t i, std::vector<PlatformFont>&& faces) {
                            instances[i] = instancesOf(std::move(faces));
                        });

    std::vector<FontFacts> records;
    std::vector<std::size_t> textLeft(files.size(), Limits::instanceTextBytes);
    for (const FontFacts& font : fonts) {
        if (!font.filePath) continue;
        const std::size_t file = positions.at(*font.filePath);
        const auto found = instances[file].find(font.postScriptName);
        if (found == instances[file].end()) continue;
        for (const VariationInstance& instance : found->second) {
            FontFacts record = font;
            record.postScriptName = instance.postScriptName;
            record.style = instance.style;
            record.fullName = instance.fullName;
            const std::size_t size = textSize(record);
            if (size > textLeft[file]) break;
            textLeft[file] -= size;
            records.push_back(std::move(record));
        }
    }
    return records;
}

} // namespace FontLibrary
} // namespace quillmark
