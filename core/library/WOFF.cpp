#include "library/WOFF.h"

#include "fontfile/ByteReader.h"
#include "library/Inflate.h"
#include "library/Limits.h"
#include "library/SfntTags.h"

#include <algorithm>
#include <cstdint>
#include <optional>

namespace quillmark {
namespace {

constexpr std::size_t headerSize = 44;
constexpr std::size_t recordSize = 20;

struct Record {
    std::uint32_t tag{};
    std::uint64_t offset{};
    std::uint64_t storedLength{};
    std::uint64_t length{};
};

/// The records that lie inside the file; absent when there is no face.
std::optional<std::vector<Record>> directory(const HeadedSource& file)
{
    const ByteReader header(file.head());
    const auto version = header.u32(4);
    const auto count = header.u16(12);
    if (!version || !count || !isSfntFace(*version, *count)) return std::nullopt;
    std::vector<std::byte> scratch;
    const ByteReader bytes(file.view(headerSize, *count * recordSize, scratch));
    if (bytes.size() < *count * recordSize) return std::nullopt;
    std::vector<Record> records;
    for (std::size_t at = 0; at < bytes.size(); at += recordSize) {
        const Record record{
            *bytes.u32(at),
            *bytes.u32(at + 4),
            *bytes.u32(at + 8),
            *bytes.u32(at + 12),
        };
        if (record.offset + record.storedLength <= file.size()) records.push_back(record);
    }
    return records;
}

/// Decodes tables until the file has given as much as it may.
class TableReader {
public:
    TableReader(const HeadedSource& file, const std::vector<Record>& records)
        : m_file(file), m_records(records)
    {
    }

    /// The table of the last usable record with this tag, as in a plain font file.
    [[nodiscard]] std::optional<std::vector<std::byte>> read(std::uint32_t tag)
    {
        for (auto record = m_records.rbegin(); record != m_records.rend(); ++record) {
            if (record->tag != tag) continue;
            if (auto table = decoded(*record)) return table;
        }
        return std::nullopt;
    }

private:
    [[nodiscard]] std::optional<std::vector<std::byte>> decoded(const Record& record)
    {
        if (record.storedLength > record.length || record.length > m_left) return std::nullopt;
        const auto length = static_cast<std::size_t>(record.length);
        m_left -= record.length; // also for damaged data, which cost as much
        if (record.storedLength == record.length) return m_file.copy(record.offset, length);
        auto table =
            inflated(m_file.source(), record.offset, record.storedLength, Wrapper::zlib, length);
        if (table && table->size() != length) return std::nullopt;
        return table;
    }

    const HeadedSource& m_file;
    const std::vector<Record>& m_records;
    std::uint64_t m_left{Limits::decodedBytes};
};

} // namespace

namespace WOFF {

bool isOne(const HeadedSource& file)
{
    return ByteReader(file.head()).u32(0) == sfntTag("wOFF");
}

std::vector<PlatformFont> faces(const HeadedSource& file, Faces which)
{
    const auto records = directory(file);
    if (!records) return {};
    if (which == Faces::variable &&
        std::ranges::find(*records, sfntTag("fvar"), &Record::tag) == records->end())
        return {};
    TableReader tables(file, *records);
    PlatformFont face;
    face.name = tables.read(sfntTag("name"));
    face.os2 = tables.read(sfntTag("OS/2"));
    if (which == Faces::variable) face.fvar = tables.read(sfntTag("fvar"));
    return {std::move(face)};
}

} // namespace WOFF
} // namespace quillmark
