#include "text/DateText.h"

#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <memory>

namespace quillmark {

std::string dateText(std::chrono::system_clock::time_point moment)
{
    const std::unique_ptr<icu::DateFormat> format(icu::DateFormat::createDateTimeInstance(
        icu::DateFormat::kMedium, icu::DateFormat::kShort, icu::Locale::getDefault()));
    std::string text;
    if (!format) return text; // ICU's data are missing
    const auto sinceEpoch =
        std::chrono::duration_cast<std::chrono::milliseconds>(moment.time_since_epoch());
    icu::UnicodeString written;
    format->format(static_cast<UDate>(sinceEpoch.count()), written);
    written.toUTF8String(text);
    return text;
}

} // namespace quillmark
