#include "listing/FontFactsText.h"

#include "fontfile/EmbeddingRights.h"
#include "library/FileName.h"
#include "text/Encoding.h"
#include "text/WebLink.h"

#include <algorithm>
#include <utility>

namespace quillmark {
namespace {

using OptionalText = std::optional<std::string>;

OptionalText embeddingBits(const FontFacts& facts)
{
    const auto fsType = facts.fsType();
    if (!fsType) return "None (no OS/2 table)";
    const EmbeddingRights rights{*fsType};
    return rights.summary() + " (fsType " + rights.hex() + ")";
}

struct FontFact {
    std::string_view label;
    OptionalText (*value)(const FontFacts&);
};

constexpr std::array<FontFact, fontFactLabels.size()> fontFacts{{
    {"Family", [](const FontFacts& facts) { return OptionalText(facts.family); }},
    {"Copyright", [](const FontFacts& facts) { return facts.copyright; }},
    {"Trademark", [](const FontFacts& facts) { return facts.trademark; }},
    {"Maker", [](const FontFacts& facts) { return facts.manufacturer; }},
    {"Designer", [](const FontFacts& facts) { return facts.designer; }},
    {"License", [](const FontFacts& facts) { return facts.licenseDescription; }},
    {"License file",
     [](const FontFacts& facts) {
         return facts.licenseFile ? OptionalText(repairedUtf8(FileName::ofPath(*facts.licenseFile)))
                                  : std::nullopt;
     }},
    {linkedFactLabel, [](const FontFacts& facts) { return facts.licenseURL; }},
    {"Embedding bits", embeddingBits},
    {"Vendor ID",
     [](const FontFacts& facts) { return facts.os2 ? facts.os2->vendorID : std::nullopt; }},
    {"Format", [](const FontFacts& facts) { return facts.format; }},
}};

static_assert(std::ranges::equal(fontFacts, fontFactLabels, {}, &FontFact::label));

std::string joined(const std::vector<std::string>& names)
{
    std::string text;
    for (const std::string& name : names) {
        if (!text.empty()) text += ", ";
        text += name;
    }
    return text;
}

std::string match(const PDFFontInfo& pdf)
{
    if (!pdf.matchedPath) return "No installed or scanned font with this name";
    return repairedUtf8(*pdf.matchedPath) + (pdf.matchedByFamily ? " (by family)" : "");
}

struct PDFFact {
    std::string_view label;
    std::string (*value)(const PDFFontInfo&);
};

constexpr std::array<PDFFact, pdfFactLabels.size()> pdfFacts{{
    {"Name in PDF", [](const PDFFontInfo& pdf) { return joined(pdf.pdfNames); }},
    {"Font type", [](const PDFFontInfo& pdf) { return pdf.subtype; }},
    {"Embedded", embeddedText},
    {"Pages", pageRanges},
    {"Matched to", match},
}};

static_assert(std::ranges::equal(pdfFacts, pdfFactLabels, {}, &PDFFact::label));

} // namespace

std::vector<Fact> factsOfFont(const FontFacts& facts)
{
    std::vector<Fact> made;
    for (const FontFact& fact : fontFacts) {
        OptionalText value = fact.value(facts);
        if (!value || value->empty()) continue;
        made.push_back({fact.label, std::move(*value)});
        if (fact.label == linkedFactLabel && made.back().value.starts_with("http"))
            made.back().link = webLink(made.back().value);
    }
    return made;
}

std::vector<Fact> factsOfUse(const PDFFontInfo& pdf)
{
    std::vector<Fact> made;
    for (const PDFFact& fact : pdfFacts)
        if (std::string value = fact.value(pdf); !value.empty())
            made.push_back({fact.label, std::move(value)});
    return made;
}

} // namespace quillmark
