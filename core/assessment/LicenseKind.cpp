#include "assessment/LicenseKind.h"

#include "assessment/Needle.h"
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

static_assert(std::ranges::equal(presentations, allCases<LicenseKind>, {}, &Presentation::kind));

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
    std::span<const Needle> needles;
};

constexpr auto oflNeedles = std::to_array<Needle>({
    "open font license",
    "open font licence",
    "scripts.sil.org/ofl",
    "openfontlicense.org",
    "sil ofl",
    "ofl-1.1",
    "ofl 1.1",
});
constexpr auto apacheNeedles = std::to_array<Needle>({
    "apache license",
    "apache.org/licenses",
    "apache-2.0",
});
constexpr auto ubuntuNeedles = std::to_array<Needle>({
    "ubuntu font licence",
    "ubuntu font license",
});
constexpr auto ubuntuAddressNeedles = std::to_array<Needle>({
    "ubuntu",
    "font-licence",
});
constexpr auto veraNeedles = std::to_array<Needle>({
    "bitstream vera",
    "gnome.org/fonts",
});
constexpr auto mitNeedles = std::to_array<Needle>({
    "mit license",
    "opensource.org/licenses/mit",
});
constexpr auto publicDomainNeedles = std::to_array<Needle>({
    "public domain",
    "cc0",
    "creativecommons.org/publicdomain",
});
constexpr auto gplNeedles = std::to_array<Needle>({
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

using Fields = std::span<const std::string_view>;

// Each field is searched for itself: no needle holds a line end, so none could match across the
// line ends by which the fields are thought to be joined.
bool applies(const Rule& rule, Fields fields)
{
    const auto occurs = [fields](const Needle& needle) {
        return std::ranges::any_of(fields,
                                   [&](std::string_view field) { return needle.occursIn(field); });
    };
    return rule.need == Need::anyNeedle ? std::ranges::any_of(rule.needles, occurs)
                                        : std::ranges::all_of(rule.needles, occurs);
}

} // namespace

LicenseKind detectLicense(const FontFacts& facts)
{
    const auto text = [](const std::optional<std::string>& field) {
        return field ? std::string_view(*field) : std::string_view();
    };
    const std::array fields{text(facts.licenseDescription), text(facts.licenseURL),
                            text(facts.copyright), text(facts.trademark)};
    const Fields licenseFields = Fields(fields).first<2>();

    const auto found = std::ranges::find_if(rules, [&](const Rule& rule) {
        return applies(rule, rule.where == Where::licenseOnly ? licenseFields : Fields(fields));
    });
    if (found != rules.end()) return found->kind;
    const bool blank = std::ranges::all_of(
        licenseFields, [](std::string_view field) { return trimmed(field).empty(); });
    return blank ? LicenseKind::none : LicenseKind::named;
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
