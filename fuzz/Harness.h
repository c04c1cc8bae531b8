// What the fuzz harnesses share. A harness reads any bytes and says what must hold of the result.
#pragma once

#include "text/Encoding.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace quillmark::fuzz {

inline std::span<const std::byte> input(const std::uint8_t* data, std::size_t size)
{
    return std::as_bytes(std::span(data, size));
}

/// Ends the run, which saves the input as a finding, unless `holds`.
inline void expect(bool holds)
{
    if (!holds) std::abort();
}

/// Text that leaves a reader is valid UTF-8 and says something.
inline void expectText(std::string_view text)
{
    expect(!text.empty() && repairedUtf8(text) == text);
}

inline void expectText(const std::optional<std::string>& text)
{
    if (text) expectText(std::string_view(*text));
}

} // namespace quillmark::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
