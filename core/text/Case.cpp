#include "text/Case.h"

#include "text/IcuText.h"
#include "text/Utf8.h"

#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/uchar.h>

#include <algorithm>

namespace quillmark {
namespace {

std::string asciiLowercased(std::string_view text)
{
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), Utf8::asciiLower);
    return lower;
}

} // namespace

std::string lowercased(std::string_view text)
{
    if (Utf8::isAscii(text)) return asciiLowercased(text);
    std::string lower;
    icu::StringByteSink<std::string> sink(&lower, icuText(text).size());
    UErrorCode status = U_ZERO_ERROR;
    icu::CaseMap::utf8ToLower("", 0, icuText(text), sink, nullptr, status);
    return U_SUCCESS(status) ? lower : asciiLowercased(text);
}

std::string uppercased(std::string_view text)
{
    std::string upper;
    icu::StringByteSink<std::string> sink(&upper, icuText(text).size());
    UErrorCode status = U_ZERO_ERROR;
    icu::CaseMap::utf8ToUpper("", 0, icuText(text), sink, nullptr, status);
    return U_SUCCESS(status) ? upper : std::string(text);
}

} // namespace quillmark
