// Reading an object's text.
#pragma once

#include "pdf/ByteSource.h"
#include "pdf/ParsedObject.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace quillmark::PDF {

/// Where an object's text begins.
struct ObjectText {
    ByteSource& source;
    std::uint64_t offset{};
    std::size_t limit{}; // bytes; an object that is longer is unreadable
};

/// Reads an object of a file, if what stands there begins with its header, such as "5 0 obj".
/// Damage is repaired as far as it goes: stray tokens are passed over, and what is open when the
/// object ends is closed. Null when the header differs, nothing is there, or a limit is exceeded.
[[nodiscard]] std::shared_ptr<const ParsedObject> parseIndirect(const ObjectText& text,
                                                                const Reference& expected);

/// The same for text without a header, as in an object stream. It is never a stream.
[[nodiscard]] std::shared_ptr<const ParsedObject> parseDirect(const ObjectText& text);

/// One object of an object stream: its number, and where it begins behind the pairs.
struct ObjectPlace {
    std::uint32_t number{};
    std::uint64_t offset{};
};

/// The pairs of integers at the beginning of an object stream, at most `count` of them; it ends at
/// the first thing that is none.
[[nodiscard]] std::vector<ObjectPlace> parsePlaces(const ObjectText& text, std::uint64_t count);

} // namespace quillmark::PDF
