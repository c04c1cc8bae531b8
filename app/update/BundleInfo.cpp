#include "update/BundleInfo.h"

namespace quillmark {

std::string BundleInfo::appName() const
{
    return displayName.value_or(name.value_or("This app"));
}

std::string BundleInfo::comparedVersion() const
{
    return version.value_or(shortVersion.value_or(""));
}

std::string BundleInfo::displayVersion() const
{
    return shortVersion.value_or(version.value_or(""));
}

} // namespace quillmark
