// A moment as people of the user's locale write it. Dates in files follow ISO 8601 instead.
#pragma once

#include <chrono>
#include <string>

namespace quillmark {

/// The locale's medium date and short time, in the local time zone, such as
/// "Mar 14, 2026, 9:26 AM".
[[nodiscard]] std::string dateText(std::chrono::sys_seconds moment);

/// The locale's medium date, in the local time zone, such as "Mar 14, 2026".
[[nodiscard]] std::string dayText(std::chrono::sys_seconds moment);

/// The locale's short time, in the local time zone, such as "9:26 AM".
[[nodiscard]] std::string timeText(std::chrono::system_clock::time_point moment);

} // namespace quillmark
