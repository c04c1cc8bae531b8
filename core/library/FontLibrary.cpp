#include "library/FontLibrary.h"

#include "fontfile/NameTable.h"
#include "fontfile/OS2Info.h"
#include "fontfile/VariationInstances.h"
#include "library/FolderWalk.h"
#include "library/LicenseFile.h"
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

/// The extension without its full stop, lower-cased; empty without one.
std::string extension(const PlatformFont& font)
{
    if (!font.path) return {};
    const std::string extension = font.path->extension().native();
    return extension.empty() ? std::string{}
                             : lowercased(repairedUtf8(std::string_view(extension).substr(1)));
}

/// An extension is plain ASCII wherever this is used on purpose; other letters stay as they are.
std::string uppercased(std::string text)
{
    std::ranges::transform(text, text.begin(), [](char character) {
        const bool isLower = character >= 'a' && character <= 'z';
        return isLower ? static_cast<char>(character - 'a' + 'A') : character;
    });
    return text;
}

/// `budget` is how much of `name` tables may still be read for the font's file.
FontFacts factsWithin(std::size_t& budget, const PlatformFont& font, FontOrigin origin)
{
    NameStrings names = font.name ? NameTable::strings(*font.name, budget) : NameStrings{};
    for (const NameID id : platformNames) {
        const auto identifier = static_cast<std::uint16_t>(id);
        const auto found = font.names.find(identifier);
        if (found != font.names.end() && !found->second.empty())
            names.try_emplace(identifier, found->second);
    }
    std::optional<std::string> path;
    if (font.path) path = repairedUtf8(font.path->native());
    std::string fallbackName = font.postScriptName;
    if (fallbackName.empty() && font.path) fallbackName = repairedUtf8(font.path->stem().native());

    FontFacts facts =
        FontFacts::fromNames(names, font.os2 ? OS2Info::read(*font.os2) : std::nullopt,
                             fallbackName, std::move(path), FontLibrary::formatName(font), origin);
    if (!font.postScriptName.empty()) facts.postScriptName = font.postScriptName;
    return facts;
}

/// A record and the file it is from. Two files can differ although their paths look alike: what is
/// not UTF-8 in a path is shown as U+FFFD.
struct Record {
    FontFacts facts;
    std::string_view file; // the path's bytes; empty without a file
};

/// The facts in order, without those from the same file and with the same PostScript name as
/// earlier ones.
std::vector<FontFacts> withoutDuplicates(std::vector<Record> records)
{
    using Key = std::pair<std::string_view, std::string_view>;
    struct Hash {
        std::size_t operator()(const Key& key) const
        {
            const std::hash<std::string_view> hash;
            return hash(key.first) * 31 + hash(key.second);
        }
    };
    std::unordered_set<Key, Hash> seen;
    seen.reserve(records.size());
    std::vector<bool> isFirst(records.size());
    for (std::size_t i = 0; i < records.size(); ++i)
        isFirst[i] = seen.emplace(records[i].file, records[i].facts.postScriptName).second;

    std::vector<FontFacts> kept;
    kept.reserve(seen.size());
    for (std::size_t i = 0; i < records.size(); ++i)
        if (isFirst[i]) kept.push_back(std::move(records[i].facts));
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

std::vector<FontFacts> sorted(std::vector<FontFacts> fonts, const Collator& order)
{
    struct Keyed {
        const std::string* family;
        const std::string* style;
        std::size_t position;
    };
    SortKeys keys(order);
    std::vector<Keyed> keyed;
    keyed.reserve(fonts.size());
    for (std::size_t i = 0; i < fonts.size(); ++i)
        keyed.push_back({&keys.of(fonts[i].family), &keys.of(fonts[i].style), i});
    std::ranges::stable_sort(keyed, [](const Keyed& left, const Keyed& right) {
        const int families = left.family->compare(*right.family);
        return families != 0 ? families < 0 : *left.style < *right.style;
    });

    std::vector<FontFacts> result;
    result.reserve(fonts.size());
    for (const Keyed& next : keyed)
        result.push_back(std::move(fonts[next.position]));
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
    for (const PlatformFont& face : service.facesOf(file, Faces::variable)) {
        if (!face.fvar) continue;
        const NameStrings names =
            face.name ? NameTable::strings(*face.name, budget) : NameStrings{};
        const FontFacts facts = FontLibrary::facts(face, FontOrigin::folder);
        instances.try_emplace(facts.postScriptName, VariationInstances::read(*face.fvar, names));
    }
    return instances;
}

} // namespace

namespace FontLibrary {

std::string formatName(const PlatformFont& font)
{
    const std::string fileExtension = extension(font);
    if (font.format) {
        switch (*font.format) {
        case FontFormat::openTypePostScript:
            return std::string(FormatLabel::openTypeCFF);
        case FontFormat::openTypeTrueType:
        case FontFormat::trueType:
            return std::string(fileExtension == "ttc" ? FormatLabel::trueTypeCollection
                                                      : FormatLabel::trueType);
        case FontFormat::postScript:
            return std::string(FormatLabel::postScriptType1);
        case FontFormat::bitmap:
            return std::string(FormatLabel::bitmap);
        }
    }
    return fileExtension.empty() ? std::string(FormatLabel::font) : uppercased(fileExtension);
}

FontFacts facts(const PlatformFont& font, FontOrigin origin)
{
    std::size_t budget = NameTable::maximumFileBytes;
    return factsWithin(budget, font, origin);
}

std::vector<FontFacts> readFile(const FontService& service, const std::filesystem::path& file,
                                FontOrigin origin)
{
    const std::vector<PlatformFont> faces = service.facesOf(file, Faces::all);
    std::vector<FontFacts> records;
    records.reserve(faces.size());
    std::size_t budget = NameTable::maximumFileBytes;
    for (const PlatformFont& face : faces)
        records.push_back(factsWithin(budget, face, origin));
    return records;
}

std::vector<FontFacts> installedFonts(const FontService& service, const Collator& order,
                                      const Progress& progress)
{
    const std::vector<std::string> names = service.installedNames();
    std::vector<Record> records;
    std::vector<std::string> files(names.size()); // what the records' views point into
    records.reserve(names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        const auto font = service.installedFont(names[i]);
        if (!font || font->postScriptName != names[i]) continue;
        if (font->path) files[i] = font->path->native();
        records.push_back({facts(*font, FontOrigin::installed), files[i]});
        if (progress && i % 100 == 0) progress(i, names.size());
    }
    if (progress) progress(names.size(), names.size());
    return sorted(withoutDuplicates(std::move(records)), order);
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
        read[i] = readFile(service, path, FontOrigin::folder);
        for (FontFacts& facts : read[i]) {
            if (!facts.licenseDescription && !facts.licenseURL && facts.filePath)
                facts = LicenseFile::attach(std::move(facts), candidates[parent]);
        }
    });

    std::vector<Record> records;
    for (std::size_t i = 0; i < read.size(); ++i)
        for (FontFacts& facts : read[i])
            records.push_back({std::move(facts), contents.fonts[i].path});
    return sorted(withoutDuplicates(std::move(records)), order);
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
