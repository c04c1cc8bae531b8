#include "update/UpdateTexts.h"

namespace quillmark::UpdateTexts {
namespace {

constexpr std::string_view failed = "Couldn’t check for updates";

} // namespace

UpdateAlert upToDate(const BundleInfo& bundle)
{
    const std::string name = bundle.appName();
    return {"You’re up to date",
            name + " " + bundle.shortVersion.value_or("") + " is the newest version. " + name +
                " checks for updates on its own and will let you know when there’s a new one."};
}

UpdateAlert unreachable(const BundleInfo& bundle)
{
    return {std::string(failed), "Check your internet connection and try again. " +
                                     bundle.appName() +
                                     " also checks on its own about once a day."};
}

UpdateAlert unusable(std::string_view reason)
{
    return {std::string(failed),
            "The list of updates can’t be used: " + std::string(reason) + ". Try again later."};
}

UpdateAlert fromPackages(const BundleInfo& bundle)
{
    return {"Updates come with your system",
            bundle.appName() + " is kept up to date together with your system’s other packages. It "
                               "never looks for updates itself."};
}

UpdateAlert consent(const BundleInfo& bundle)
{
    const std::string name = bundle.appName();
    return {"Check for updates automatically?",
            name + " can look about once a day whether there is a new version, and will tell you "
                   "only then. It sends its name and version, and nothing about you or your "
                   "fonts. You can check at any time with “Check for Updates…” in the Help menu."};
}

} // namespace quillmark::UpdateTexts
