#include "library/SFNTFile.h"

#include "fontfile/ByteReader.h"
#include "fontfile/FontFacts.h"
#include "fontfile/SFNT.h"
#include "library/Limits.h"
#include "library/SfntTags.h"

#include <map>
#include <utility>

namespace quillmark {
namespace {

using Table = std::optional<std::vector<std::byte>>;

constexpr std::size_t collectionHeaderSize = 12;
/// Holds the directory of all but the strangest fonts (63 tables), so that it takes one read.
constexpr std::size_t usualDirectorySize = 1024;

/// The tables of one file's faces. Those of a collection are often shared; each is read once.
class TableReader {
public:
    TableReader(const HeadedSource& file, bool areShared) : m_file(file), m_areShared(areShared) {}

    [[nodiscard]] Table read(const std::optional<SFNT::TableRange>& range)
    {
        if (!range || range->length > m_left) return std::nullopt;
        Table table = m_areShared ? shared(*range) : copy(*range);
        if (table) m_left -= range->length;
        return table;
    }

private:
    [[nodiscard]] Table copy(const SFNT::TableRange& range) const
    {
        return m_file.copy(range.offset, static_cast<std::size_t>(range.length));
    }

    [[nodiscard]] Table shared(const SFNT::TableRange& range)
    {
        const auto [entry, isNew] = m_read.try_emplace({range.offset, range.length});
        if (isNew) entry->second = copy(range);
        return entry->second;
    }

    const HeadedSource& m_file;
    bool m_areShared{};
    std::uint64_t m_left{Limits::tableBytes};
    std::map<std::pair<std::uint64_t, std::uint64_t>, Table> m_read;
};

std::optional<SFNT::FaceLayout> layoutAt(const HeadedSource& file, std::uint64_t offset)
{
    std::vector<std::byte> scratch;
    auto directory = file.view(offset, usualDirectorySize, scratch);
    const auto size = SFNT::directorySize(directory);
    if (!size) return std::nullopt;
    if (*size > directory.size()) directory = file.view(offset, *size, scratch);
    return SFNT::layout(directory, file.size());
}

std::vector<std::uint32_t> faceOffsets(const HeadedSource& file)
{
    if (!SFNT::isCollection(file.head())) return {0};
    const std::uint32_t count = SFNT::collectionFaceCount(file.head()).value_or(0);
    std::vector<std::byte> scratch;
    const ByteReader entries(file.view(collectionHeaderSize, std::size_t{4} * count, scratch));
    std::vector<std::uint32_t> offsets;
    for (std::size_t at = 0; const auto offset = entries.u32(at); at += 4)
        offsets.push_back(*offset);
    return offsets;
}

} // namespace

namespace SFNTFile {

bool isOne(const HeadedSource& file)
{
    if (SFNT::isCollection(file.head())) return true;
    const auto version = ByteReader(file.head()).u32(0);
    return version && isSfntFace(*version, 0);
}

std::vector<PlatformFont> faces(const HeadedSource& file, Faces which)
{
    std::vector<PlatformFont> found;
    const std::vector<std::uint32_t> offsets = faceOffsets(file);
    TableReader tables(file, offsets.size() > 1);
    std::uint32_t index = 0;
    for (const std::uint32_t offset : offsets) {
        const std::uint32_t place = index++;
        const auto layout = layoutAt(file, offset);
        if (!layout || (which == Faces::variable && !layout->fvar)) continue;
        PlatformFont& face = found.emplace_back();
        face.index = place;
        face.format = layout->outlines == FormatLabel::openTypeCFF ? FontFormat::openTypePostScript
                                                                   : FontFormat::trueType;
        face.name = tables.read(layout->name);
        face.os2 = tables.read(layout->os2);
        if (which == Faces::variable) face.fvar = tables.read(layout->fvar);
    }
    return found;
}

} // namespace SFNTFile
} // namespace quillmark
