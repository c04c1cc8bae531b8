// Points in time as text and back.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace quillmark {

/// `time` in UTC as "2026-11-21T04:00:00Z" (ISO 8601). Years have four digits: what lies outside
/// 0000 to 9999 becomes the nearest second within.
[[nodiscard]] std::string isoDate(std::chrono::sys_seconds time);

/// The time of a complete ISO 8601 date-time in the extended format, with its zone: "Z" or an
/// offset such as "+01:00", "+0100" or "+01". Fractions of a second are cut off. Absent for any
/// other text, and outside the years 0000 to 9999 of UTC.
[[nodiscard]] std::optional<std::chrono::sys_seconds> parseIsoDate(std::string_view text);

} // namespace quillmark
