// All that the command-line tool takes from the world around it, so that tests can put their own
// in its place.
#pragma once

#include "library/FontService.h"
#include "pdf/PDFFontScanner.h"

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

namespace quillmark::cli {

/// An open standard stream.
struct Stream {
    int descriptor{};
    std::optional<std::size_t> columns; // width of the terminal; absent when it is not one
};

struct Environment {
    const FontService& fonts;
    int input{};        // a descriptor; names of files, where they are asked for there
    Stream output;      // results
    Stream errors;      // messages and progress
    std::string locale; // whose order fonts are sorted in; the user's when empty
    std::optional<std::filesystem::path> notes; // the application's notes.json; absent: no home
    bool plainTerminal{}; // the terminal or the user (NO_COLOR, TERM=dumb) wants no colour
    PDFFontScanner::Clock clock{std::chrono::system_clock::now};
    std::chrono::milliseconds progressDelay{}; // how long the user waits without being told why
    PDFFontScanner::Read readDocument{PDFFontScanner::read};
};

} // namespace quillmark::cli
