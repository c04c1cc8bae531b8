// The seam between the check for updates and what the user sees of it. The windows implement it;
// tests have a fake.
#pragma once

#include "update/UpdateTexts.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>

namespace quillmark {

/// A newer version.
struct UpdateOffer {
    /// Who brought it up. Only what somebody has asked for may take the focus.
    enum class Cause { user, schedule };

    std::string appName;
    std::string version;          // as people call it
    std::string installedVersion; // likewise; may be empty
    std::optional<std::chrono::sys_seconds> published;
    std::string notes;                    // HTML for simple viewers; empty when there are none
    std::optional<std::string> notesPage; // where there is more, for the browser
    std::optional<std::string> page;      // where to get it, for the browser
    bool critical{};                      // not to be skipped
    bool checksAutomatically{};
    Cause cause{};

    bool operator==(const UpdateOffer&) const = default;
};

/// What the user may do with an offer, besides opening its pages and putting it off. All are safe
/// to call for as long as anybody cares to.
struct UpdateAnswers {
    std::function<void()> skip;
    std::function<void(bool)> checkAutomatically;
};

/// All functions are called on the main thread and return at once.
class UpdatePresenter {
public:
    virtual ~UpdatePresenter() = default;

    virtual void showAlert(const UpdateAlert& alert) = 0;
    /// Asks a question that nothing waits for. It is answered once, or never.
    virtual void askForConsent(const UpdateAlert& question, std::function<void(bool)> answer) = 0;
    /// A newer offer takes the place of one that is still shown.
    virtual void showUpdate(const UpdateOffer& offer, UpdateAnswers answers) = 0;
};

} // namespace quillmark
