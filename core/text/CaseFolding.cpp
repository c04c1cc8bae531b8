#include "text/CaseFolding.h"

#include "text/IcuText.h"
#include "text/Utf8.h"

#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>

#include <algorithm>

namespace quillmark {
namespace {

std::string composed(const std::string& text)
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* const form = icu::Normalizer2::getNFCInstance(status);
    if (U_FAILURE(status)) return text;
    std::string result;
    icu::StringByteSink<std::string> sink(&result, icuText(text).size());
    form->normalizeUTF8(0, icuText(text), sink, nullptr, status);
    return U_SUCCESS(status) ? result : text;
}

std::string caseFolded(std::string_view text, std::uint32_t options)
{
    UErrorCode status = U_ZERO_ERROR;
    std::string result;
    icu::StringByteSink<std::string> sink(&result, icuText(text).size());
    icu::CaseMap::utf8Fold(options, icuText(text), sink, nullptr, status);
    return U_SUCCESS(status) ? result : std::string(text);
}

} // namespace

CaseFolding::CaseFolding(const std::string& locale)
{
    const icu::Locale users =
        locale.empty() ? icu::Locale::getDefault() : icu::Locale(locale.c_str());
    const std::string_view language = users.getLanguage();
    m_dottedAndDotless = language == "tr" || language == "az";
}

std::string CaseFolding::folded(std::string_view text) const
{
    if (!m_dottedAndDotless && Utf8::isAscii(text)) {
        std::string lower(text);
        std::transform(lower.begin(), lower.end(), lower.begin(), Utf8::asciiLower);
        return lower;
    }
    // Composed before, so that the rules meet an accented capital I in one form, and after, because
    // folding takes some characters apart.
    return composed(caseFolded(composed(std::string(text)), m_dottedAndDotless
                                                                ? U_FOLD_CASE_EXCLUDE_SPECIAL_I
                                                                : U_FOLD_CASE_DEFAULT));
}

} // namespace quillmark
