// The OpenType `name` table: one string per name identifier.
#pragma once

#include "fontfile/NameStrings.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace quillmark {

/// The name identifiers that are used (OpenType `name`, name IDs).
enum class NameID : std::uint16_t {
    copyright = 0,
    family = 1,
    subfamily = 2,
    fullName = 4,
    postScriptName = 6,
    trademark = 7,
    manufacturer = 8,
    designer = 9,
    description = 10,
    vendorURL = 11,
    designerURL = 12,
    licenseDescription = 13,
    licenseURL = 14,
    typographicFamily = 16,
    typographicSubfamily = 17,
};

/// Every NameID in declaration order.
inline constexpr std::array allNameIDs{
    NameID::copyright,
    NameID::family,
    NameID::subfamily,
    NameID::fullName,
    NameID::postScriptName,
    NameID::trademark,
    NameID::manufacturer,
    NameID::designer,
    NameID::description,
    NameID::vendorURL,
    NameID::designerURL,
    NameID::licenseDescription,
    NameID::licenseURL,
    NameID::typographicFamily,
    NameID::typographicSubfamily,
};

/// The NameID with this identifier; absent for any other number.
[[nodiscard]] std::optional<NameID> nameID(std::uint16_t raw);

namespace NameTable {

/// The most text, in bytes as stored, that is decoded from one table. No real font comes near it;
/// it bounds the work on a table whose records all point at the same long string. A string that
/// would go beyond it is left out; strings of low identifiers come first.
inline constexpr std::size_t maximumTextBytes = std::size_t{16} << 20U;

/// The most name data, records and text in bytes as stored, that is read from all tables of one
/// file together: thousands of faces can share one large table.
inline constexpr std::size_t maximumFileBytes = std::size_t{64} << 20U;

/// The best string for each identifier: Windows English (United States), other Windows languages,
/// the Unicode platform, Macintosh English, other Macintosh languages. Trimmed of white space and
/// NUL; never empty. An empty map for unusable input.
[[nodiscard]] NameStrings strings(std::span<const std::byte> table);

/// The same for one of several tables in a file. What is read is taken off `budget`, which starts
/// as maximumFileBytes; a table whose records go beyond it yields nothing, a string that does is
/// left out.
[[nodiscard]] NameStrings strings(std::span<const std::byte> table, std::size_t& budget);

/// The same for these identifiers only; the text of others costs nothing.
[[nodiscard]] NameStrings strings(std::span<const std::byte> table, std::size_t& budget,
                                  std::span<const NameID> wanted);

} // namespace NameTable
} // namespace quillmark
