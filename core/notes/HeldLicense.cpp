#include "notes/HeldLicense.h"

#include <algorithm>
#include <cstddef>

namespace quillmark {
namespace {

struct Label {
    HeldLicense license;
    std::string_view text;
};

constexpr auto labels = std::to_array<Label>({
    {HeldLicense::notSet, "Not set"},
    {HeldLicense::openLicense, "Open license (OFL, Apache, \u2026)"},
    {HeldLicense::desktop, "Desktop"},
    {HeldLicense::desktopCommercial, "Desktop + commercial products / POD"},
    {HeldLicense::web, "Web font"},
    {HeldLicense::app, "App embedding"},
    {HeldLicense::ebook, "Ebook / ePub"},
    {HeldLicense::extended, "Extended / enterprise"},
    {HeldLicense::appleSystem, "Came with macOS"},
    {HeldLicense::other, "Other"},
});

static_assert(std::ranges::equal(labels, allCases<HeldLicense>, {}, &Label::license));

} // namespace

std::string_view label(HeldLicense license)
{
    return labels[static_cast<std::size_t>(license)].text;
}

} // namespace quillmark
