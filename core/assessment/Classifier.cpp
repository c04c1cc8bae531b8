#include "assessment/Classifier.h"

#include "assessment/AppleFonts.h"
#include "fontfile/EmbeddingRights.h"

#include <initializer_list>
#include <iterator>
#include <optional>
#include <utility>
#include <vector>

namespace quillmark::Classifier {
namespace {

using Reasons = std::vector<std::string>;

std::string concatenated(std::initializer_list<std::string_view> parts)
{
    std::size_t size = 0;
    for (const auto part : parts)
        size += part.size();
    std::string text;
    text.reserve(size);
    for (const auto part : parts)
        text += part;
    return text;
}

std::string_view lastPathComponent(std::string_view path)
{
    return path.substr(path.rfind('/') + 1);
}

std::optional<EmbeddingRights> embeddingRights(const FontFacts& facts)
{
    if (!facts.os2) return std::nullopt;
    return EmbeddingRights{facts.os2->fsType};
}

/// What follows the embedding bits' value.
std::string_view embeddingSentenceEnding(EmbeddingRights::Level level)
{
    using Level = EmbeddingRights::Level;
    switch (level) {
    case Level::installable:
        return "): installable, no restriction set. Many fonts set these loosely, so they don't "
               "settle it.";
    case Level::restricted:
        return "): Restricted License, which means the font must not be embedded in documents.";
    case Level::previewAndPrint:
        return "): preview & print, so it may be embedded in documents like PDFs for viewing and "
               "printing only.";
    case Level::editable:
        return "): editable, so it may be embedded in documents that others can edit.";
    }
    return {};
}

void appendEmbeddingReasons(Reasons& reasons, const FontFacts& facts)
{
    const auto rights = embeddingRights(facts);
    if (!rights) {
        // Fonts taken from PDFs often lack the table; saying so of each would be noise.
        if (facts.origin != FontOrigin::document)
            reasons.emplace_back("No OS/2 table, so there are no embedding bits to read.");
        return;
    }
    reasons.push_back(concatenated(
        {"Embedding bits (fsType ", rights->hex(), embeddingSentenceEnding(rights->level())}));
    if (rights->noSubsetting())
        reasons.emplace_back(
            "It asks to be embedded whole (no subsetting); most PDF tools subset fonts.");
    if (rights->bitmapOnly()) reasons.emplace_back("Only bitmaps may be embedded, not outlines.");
}

/// What an open licence allows; empty for the others.
std::string_view permission(LicenseKind license)
{
    switch (license) {
    case LicenseKind::ofl:
        return "The OFL allows using, embedding and bundling it, also in products you sell; you "
               "can't sell the font file by itself, and Reserved Font Names limit renamed copies.";
    case LicenseKind::apache:
        return "The Apache License allows embedding and bundling it, also commercially, keeping "
               "its notices.";
    case LicenseKind::ufl:
        return "The Ubuntu Font Licence allows embedding and bundling it, also commercially; "
               "renamed modified copies have rules.";
    case LicenseKind::mit:
        return "The MIT License allows embedding and bundling it, keeping the copyright notice.";
    case LicenseKind::publicDomain:
        return "Public domain / CC0 fonts have no restriction on embedding.";
    case LicenseKind::bitstreamVera:
        return "The Bitstream Vera license allows embedding and bundling it; you can't sell the "
               "font by itself.";
    case LicenseKind::gpl:
    case LicenseKind::named:
    case LicenseKind::none:
        break;
    }
    return {};
}

std::string_view appleReason(AppleFonts::Origin::Kind kind)
{
    using Kind = AppleFonts::Origin::Kind;
    switch (kind) {
    case Kind::systemFolder:
        return "It's installed in a macOS system font folder.";
    case Kind::appleMade:
        return "Its data names Apple as its maker.";
    case Kind::knownName:
        return "Its name matches a family that ships with macOS (no installed copy was found to "
               "read).";
    }
    return {};
}

void assessRestrictedBits(Assessment& assessment)
{
    assessment.verdict = Verdict::restricted;
    assessment.headline = "The font's embedding bits forbid embedding it.";
    if (isOpen(assessment.license))
        assessment.reasons.push_back(concatenated(
            {"Its license text names the ", label(assessment.license),
             ", which conflicts with the restricted bits; ask the designer which applies."}));
}

void assessOpenLicense(Assessment& assessment, const FontFacts& facts)
{
    const std::string_view licenseLabel = label(assessment.license);
    assessment.verdict = Verdict::likelyOK;
    assessment.headline = concatenated({"Names the ", licenseLabel, "."});
    assessment.reasons.push_back(concatenated(
        {facts.licenseFile ? "Its license names" : "The font's own license fields name", " the ",
         licenseLabel, sourceNote(facts), "."}));
    assessment.reasons.emplace_back(permission(assessment.license));
    if (assessment.appleBundled)
        assessment.reasons.emplace_back(
            "This copy came with macOS. The font's makers publish it under this license; for a "
            "product, use a copy downloaded from them.");
}

void assessAppleFont(Assessment& assessment, const FontFacts& facts,
                     AppleFonts::Origin::Kind origin)
{
    assessment.verdict = Verdict::restricted;
    assessment.headline = "Apple system font: licensed for use on Apple devices.";
    assessment.reasons.emplace_back(appleReason(origin));
    const std::string maker =
        facts.manufacturer ? concatenated({" (", *facts.manufacturer, ")"}) : std::string();
    assessment.reasons.push_back(concatenated(
        {"Apple licenses the fonts that come with macOS for use on Apple devices. Selling a "
         "product with one embedded (a printable, an ebook, an app) generally needs a license "
         "from the font's owner",
         maker, "."}));
}

/// For the GPL, a licence of its own, or none.
void assessUnsettled(Assessment& assessment, const FontFacts& facts)
{
    assessment.verdict = Verdict::unknown;
    if (assessment.license == LicenseKind::gpl) {
        assessment.headline = "GPL font: embedding is allowed only with the GPL font exception.";
        assessment.reasons.emplace_back(
            "Its license fields name the GNU GPL. Without the font exception, embedding it can put "
            "a document under the GPL; check the font's project page.");
    } else if (assessment.license == LicenseKind::named) {
        assessment.headline = "Has its own license; its terms decide.";
        assessment.reasons.push_back(concatenated(
            {"The font names a license that isn't an open one this app recognizes",
             sourceNote(facts),
             ". Commercial licenses usually split desktop, web, app-embedding and ebook use; check "
             "what you bought."}));
    } else {
        assessment.headline = "No license text in the font.";
        assessment.reasons.push_back(
            concatenated({"The font has no license description or URL to read",
                          facts.copyright ? "; only its copyright line" : "",
                          ". Find where it came from and what that license allows."}));
    }
}

} // namespace

Assessment assess(const FontFacts& facts)
{
    const auto apple = AppleFonts::origin(facts);
    const auto rights = embeddingRights(facts);

    Assessment assessment;
    assessment.license = detectLicense(facts);
    assessment.appleBundled = apple.has_value();
    constexpr std::size_t usualCount = 4;
    assessment.reasons.reserve(usualCount);
    // The order is the precedence: bits that forbid embedding outweigh any licence, and an open
    // licence outweighs that the copy at hand came with macOS.
    if (rights && rights->level() == EmbeddingRights::Level::restricted)
        assessRestrictedBits(assessment);
    else if (isOpen(assessment.license))
        assessOpenLicense(assessment, facts);
    else if (apple)
        assessAppleFont(assessment, facts, apple->kind);
    else
        assessUnsettled(assessment, facts);
    appendEmbeddingReasons(assessment.reasons, facts);
    return assessment;
}

std::string sourceNote(const FontFacts& facts)
{
    if (facts.licenseFile)
        return concatenated({" (from the license file next to it, ",
                             lastPathComponent(*facts.licenseFile),
                             "; the font file itself has no license fields)"});
    if (facts.licenseDescription && facts.licenseURL) return " (license text and URL)";
    if (facts.licenseDescription) return " (license text)";
    if (facts.licenseURL) return " (license URL)";
    // Only copyright and trademark are left that a licence can have been recognised in.
    return " (copyright line)";
}

} // namespace quillmark::Classifier
