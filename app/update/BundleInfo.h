// What a build says about itself where updates are concerned.
#pragma once

#include <optional>
#include <string>

namespace quillmark {

/// Settings of the build, each absent when it was left empty.
struct BundleInfo {
    std::optional<std::string> displayName{};
    std::optional<std::string> name{};
    std::optional<std::string> shortVersion{}; // what people call it
    std::optional<std::string> version{};      // what decides whether a listed one is newer
    std::optional<std::string> feedURL{};      // where the list of updates is
    std::optional<std::string> publicKey{};    // the list's publisher's; Ed25519 in Base64

    /// What texts call the program: the display name, else the name, else "This app".
    [[nodiscard]] std::string appName() const;
    /// What this copy is compared with and shown as, when one of the two was left empty.
    [[nodiscard]] std::string comparedVersion() const;
    [[nodiscard]] std::string displayVersion() const;

    bool operator==(const BundleInfo&) const = default;
};

/// The settings of this build. Every program has its own: the CMake function quillmark_bundle_info
/// writes it.
[[nodiscard]] BundleInfo builtBundleInfo();

} // namespace quillmark
