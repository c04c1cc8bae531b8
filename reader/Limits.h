// What a reader process may cost and what it may send. Other limits bound the readers themselves,
// so that no honest answer comes near these; they hold when a reader has gone wrong.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace quillmark::reader::Limits {

/// Bytes of address space.
inline constexpr std::uint64_t addressSpace = std::uint64_t{2} << 30U;

/// Open files of one process.
inline constexpr std::uint64_t openFiles = 64;

/// How long one file may take before it is given up.
inline constexpr std::chrono::milliseconds silence{30'000};

/// The same for the list of the installed fonts. Where fontconfig has no caches it opens each font,
/// which can be ten thousand on a slow disk.
inline constexpr std::chrono::milliseconds listing{600'000};

/// How long a process without work stays. A scan begins as quickly with a new one.
inline constexpr std::chrono::milliseconds idle{10'000};

/// Bytes of one message. The longest honest one has the names of a font with all text that a
/// document's rows may have.
inline constexpr std::size_t messageBytes = std::size_t{256} << 20U;

/// Bytes of a question, which is a path. The system takes no argument of a program that is longer.
inline constexpr std::size_t questionBytes = std::size_t{1} << 20U;

/// Bytes of all messages about one file.
inline constexpr std::size_t answerBytes = std::size_t{512} << 20U;

/// Names of one face, and named instances of it.
inline constexpr std::size_t names = 64;

/// Files that are installed.
inline constexpr std::size_t installedFiles = 1'000'000;

/// Names that a document gives its fonts.
inline constexpr std::size_t documentNames = 1'000'000;

/// Processes that may end one after the other without having begun to read a file. Then something
/// is wrong with the program and not with the files.
inline constexpr int barrenStarts = 10;

} // namespace quillmark::reader::Limits
