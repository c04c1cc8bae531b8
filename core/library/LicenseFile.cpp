#include "library/LicenseFile.h"

#include "library/FileName.h"
#include "library/RegularFile.h"
#include "text/Case.h"
#include "text/Characters.h"
#include "text/Encoding.h"
#include "text/FamilyKey.h"
#include "text/Trim.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace quillmark {
namespace {

constexpr std::array<std::string_view, 4> stems{"ofl", "license", "licence", "copying"};
constexpr std::array<std::string_view, 3> extensions{"", "txt", "md"};

/// The beginning of a licence text; absent for a file that is none.
std::optional<std::string> licenseText(const std::filesystem::path& path)
{
    const auto file = RegularFile::open(path.native());
    if (!file || file->size() >= LicenseFile::maximumFileSize) return std::nullopt;
    std::array<std::byte, LicenseFile::maximumTextSize> bytes{};
    const std::size_t count = file->read(0, bytes);
    return trimmedOrAbsent(decodeUtf8(std::span(bytes).first(count)));
}

} // namespace

namespace LicenseFile {

bool isCandidate(const std::filesystem::path& file)
{
    const std::string_view name = FileName::ofPath(file.native());
    if (std::ranges::find(extensions, FileName::extension(name)) == extensions.end()) return false;
    const std::string stem = lowercased(FileName::stem(name));
    return std::ranges::any_of(stems, [&stem](std::string_view s) { return stem.starts_with(s); });
}

Candidates::Candidates(std::span<const std::filesystem::path> files)
{
    m_candidates.reserve(files.size());
    for (const auto& file : files) {
        const std::string_view name = FileName::ofPath(file.native());
        m_candidates.push_back({
            file,
            familyKey(FileName::stem(name)),
            codePointCount(repairedUtf8(name)),
        });
    }
    std::ranges::stable_sort(m_candidates, {}, &Candidate::nameLength);
}

const std::filesystem::path* Candidates::fileFor(std::string_view family) const
{
    const std::string key = familyKey(family);
    // A family without letters and digits names no file, although its key occurs in every name.
    if (!key.empty()) {
        const auto named = std::ranges::find_if(m_candidates, [&key](const Candidate& candidate) {
            return candidate.key.find(key) != std::string::npos;
        });
        if (named != m_candidates.end()) return &named->file;
    }
    return m_candidates.size() == 1 ? &m_candidates.front().file : nullptr;
}

FontFacts attach(FontFacts facts, const Candidates& candidates)
{
    const std::filesystem::path* file = candidates.fileFor(facts.family);
    if (file == nullptr) return facts;
    if (auto text = licenseText(*file)) {
        facts.licenseDescription = std::move(text);
        facts.licenseFile = repairedUtf8(file->native());
    }
    return facts;
}

FontFacts attach(FontFacts facts, std::span<const std::filesystem::path> candidates)
{
    return attach(std::move(facts), Candidates(candidates));
}

} // namespace LicenseFile
} // namespace quillmark
