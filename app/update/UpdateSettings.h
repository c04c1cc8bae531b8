// What the check for updates keeps from one run to the next, beside the model's settings in the
// same file.
#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

namespace quillmark {

struct UpdateSettings {
    static constexpr std::chrono::seconds usualInterval = std::chrono::hours(24);
    static constexpr std::chrono::seconds leastInterval = std::chrono::hours(1);
    static constexpr std::chrono::seconds mostInterval = std::chrono::days(365);

    std::optional<bool> automaticChecks{};               // absent: nobody has been asked yet
    std::optional<std::chrono::sys_seconds> lastCheck{}; // when an answer last came
    std::chrono::seconds checkInterval{usualInterval};   // between the two limits
    std::optional<std::string> skippedVersion{};         // not to be shown by itself again
    int launches{};                                      // how often the program was started

    bool operator==(const UpdateSettings&) const = default;

    /// Absent or the usual for what the file does not say, or says in a way that makes no sense.
    [[nodiscard]] static UpdateSettings load(const std::filesystem::path& file);
    /// Leaves everything else in the file as it is. What cannot be written is forgotten.
    void save(const std::filesystem::path& file) const;
};

/// Whether a check is due that nobody has asked for: only with the user's consent, and when the
/// interval has passed on the wall clock. A last check in the future says that the clock was set.
[[nodiscard]] bool isCheckDue(const UpdateSettings& settings, std::chrono::sys_seconds now);

} // namespace quillmark
