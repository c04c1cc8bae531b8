#include "text/IsoDate.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace quillmark {
namespace {

using namespace std::chrono;

constexpr sys_seconds first = sys_days(year(0) / January / 1);
constexpr sys_seconds last = sys_days(year(9999) / December / 31) + days(1) - seconds(1);

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

/// Takes a text from its front, piece by piece. Once something is not there, nothing is any more.
class Pieces {
public:
    explicit Pieces(std::string_view text) : m_rest(text) {}

    /// A number of exactly this many digits, at most `largest`.
    int number(std::size_t digits, int largest)
    {
        int value = 0;
        for (std::size_t i = 0; i < digits; ++i) {
            if (i >= m_rest.size() || !isDigit(m_rest[i])) return fail();
            value = value * 10 + (m_rest[i] - '0');
        }
        m_rest.remove_prefix(digits);
        return value <= largest ? value : fail();
    }
    /// One of these characters; whether it was there.
    bool skip(std::string_view characters)
    {
        if (m_rest.empty() || characters.find(m_rest.front()) == std::string_view::npos)
            return false;
        m_rest.remove_prefix(1);
        return true;
    }
    void expect(std::string_view characters)
    {
        if (!skip(characters)) fail();
    }
    void skipFraction()
    {
        if (!skip(".,")) return;
        if (m_rest.empty() || !isDigit(m_rest.front())) fail();
        m_rest.remove_prefix(
            static_cast<std::size_t>(std::ranges::find_if_not(m_rest, isDigit) - m_rest.begin()));
    }
    [[nodiscard]] bool startsWith(char character) const { return m_rest.starts_with(character); }
    /// Whether everything was there, and nothing is left.
    [[nodiscard]] bool complete() const { return !m_failed && m_rest.empty(); }
    [[nodiscard]] bool atEnd() const { return m_rest.empty(); }

private:
    int fail()
    {
        m_failed = true;
        m_rest = {};
        return 0;
    }

    std::string_view m_rest;
    bool m_failed{};
};

/// East of Greenwich.
minutes zone(Pieces& pieces)
{
    if (pieces.skip("Zz")) return {};
    const int sign = pieces.startsWith('-') ? -1 : 1;
    pieces.expect("+-");
    minutes offset = hours(pieces.number(2, 23));
    if (!pieces.atEnd()) {
        pieces.skip(":");
        offset += minutes(pieces.number(2, 59));
    }
    return sign * offset;
}

void appendPadded(std::string& text, std::int64_t number, std::size_t width)
{
    const std::string digits = std::to_string(number);
    if (digits.size() < width) text.append(width - digits.size(), '0');
    text += digits;
}

} // namespace

std::string isoDate(sys_seconds time)
{
    time = std::clamp(time, first, last);
    const auto day = floor<days>(time);
    const year_month_day date(day);
    const hh_mm_ss clock(time - day);
    std::string text;
    appendPadded(text, int(date.year()), 4);
    text += '-';
    appendPadded(text, unsigned(date.month()), 2);
    text += '-';
    appendPadded(text, unsigned(date.day()), 2);
    text += 'T';
    appendPadded(text, clock.hours().count(), 2);
    text += ':';
    appendPadded(text, clock.minutes().count(), 2);
    text += ':';
    appendPadded(text, clock.seconds().count(), 2);
    text += 'Z';
    return text;
}

std::optional<sys_seconds> parseIsoDate(std::string_view text)
{
    Pieces pieces(text);
    const int inYear = pieces.number(4, 9999);
    pieces.expect("-");
    const int inMonth = pieces.number(2, 12);
    pieces.expect("-");
    const int onDay = pieces.number(2, 31);
    pieces.expect("Tt");
    seconds clock = hours(pieces.number(2, 23));
    pieces.expect(":");
    clock += minutes(pieces.number(2, 59));
    pieces.expect(":");
    clock += seconds(pieces.number(2, 59));
    pieces.skipFraction();
    const minutes offset = zone(pieces);
    const year_month_day date(year(inYear), month(static_cast<unsigned>(inMonth)),
                              day(static_cast<unsigned>(onDay)));
    if (!pieces.complete() || !date.ok()) return std::nullopt;
    const sys_seconds time = sys_days(date) + clock - offset;
    if (time < first || time > last) return std::nullopt;
    return time;
}

} // namespace quillmark
