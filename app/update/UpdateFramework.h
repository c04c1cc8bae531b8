// What the menu's command needs of a component that looks for updates: another one than ours would
// be wrapped in this.
#pragma once

#include <optional>
#include <string>

namespace quillmark {

class UpdateFramework {
public:
    virtual ~UpdateFramework() = default;

    /// Begins the checks that nobody asks for, where the user wants them. Called once.
    virtual void start() = 0;
    /// Where the list of updates is; absent when there is none to ask for.
    [[nodiscard]] virtual std::optional<std::string> feedURL() const = 0;
    /// Checks because the user has asked for it, and shows what comes of it, whatever that is.
    virtual void checkForUpdates() = 0;
};

} // namespace quillmark
