#include "update/UpdateVersion.h"

#include <algorithm>
#include <cstddef>

namespace quillmark {
namespace {

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

bool isSeparator(char character)
{
    constexpr std::string_view separators = " \t!\"#$%&'()*+,./:;<=>?@[\\]^_`{|}~";
    return separators.find(character) != std::string_view::npos;
}

/// A run of digits without leading zeros, or a run of letters.
struct Run {
    bool isNumber{true};
    std::string_view text; // an empty number is zero
};

/// Takes the first run off `rest`; zero when there is none left.
Run takeRun(std::string_view& rest)
{
    const auto* const begin = std::ranges::find_if_not(rest, isSeparator);
    rest.remove_prefix(static_cast<std::size_t>(begin - rest.begin()));
    if (rest.empty()) return {};
    const bool isNumber = isDigit(rest.front());
    const auto* const end = std::ranges::find_if(rest, [&](char character) {
        return isDigit(character) != isNumber || isSeparator(character);
    });
    std::string_view text = rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
    rest.remove_prefix(text.size());
    if (isNumber) text.remove_prefix(std::min(text.find_first_not_of('0'), text.size()));
    return {isNumber, text};
}

std::weak_ordering compareRuns(const Run& left, const Run& right)
{
    if (left.isNumber != right.isNumber)
        return left.isNumber ? std::weak_ordering::greater : std::weak_ordering::less;
    if (left.isNumber && left.text.size() != right.text.size())
        return left.text.size() <=> right.text.size();
    return left.text.compare(right.text) <=> 0;
}

} // namespace

std::weak_ordering compareVersions(std::string_view left, std::string_view right)
{
    left = left.substr(0, left.find('-'));
    right = right.substr(0, right.find('-'));
    while (!left.empty() || !right.empty()) {
        const std::weak_ordering order = compareRuns(takeRun(left), takeRun(right));
        if (order != 0) return order;
    }
    return std::weak_ordering::equivalent;
}

} // namespace quillmark
