// The list of updates that a publisher keeps on the web: RSS 2.0 with elements for software
// updates, as docs/updates.md describes it.
#pragma once

#include <QByteArray>

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace quillmark {

/// One version that is offered for this system.
struct AppcastItem {
    enum class NotesFormat { html, plainText };

    std::string version;                     // what decides the order
    std::optional<std::string> shortVersion; // what people call it
    std::optional<std::string> title;
    std::optional<std::string> link;             // as it stands there; see Links.h
    std::optional<std::string> releaseNotesLink; // likewise
    std::optional<std::string> description;      // the release notes
    NotesFormat notesFormat{};
    std::optional<std::chrono::sys_seconds> published;
    bool critical{};
    std::optional<std::string> criticalBelow; // critical only for older versions than this

    [[nodiscard]] const std::string& displayVersion() const
    {
        return shortVersion ? *shortVersion : version;
    }
    /// Whether those who have `installed` should not put it off.
    [[nodiscard]] bool isCriticalFor(std::string_view installed) const;
    bool operator==(const AppcastItem&) const = default;
};

struct Appcast {
    std::optional<std::string> link; // the publisher's page
    std::vector<AppcastItem> items;  // in the order of the list

    /// The one with the highest version; null when there are none.
    [[nodiscard]] const AppcastItem* newest() const;
    bool operator==(const Appcast&) const = default;
};

/// Why a text is no list of updates, as the end of a sentence.
struct AppcastDamage {
    std::string reason;
    bool operator==(const AppcastDamage&) const = default;
};

/// Reads a list in UTF-8. Items without a version, of a channel of their own (such as "beta") or
/// only for other systems are left out. `system` is this one's name, such as "linux-x64".
[[nodiscard]] std::variant<Appcast, AppcastDamage> parseAppcast(const QByteArray& bytes,
                                                                std::string_view system);

/// The name of the system that runs this program.
[[nodiscard]] std::string runningSystem();

} // namespace quillmark
