#include "fontfile/SFNT.h"

#include "fontfile/ByteReader.h"
#include "fontfile/FormatLabel.h"

#include <algorithm>
#include <array>

namespace quillmark {
namespace {

constexpr std::uint32_t tag(std::string_view characters)
{
    std::uint32_t value = 0;
    for (const char character : characters)
        value = value << 8U | static_cast<unsigned char>(character);
    return value;
}

constexpr std::uint32_t openTypeCFFVersion = tag("OTTO");
constexpr std::array<std::uint32_t, 4> acceptedVersions{
    0x00010000, openTypeCFFVersion,
    tag("true"), // Apple's TrueType
    tag("typ1"), // Apple's wrapper around Type 1
};

// No real font comes near either limit; they bound the work on hostile input.
constexpr std::uint16_t maximumTables = 511;
constexpr std::uint32_t maximumFaces = 9999;

constexpr std::size_t tableRecordsStart = 12;
constexpr std::size_t tableRecordSize = 16;
constexpr std::size_t faceOffsetsStart = 12;

/// The number of tables that the offset table at the start of `directory` declares; absent when
/// that is no offset table of a face.
std::optional<std::uint16_t> tableCount(const ByteReader& directory)
{
    const auto version = directory.u32(0);
    const auto count = directory.u16(4);
    if (!version || !count || *count > maximumTables) return std::nullopt;
    if (std::ranges::find(acceptedVersions, *version) == acceptedVersions.end())
        return std::nullopt;
    return count;
}

bool sameBytes(const std::optional<std::span<const std::byte>>& left,
               const std::optional<std::span<const std::byte>>& right)
{
    if (!left || !right) return left.has_value() == right.has_value();
    return std::ranges::equal(*left, *right);
}

std::optional<std::span<const std::byte>> tableBytes(const std::optional<SFNT::TableRange>& range,
                                                     std::span<const std::byte> bytes)
{
    if (!range) return std::nullopt;
    return ByteReader(bytes).slice(range->offset, range->length);
}

} // namespace

bool operator==(const SFNTFace& left, const SFNTFace& right)
{
    return left.outlines == right.outlines && sameBytes(left.name, right.name) &&
           sameBytes(left.os2, right.os2);
}

namespace SFNT {

std::optional<FaceLayout> layout(std::span<const std::byte> directory, std::uint64_t fileSize)
{
    const ByteReader reader(directory);
    const auto count = tableCount(reader);
    if (!count) return std::nullopt;

    FaceLayout layout;
    layout.outlines =
        reader.u32(0) == openTypeCFFVersion ? FormatLabel::openTypeCFF : FormatLabel::trueType;
    for (std::size_t i = 0; i < *count; ++i) {
        const auto bytes = reader.slice(tableRecordsStart + i * tableRecordSize, tableRecordSize);
        if (!bytes) return std::nullopt;
        const ByteReader record(*bytes);
        const TableRange range{*record.u32(8), *record.u32(12)};
        if (range.offset + range.length > fileSize) continue;
        switch (*record.u32(0)) {
        case tag("name"):
            layout.name = range;
            break;
        case tag("OS/2"):
            layout.os2 = range;
            break;
        case tag("fvar"):
            layout.fvar = range;
            break;
        default:
            break;
        }
    }
    return layout;
}

std::optional<std::size_t> directorySize(std::span<const std::byte> header)
{
    const auto count = tableCount(ByteReader(header));
    if (!count) return std::nullopt;
    // A face without tables need not even have the search fields behind the count.
    return *count == 0 ? 6 : tableRecordsStart + *count * tableRecordSize;
}

bool isCollection(std::span<const std::byte> header)
{
    return ByteReader(header).u32(0) == tag("ttcf");
}

std::optional<std::uint32_t> collectionFaceCount(std::span<const std::byte> header)
{
    const auto count = ByteReader(header).u32(8);
    if (!count || *count == 0 || *count > maximumFaces) return std::nullopt;
    return count;
}

std::vector<SFNTFace> faces(std::span<const std::byte> bytes)
{
    std::vector<SFNTFace> found;
    if (!isCollection(bytes)) {
        if (auto only = face(0, bytes)) found.push_back(*only);
        return found;
    }
    const ByteReader reader(bytes);
    const std::uint32_t count = collectionFaceCount(bytes).value_or(0);
    for (std::size_t i = 0; i < count; ++i) {
        const auto offset = reader.u32(faceOffsetsStart + 4 * i);
        if (!offset) break; // the entries behind it lie past the end as well
        if (auto next = face(*offset, bytes)) found.push_back(*next);
    }
    return found;
}

std::optional<SFNTFace> face(std::size_t offset, std::span<const std::byte> bytes)
{
    if (offset > bytes.size()) return std::nullopt;
    const auto found = layout(bytes.subspan(offset), bytes.size());
    if (!found) return std::nullopt;
    return SFNTFace{
        tableBytes(found->name, bytes),
        tableBytes(found->os2, bytes),
        found->outlines,
    };
}

} // namespace SFNT
} // namespace quillmark
