// All that the command-line tool takes from the world around it, so that tests can put their own
// in its place.
#pragma once

#include "library/FontService.h"
#include "pdf/PDFFontScanner.h"

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
    Stream output;      // results
    Stream errors;      // messages and progress
    std::string locale; // whose order fonts are sorted in; the user's when empty
    std::optional<std::filesystem::path> notes; // the application's notes.json; absent: no home
    bool plainTerminal{}; // the terminal or the user (NO_COLOR, TERM=dumb) wants no colour
    PDFFontScanner::Clock clock{std::chrono::system_clock::now};
};

} // namespace quillmark::cli
