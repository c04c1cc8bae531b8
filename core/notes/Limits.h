// What reading a file of notes may cost. What is over a limit is no file of notes.
#pragma once

#include <cstddef>

namespace quillmark::Limits {

/// Bytes of a file of notes, to be read or to be saved: 10,000 notes of 1,600 characters.
inline constexpr std::size_t notesFileBytes = std::size_t{16} << 20U;

/// Brackets, braces, commas and colons in a file of notes, outside its texts: about as many as
/// keys, values and ends of objects and arrays. As many notes as can be saved have three quarters
/// of that.
inline constexpr std::size_t notesFileMarks = 2'000'000;

/// Objects and arrays inside one another in a file of notes, where our own are three deep.
inline constexpr std::size_t notesFileDepth = 64;

} // namespace quillmark::Limits
