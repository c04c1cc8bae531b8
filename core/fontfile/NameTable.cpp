#include "fontfile/NameTable.h"

#include "fontfile/ByteReader.h"
#include "text/Encoding.h"
#include "text/Trim.h"

#include <algorithm>
#include <bitset>
#include <iterator>
#include <limits>
#include <utility>
#include <vector>

namespace quillmark {
namespace {

constexpr std::size_t recordsStart = 6;
constexpr std::size_t recordSize = 12;

enum class TextEncoding { utf16, macRoman };

/// How a record's string is stored, and how much it is preferred; higher is better.
struct Reading {
    TextEncoding encoding{};
    std::uint8_t rank{};
};

/// Absent for a string that is not read at all.
std::optional<Reading> reading(std::uint16_t platform, std::uint16_t encoding,
                               std::uint16_t language)
{
    constexpr std::uint16_t windowsEnglishUnitedStates = 0x409;
    constexpr std::uint16_t macintoshEnglish = 0;
    switch (platform) {
    case 0: // Unicode
        return Reading{TextEncoding::utf16, 2};
    case 1: // Macintosh; of its scripts only Roman
        if (encoding != 0) return std::nullopt;
        return Reading{TextEncoding::macRoman,
                       static_cast<std::uint8_t>(language == macintoshEnglish ? 1 : 0)};
    case 3: // Windows: symbol, Unicode BMP and full Unicode
        if (encoding != 0 && encoding != 1 && encoding != 10) return std::nullopt;
        return Reading{TextEncoding::utf16,
                       static_cast<std::uint8_t>(language == windowsEnglishUnitedStates ? 4 : 3)};
    default:
        return std::nullopt;
    }
}

/// One record of the table whose string can be read.
struct Candidate {
    /// The order in which strings are taken: by identifier, best first, among equals the earlier
    /// record. One number, since finding this order is much of the work on a table.
    std::uint64_t order{};
    TextEncoding encoding{};
    std::span<const std::byte> bytes;

    [[nodiscard]] std::uint16_t nameID() const { return static_cast<std::uint16_t>(order >> 48U); }
};

/// `position` is that of the record in the table.
std::uint64_t takingOrder(std::uint16_t nameID, std::uint8_t rank, std::uint16_t position)
{
    constexpr std::uint64_t bestRank = 0xFF;
    return std::uint64_t{nameID} << 48U | (bestRank - rank) << 32U | position;
}

std::optional<Candidate> candidate(const ByteReader& record, std::uint16_t position,
                                   const ByteReader& table, std::size_t stringOffset)
{
    const auto how = reading(*record.u16(0), *record.u16(2), *record.u16(4));
    if (!how) return std::nullopt;
    const std::size_t length = *record.u16(8);
    if (length == 0) return std::nullopt;
    if (how->encoding == TextEncoding::utf16 && length % 2 != 0) return std::nullopt;
    const auto bytes = table.slice(stringOffset + *record.u16(10), length);
    if (!bytes) return std::nullopt;
    return Candidate{takingOrder(*record.u16(6), how->rank, position), how->encoding, *bytes};
}

/// The identifiers whose strings are wanted.
class Wanted {
public:
    static Wanted all() { return Wanted(); }
    explicit Wanted(std::span<const NameID> ids) : m_isLimited(true)
    {
        for (const NameID id : ids)
            m_ids.set(static_cast<std::size_t>(id));
    }

    [[nodiscard]] bool has(std::uint16_t id) const
    {
        return !m_isLimited || (id < m_ids.size() && m_ids[id]);
    }

private:
    Wanted() = default;

    bool m_isLimited{};
    std::bitset<32> m_ids; // every NameID is less
};
static_assert(std::ranges::all_of(allNameIDs,
                                  [](NameID id) { return static_cast<std::size_t>(id) < 32; }));

/// Of a table that is long enough for its header.
std::vector<Candidate> candidates(const ByteReader& table, const Wanted& wanted)
{
    std::vector<Candidate> found;
    const std::uint16_t count = *table.u16(2);
    const std::uint16_t stringOffset = *table.u16(4);
    found.reserve(std::min<std::size_t>(count, (table.size() - recordsStart) / recordSize));
    for (std::uint16_t i = 0; i < count; ++i) {
        const auto bytes = table.slice(recordsStart + i * recordSize, recordSize);
        if (!bytes) break; // the records behind it lie past the end as well
        const ByteReader record(*bytes);
        if (!wanted.has(*record.u16(6))) continue;
        if (const auto next = candidate(record, i, table, stringOffset)) found.push_back(*next);
    }
    return found;
}

std::optional<std::string> decoded(const Candidate& candidate)
{
    return trimmedOrAbsent(candidate.encoding == TextEncoding::utf16
                               ? decodeUtf16BigEndian(candidate.bytes)
                               : decodeMacRoman(candidate.bytes),
                           TrimAlso::nul);
}

/// Takes `amount` off `budget` if it has that much left.
bool spend(std::size_t& budget, std::size_t amount)
{
    if (amount > budget) return false;
    budget -= amount;
    return true;
}

NameStrings chosen(std::span<const std::byte> table, std::size_t& budget, const Wanted& wanted)
{
    NameStrings strings;
    const ByteReader reader(table);
    if (reader.size() < recordsStart) return strings;
    const std::size_t records = std::min<std::size_t>(*reader.u16(2) * recordSize, reader.size());
    if (!spend(budget, records)) return strings;

    std::vector<Candidate> ordered = candidates(reader, wanted);
    std::ranges::sort(ordered, {}, &Candidate::order);
    std::size_t textLeft = std::min(budget, NameTable::maximumTextBytes);
    const std::size_t textBefore = textLeft;
    for (const Candidate& candidate : ordered) {
        // The best string of an identifier is decoded; the others only while those before them turn
        // out to be blank.
        if (!strings.empty() && std::prev(strings.end())->first == candidate.nameID()) continue;
        if (!spend(textLeft, candidate.bytes.size())) continue;
        if (auto text = decoded(candidate)) strings.add(candidate.nameID(), *std::move(text));
    }
    budget -= textBefore - textLeft;
    return strings;
}

} // namespace

std::optional<NameID> nameID(std::uint16_t raw)
{
    for (const NameID id : allNameIDs)
        if (static_cast<std::uint16_t>(id) == raw) return id;
    return std::nullopt;
}

NameStrings NameTable::strings(std::span<const std::byte> table)
{
    std::size_t budget = std::numeric_limits<std::size_t>::max();
    return strings(table, budget);
}

NameStrings NameTable::strings(std::span<const std::byte> table, std::size_t& budget)
{
    return chosen(table, budget, Wanted::all());
}

NameStrings NameTable::strings(std::span<const std::byte> table, std::size_t& budget,
                               std::span<const NameID> wanted)
{
    return chosen(table, budget, Wanted(wanted));
}

} // namespace quillmark
