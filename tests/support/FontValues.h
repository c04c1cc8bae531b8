// Made-up fonts for the fake font service, by what they say about themselves.
#pragma once

#include "support/FakeFontService.h"
#include "support/TemporaryFolder.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmark::test {

/// What a made-up font says about itself; empty texts are left out.
struct FontValues {
    std::u16string family{};
    std::u16string style{u"Regular"};
    std::u16string fullName{};
    std::string postScriptName{};
    std::u16string copyright{};
    std::u16string manufacturer{};
    std::u16string license{};
    std::u16string licenseURL{};
    std::u16string instance{}; // the style of a named instance, which makes the font a variable one
    std::optional<std::uint16_t> fsType{};
};

inline constexpr std::uint16_t forbidden = 0x0002; // fsType: Restricted License
inline constexpr std::uint16_t installable = 0;    // fsType: no restriction
inline constexpr std::u16string_view openFontLicense =
    u"This Font Software is licensed under the SIL Open Font License, Version 1.1.";

[[nodiscard]] PlatformFont platformFont(const FontValues& values);

/// One font of each verdict.
[[nodiscard]] FontValues restrictedFont();
[[nodiscard]] FontValues unknownFont();
[[nodiscard]] FontValues likelyOKFont();

/// Adds the font to those that are installed, as /fonts/POSTSCRIPTNAME.ttf.
void install(FakeFontService& service, const FontValues& values);

/// Writes a file that stands for a font with these faces; returns its path.
std::filesystem::path addFile(FakeFontService& service, const TemporaryFolder& folder,
                              const std::filesystem::path& relative,
                              const std::vector<FontValues>& faces);

} // namespace quillmark::test
