// The stored form of enumerations. Every enumeration that is kept on disk or exported specialises
// `rawValues` with one string per case, in declaration order; cases must count up from zero.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace quillmark {

/// The raw values of enumeration `E` in declaration order, as a constexpr array of string views.
template <typename E>
inline constexpr auto rawValues = nullptr;

/// The string under which `value` is stored and exported.
template <typename E>
constexpr std::string_view rawValue(E value)
{
    return rawValues<E>[static_cast<std::size_t>(value)];
}

/// Every case of enumeration `E`, in declaration order.
template <typename E>
inline constexpr auto allCases = [] {
    std::array<E, rawValues<E>.size()> cases{};
    for (std::size_t i = 0; i < cases.size(); ++i)
        cases[i] = static_cast<E>(i);
    return cases;
}();

/// The case stored as `raw`; absent when no case has that raw value (compared exactly).
template <typename E>
constexpr std::optional<E> fromRawValue(std::string_view raw)
{
    const auto& values = rawValues<E>;
    const auto found = std::find(values.begin(), values.end(), raw);
    if (found == values.end()) return std::nullopt;
    return static_cast<E>(found - values.begin());
}

} // namespace quillmark
