#include "text/Collation.h"

#include "text/IcuText.h"

#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <string_view>

namespace quillmark {
namespace {

icu::Locale collationLocale(const std::string& locale)
{
    if (!locale.empty()) {
        const icu::Locale named(locale.c_str());
        return named.isBogus() ? icu::Locale::getRoot() : named;
    }
    // Where the environment names no language, ICU says "en_US_POSIX", whose order is that of the
    // character codes: all capitals first. People expect the root order instead.
    const icu::Locale& users = icu::Locale::getDefault();
    return std::string_view(users.getVariant()) == "POSIX" ? icu::Locale::getRoot() : users;
}

} // namespace

struct Collator::Implementation {
    std::unique_ptr<icu::Collator> collator; // absent when ICU's data are missing
};

Collator::Collator(const std::string& locale) : m_implementation(std::make_unique<Implementation>())
{
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Collator> collator(
        icu::Collator::createInstance(collationLocale(locale), status));
    if (U_SUCCESS(status)) collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
    if (U_SUCCESS(status)) m_implementation->collator = std::move(collator);
}

Collator::~Collator() = default;

int Collator::compare(std::string_view left, std::string_view right) const
{
    if (m_implementation->collator) {
        UErrorCode status = U_ZERO_ERROR;
        const UCollationResult result =
            m_implementation->collator->compareUTF8(icuText(left), icuText(right), status);
        if (U_SUCCESS(status)) return result;
    }
    return left.compare(right);
}

std::string Collator::sortKey(std::string_view text) const
{
    if (!m_implementation->collator) return std::string(text);
    const auto utf16 = icu::UnicodeString::fromUTF8(icuText(text));
    // Making a key is what sorting costs, so it is made twice only where it turns out to be long.
    constexpr std::int32_t usualLength = 128;
    std::string key(usualLength, '\0');
    const auto make = [&](std::int32_t size) {
        return m_implementation->collator->getSortKey(
            utf16, reinterpret_cast<std::uint8_t*>(key.data()), size);
    };
    const std::int32_t length = make(usualLength);
    key.resize(static_cast<std::size_t>(length));
    if (length > usualLength) make(length);
    return key;
}

} // namespace quillmark
