// The arguments of one run, understood and checked.
#pragma once

#include "assessment/Assessment.h"

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

namespace quillmark::cli {

enum class Command { installed, scan, check };
enum class Format { text, json, csv, pdf };
enum class Color { automatic, always, never };

struct Options {
    Command command{};
    std::vector<std::filesystem::path> inputs;      // as given: folders and font files, or PDFs
    std::vector<std::filesystem::path> fontFolders; // check: folders to match fonts to
    bool matchInstalled{true};                      // check: whether to match to installed fonts
    Format format{Format::text};
    std::optional<std::filesystem::path> output; // absent for standard output
    std::optional<std::filesystem::path> notes;  // csv, pdf; absent for the application's own
    std::optional<Verdict> failOn; // this verdict or a worse one ends with exit code 1
    Color color{Color::automatic};
    bool quiet{};
    bool operator==(const Options&) const = default;
};

/// What was asked for instead of a command, such as the help.
struct Information {
    std::string text;
    bool operator==(const Information&) const = default;
};

/// Why the arguments make no sense, as one sentence.
struct WrongUse {
    std::string sentence;
    bool operator==(const WrongUse&) const = default;
};

/// Options may stand before, between and after the other arguments; what follows "--" is no option.
/// Of an option given twice the last one counts, but every --fonts does.
[[nodiscard]] std::variant<Options, Information, WrongUse>
parse(std::span<const std::string> arguments);

} // namespace quillmark::cli
