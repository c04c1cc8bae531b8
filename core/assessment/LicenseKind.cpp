#include "assessment/LicenseKind.h"

#include "text/Case.h"
#include "text/Trim.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <span>
#include <string>

namespace quillmark {
namespace {

struct Presentation {
    LicenseKind kind;
    std::string_view label;
    bool open;
};

// The licences' own spelling: Ubuntu's is a "Licence", Vera's a lower-case "license".
constexpr auto presentations = std::to_array<Presentation>({
    {LicenseKind::ofl, "SIL Open Font License", true},
    {LicenseKind::apache, "Apache License", true},
    {LicenseKind::ufl, "Ubuntu Font Licence", true},
    {LicenseKind::mit, "MIT License", true},
    {LicenseKind::publicDomain, "Public domain / CC0", true},
    {LicenseKind::bitstreamVera, "Bitstream Vera license", true},
    {LicenseKind::gpl, "GNU GPL", false},
    {LicenseKind::named, "Own license terms", false},
    {LicenseKind::none, "No license text", false},
});

constexpr bool inDeclarationOrder()
{
    for (std::size_t i = 0; i < presentations.size(); ++i)
        if (presentations[i].kind != static_cast<LicenseKind>(i)) return false;
    return presentations.size() == rawValues<LicenseKind>.size();
}
static_assert(inDeclarationOrder());

constexpr const Presentation& presentation(LicenseKind kind)
{
    return presentations[static_cast<std::size_t>(kind)];
}

enum class Where { licenseAndNotices, licenseOnly };
enum class Need { anyNeedle, everyNeedle };

struct Rule {
    LicenseKind kind;
    Where where;
    Need need;
    std::span<const std::string_view> needles;
};

constexpr auto oflNeedles = std::to_array<std::string_view>({
    "open font license",
    "open font licence",
    "scripts.sil.org/ofl",
    "openfontlicense.org",
    "sil ofl",
    "ofl-1.1",
    "ofl 1.1",
});
constexpr auto apacheNeedles = std::to_array<std::string_view>({
    "apache license",
    "apache.org/licenses",
    "apache-2.0",
});
constexpr auto ubuntuNeedles = std::to_array<std::string_view>({
    "ubuntu font licence",
    "ubuntu font license",
});
constexpr auto ubuntuAddressNeedles = std::to_array<std::string_view>({
    "ubuntu",
    "font-licence",
});
constexpr auto veraNeedles = std::to_array<std::string_view>({
    "bitstream vera",
    "gnome.org/fonts",
});
constexpr auto mitNeedles = std::to_array<std::string_view>({
    "mit license",
    "opensource.org/licenses/mit",
});
constexpr auto publicDomainNeedles = std::to_array<std::string_view>({
    "public domain",
    "cc0",
    "creativecommons.org/publicdomain",
});
constexpr auto gplNeedles = std::to_array<std::string_view>({
    "gnu general public license",
    "gnu.org/licenses/gpl",
    "gpl",
});

// Tried in this order; the first that applies decides. Copyright and trademark lines count only for
// the first licences: "MIT" or "public domain" in a copyright line is often about something else.
constexpr auto rules = std::to_array<Rule>({
    {LicenseKind::ofl, Where::licenseAndNotices, Need::anyNeedle, oflNeedles},
    {LicenseKind::apache, Where::licenseAndNotices, Need::anyNeedle, apacheNeedles},
    {LicenseKind::ufl, Where::licenseAndNotices, Need::anyNeedle, ubuntuNeedles},
    {LicenseKind::ufl, Where::licenseAndNotices, Need::everyNeedle, ubuntuAddressNeedles},
    {LicenseKind::bitstreamVera, Where::licenseOnly, Need::anyNeedle, veraNeedles},
    {LicenseKind::mit, Where::licenseOnly, Need::anyNeedle, mitNeedles},
    {LicenseKind::publicDomain, Where::licenseOnly, Need::anyNeedle, publicDomainNeedles},
    {LicenseKind::gpl, Where::licenseOnly, Need::anyNeedle, gplNeedles},
});

/// Appends the texts that are present, lower-cased, with a line feed between two of them.
void appendLowercased(std::string& text, const std::optional<std::string>& first,
                      const std::optional<std::string>& second)
{
    if (first) text += lowercased(*first);
    if (first && second) text += '\n';
    if (second) text += lowercased(*second);
}

bool applies(const Rule& rule, std::string_view text)
{
    const auto occurs = [text](std::string_view needle) {
        return text.find(needle) != std::string_view::npos;
    };
    return rule.need == Need::anyNeedle ? std::ranges::any_of(rule.needles, occurs)
                                        : std::ranges::all_of(rule.needles, occurs);
}

} // namespace

LicenseKind detectLicense(const FontFacts& facts)
{
    std::string combined;
    appendLowercased(combined, facts.licenseDescription, facts.licenseURL);
    const std::size_t licenseSize = combined.size();
    combined += '\n';
    appendLowercased(combined, facts.copyright, facts.trademark);
    const std::string_view license = std::string_view(combined).substr(0, licenseSize);

    const auto found = std::ranges::find_if(rules, [&](const Rule& rule) {
        return applies(rule, rule.where == Where::licenseOnly ? license : combined);
    });
    if (found != rules.end()) return found->kind;
    return trimmed(license).empty() ? LicenseKind::none : LicenseKind::named;
}

std::string_view label(LicenseKind kind)
{
    return presentation(kind).label;
}

bool isOpen(LicenseKind kind)
{
    return presentation(kind).open;
}

} // namespace quillmark
