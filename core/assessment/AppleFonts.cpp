#include "assessment/AppleFonts.h"

#include "assessment/Needle.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace quillmark::AppleFonts {
namespace {

// The two asset folders go by numbered names, so they end without a slash.
constexpr auto systemFolders = std::to_array<std::string_view>({
    "/System/Library/Fonts/",
    "/System/Library/AssetsV2/com_apple_MobileAsset_Font",
    "/System/Library/Assets/com_apple_MobileAsset_Font",
    "/System/Library/PrivateFrameworks/FontServices.framework/",
    "/Library/Application Support/Apple/Fonts/",
});
static_assert(systemFolders.size() == 5);

// How PostScript names of families that ship with macOS begin. A hyphen at the end keeps other
// makers' families out: "AvenirLTStd" is not Apple's. ".SF" covers the hidden system faces.
constexpr auto knownNames = std::to_array<std::string_view>({
    ".SF",           "SFPro",         "SFCompact",
    "SFMono",        "SFNS",          "NewYork",
    "AvenirNext",    "Avenir-",       "HelveticaNeue",
    "Helvetica",     "Menlo",         "Monaco",
    "Geneva",        "LucidaGrande",  "Futura",
    "Optima",        "GillSans",      "Baskerville",
    "Didot",         "HoeflerText",   "Palatino",
    "Times-",        "TimesNewRoman", "Charter",
    "Chalkboard",    "MarkerFelt",    "Noteworthy",
    "Papyrus",       "Copperplate",   "AmericanTypewriter",
    "Cochin",        "Seravek",       "Superclarendon",
    "Athelas",       "Iowan",         "AppleColorEmoji",
    "AppleSDGothic", "AppleBraille",  "AppleChancery",
    "AppleMyungjo",  "Hiragino",      "PingFang",
    "STHeiti",       "Kefa",          "Kohinoor",
    "Skia",          "Zapfino",       "ArialRoundedMT",
    "BradleyHand",   "Chalkduster",   "Phosphate",
    "SignPainter",   "Trattatello",   "Rockwell",
    "Bodoni",        "BigCaslon",     "Damascus",
    "Farah",         "GeezaPro",      "Mishafi",
    "Muna",          "Sana",          "Thonburi",
    "Mshtakan",
});
static_assert(knownNames.size() == 64);

constexpr std::string_view vendorID = "APPL";

// No character beyond ASCII stands for any of these letters when case is ignored.
constexpr auto copyrightHolders = std::to_array<Needle>({
    "apple inc",
    "apple computer",
});

bool startsWithAnyOf(std::string_view text, const auto& prefixes)
{
    return std::ranges::any_of(
        prefixes, [text](std::string_view prefix) { return text.starts_with(prefix); });
}

bool namesAppleAsMaker(const FontFacts& facts)
{
    if (facts.os2 && facts.os2->vendorID == vendorID) return true;
    return facts.copyright && std::ranges::any_of(copyrightHolders, [&](const Needle& holder) {
               return holder.occursIn(*facts.copyright);
           });
}

} // namespace

std::optional<Origin> origin(const FontFacts& facts)
{
    if (facts.filePath && startsWithAnyOf(*facts.filePath, systemFolders))
        return Origin{Origin::Kind::systemFolder, *facts.filePath};
    if (namesAppleAsMaker(facts)) return Origin{Origin::Kind::appleMade, {}};
    // With a file at hand its own data decide; a name alone proves nothing then.
    if (!facts.filePath && facts.origin == FontOrigin::document &&
        startsWithAnyOf(facts.postScriptName, knownNames))
        return Origin{Origin::Kind::knownName, {}};
    return std::nullopt;
}

} // namespace quillmark::AppleFonts
