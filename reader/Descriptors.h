// What a reader process finds open when it starts.
#pragma once

namespace quillmark::reader::Descriptors {

inline constexpr int channel = 3; // a socket: questions come in, answers go out
inline constexpr int begun = 4;   // memory for the number of the question begun last
inline constexpr int end = 5;     // and nothing from here on

} // namespace quillmark::reader::Descriptors
