#include "library/FontLibrary.h"

#include "fontfile/NameTable.h"
#include "fontfile/OS2Info.h"
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
#include <numeric>
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
    return font.path ? FileName::ofPath(font.path->native()) : std::string_view{};
}

/// `names` are those of the font's `name` table.
FontFacts factsFromNames(NameStrings names, const PlatformFont& font, FontOrigin origin)
{
    for (const NameID id : platformNames) {
        const auto identifier = static_cast<std::uint16_t>(id);
        const auto found = font.names.find(identifier);
        if (found != font.names.end() && !found->second.empty())
            names.add(identifier, found->second);
    }
    std::optional<std::string> path;
    if (font.path) path = repairedUtf8(font.path->native());
    std::string fallbackName = font.postScriptName;
    if (fallbackName.empty()) fallbackName = FileName::stem(fileName(font));

    FontFacts facts =
        FontFacts::fromNames(std::move(names), font.os2 ? OS2Info::read(*font.os2) : std::nullopt,
                             fallbackName, std::move(path), FontLibrary::formatName(font), origin);
    if (!font.postScriptName.empty()) facts.postScriptName = font.postScriptName;
    return facts;
}

/// The strings of the font's `name` table that facts are made from. `budget` is how much of such
/// tables may still be read for its file.
NameStrings tableNames(std::size_t& budget, const PlatformFont& font)
{
    return font.name ? NameTable::strings(*font.name, budget, FontFacts::nameIDs) : NameStrings{};
}

/// A record and the file it is from. Two files can differ although their paths look alike: what is
/// not UTF-8 in a path is shown as U+FFFD.
struct Record {
    FontFacts* facts{};
    std::string_view file; // the path's bytes; empty without a file
};

/// Those that are not from the same file and of the same PostScript name as an earlier one.
std::vector<Record> withoutDuplicates(std::span<const Record> records)
{
    struct Hash {
        std::size_t operator()(const Record& record) const
        {
            const std::hash<std::string_view> hash;
            return hash(record.file) * 31 + hash(record.facts->postScriptName);
        }
    };
    struct Same {
        bool operator()(const Record& left, const Record& right) const
        {
            return left.facts->postScriptName == right.facts->postScriptName &&
                   left.file == right.file;
        }
    };
    std::unordered_set<Record, Hash, Same> seen;
    seen.reserve(records.size());
    std::vector<Record> kept;
    kept.reserve(records.size());
    for (const Record& record : records)
        if (seen.insert(record).second) kept.push_back(record);
    return kept;
}

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

/// What the records point at, without duplicates and in order. The records' facts are moved from:
/// whole facts are large, so they are moved once and not while sorting.
std::vector<FontFacts> arranged(std::span<const Record> records, const Collator& order)
{
    struct Keyed {
        const std::string* family{};
        const std::string* style{};
        FontFacts* facts{};
    };
    SortKeys keys(order);
    std::vector<Keyed> fonts;
    fonts.reserve(records.size());
    for (const Record& record : withoutDuplicates(records))
        fonts.push_back(
            {&keys.of(record.facts->family), &keys.of(record.facts->style), record.facts});
    std::ranges::stable_sort(fonts, [](const Keyed& left, const Keyed& right) {
        const int families = left.family->compare(*right.family);
        return families != 0 ? families < 0 : *left.style < *right.style;
    });

    std::vector<FontFacts> result;
    result.reserve(fonts.size());
    for (const Keyed& next : fonts)
        result.push_back(std::move(*next.facts));
    return result;
}

/// What the texts of a record hold, in bytes.
std::size_t textSize(const FontFacts& facts)
{
    const std::array optionals{
        &facts.fullName,           &facts.copyright,  &facts.trademark,
        &facts.manufacturer,       &facts.designer,   &facts.vendorURL,
        &facts.licenseDescription, &facts.licenseURL, &facts.licenseFile,
        &facts.filePath,           &facts.format,
    };
    const std::size_t required =
        facts.postScriptName.size() + facts.family.size() + facts.style.size();
    return std::accumulate(
        optionals.begin(), optionals.end(), required,
        [](std::size_t sum, const auto* text) { return *text ? sum + (*text)->size() : sum; });
}

/// The named instances of one file's variable fonts, by the fonts' PostScript names.
using FileInstances = std::unordered_map<std::string, std::vector<VariationInstance>>;

FileInstances instancesOf(const FontService& service, const std::string& file)
{
    FileInstances instances;
    std::size_t budget = NameTable::maximumFileBytes;
    std::size_t instancesLeft = Limits::instances;
    for (const PlatformFont& face : service.facesOf(file, Faces::variable)) {
        if (!face.fvar) continue;
        const NameStrings names =
            face.name ? NameTable::strings(*face.name, budget) : NameStrings{};
        auto ofFace = VariationInstances::read(*face.fvar, names);
        if (ofFace.size() > instancesLeft) break;
        instancesLeft -= ofFace.size();
        const FontFacts facts = factsFromNames(names, face, FontOrigin::folder);
        instances.try_emplace(facts.postScriptName, std::move(ofFace));
    }
    return instances;
}

/// The faces of a scanned file; those without a licence of their own get that of a file beside it.
std::vector<FontFacts> scannedFaces(const FontService& service, const std::string& file,
                                    const LicenseFile::Candidates& beside)
{
    std::vector<FontFacts> faces = FontLibrary::readFile(service, file, FontOrigin::folder);
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

FontFacts facts(const PlatformFont& font, FontOrigin origin)
{
    std::size_t budget = NameTable::maximumFileBytes;
    return factsFromNames(tableNames(budget, font), font, origin);
}

std::string postScriptName(const PlatformFont& font)
{
    // The names that it is made from; see FontFacts::fromNames.
    constexpr std::array wanted{NameID::postScriptName, NameID::fullName};
    std::size_t budget = NameTable::maximumFileBytes;
    NameStrings names = font.name ? NameTable::strings(*font.name, budget, wanted) : NameStrings{};
    return factsFromNames(std::move(names), font, FontOrigin::installed).postScriptName;
}

std::vector<FontFacts> readFile(const FontService& service, const std::filesystem::path& file,
                                FontOrigin origin)
{
    const std::vector<PlatformFont> faces = service.facesOf(file, Faces::all);
    std::vector<FontFacts> records;
    records.reserve(faces.size());
    std::size_t budget = NameTable::maximumFileBytes;
    for (const PlatformFont& face : faces)
        records.push_back(factsFromNames(tableNames(budget, face), face, origin));
    return records;
}

std::vector<FontFacts> installedFonts(const FontService& service, const Collator& order,
                                      const Progress& progress)
{
    const std::vector<std::string> names = service.installedNames();
    std::vector<FontFacts> fonts;
    std::vector<std::string> files; // of the fonts, as bytes
    fonts.reserve(names.size());
    files.reserve(names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        const auto font = service.installedFont(names[i]);
        if (!font || font->postScriptName != names[i]) continue;
        fonts.push_back(facts(*font, FontOrigin::installed));
        files.push_back(font->path ? font->path->native() : std::string{});
        if (progress && i % 100 == 0) progress(i, names.size());
    }
    if (progress) progress(names.size(), names.size());

    std::vector<Record> records;
    for (std::size_t i = 0; i < fonts.size(); ++i)
        records.push_back({&fonts[i], files[i]});
    return arranged(records, order);
}

std::vector<FontFacts> scanFolder(const FontService& service, const Collator& order,
                                  const std::filesystem::path& folder)
{
    const FolderContents contents = walkFolder(folder);
    std::vector<LicenseFile::Candidates> candidates;
    candidates.reserve(contents.licenseCandidates.size());
    for (const auto& files : contents.licenseCandidates)
        candidates.emplace_back(files);

    std::vector<std::vector<FontFacts>> read(contents.fonts.size());
    forEachIndex(contents.fonts.size(), [&](std::size_t i) {
        const auto& [path, parent] = contents.fonts[i];
        read[i] = scannedFaces(service, path, candidates[parent]);
    });

    std::vector<Record> records;
    for (std::size_t i = 0; i < read.size(); ++i)
        for (FontFacts& facts : read[i])
            records.push_back({&facts, contents.fonts[i].path});
    return arranged(records, order);
}

std::vector<FontFacts> scanFile(const FontService& service, const Collator& order,
                                const std::filesystem::path& file,
                                const LicenseFile::Candidates& beside)
{
    std::vector<FontFacts> faces = scannedFaces(service, file.native(), beside);
    std::vector<Record> records;
    for (FontFacts& facts : faces)
        records.push_back({&facts, file.native()});
    return arranged(records, order);
}

std::optional<FontFacts> installedFont(const FontService& service, std::string_view postScriptName)
{
    if (postScriptName.empty()) return std::nullopt;
    const auto font = service.installedFont(postScriptName);
    if (!font || font->postScriptName != postScriptName) return std::nullopt;
    return facts(*font, FontOrigin::installed);
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
    forEachIndex(files.size(),
                 [&](std::size_t i) { instances[i] = instancesOf(service, files[i]); });

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
