#include "text/DateText.h"

#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <memory>

namespace quillmark {

namespace {

using Milliseconds = std::chrono::sys_time<std::chrono::milliseconds>; // ICU's own unit

std::string formatted(Milliseconds moment, icu::DateFormat* made)
{
    const std::unique_ptr<icu::DateFormat> format(made);
    std::string text;
    if (!format) return text; // ICU's data are missing
    icu::UnicodeString written;
    format->format(static_cast<UDate>(moment.time_since_epoch().count()), written);
    written.toUTF8String(text);
    return text;
}

} // namespace

std::string dateText(std::chrono::sys_seconds moment)
{
    return formatted(moment, icu::DateFormat::createDateTimeInstance(icu::DateFormat::kMedium,
                                                                     icu::DateFormat::kShort,
                                                                     icu::Locale::getDefault()));
}

std::string dayText(std::chrono::sys_seconds moment)
{
    return formatted(moment, icu::DateFormat::createDateInstance(icu::DateFormat::kMedium,
                                                                 icu::Locale::getDefault()));
}

std::string timeText(std::chrono::system_clock::time_point moment)
{
    return formatted(
        std::chrono::floor<std::chrono::milliseconds>(moment),
        icu::DateFormat::createTimeInstance(icu::DateFormat::kShort, icu::Locale::getDefault()));
}

} // namespace quillmark
