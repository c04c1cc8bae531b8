// The arguments of one run, understood and checked. What there is to understand: OptionTable.h.
#pragma once

#include "assessment/Assessment.h"
#include "cli/OptionTable.h"
#include "listing/RowFilter.h"
#include "text/RawValue.h"

#include <array>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace quillmark::cli {

enum class Format { text, json, jsonl, csv, pdf };
enum class Color { automatic, always, never };
enum class SortKey { verdict, name, family, file };
enum class NoteAction { list, show };
enum class Shell { bash, zsh, fish };

// NOLINTNEXTLINE(*.Padding): there is one of them, and what belongs together stands together
struct Options {
    Command command{};
    /// As given: folders and font files, PDFs, names of fonts, or keys of notes. Those in
    /// `filesFrom` are added when that file is read.
    std::vector<std::filesystem::path> inputs;
    std::optional<std::filesystem::path> filesFrom; // a file with the names of more inputs
    bool nullSeparated{};                           // how the names in it end
    std::vector<std::filesystem::path> fontFolders; // check: folders to match fonts to
    bool matchInstalled{true};                      // check: whether to match to installed fonts
    std::vector<Verdict> verdicts;                  // of the fonts that are shown; none: all
    Source source{Source::all};
    std::string search;          // as typed, but always UTF-8; empty: none
    std::optional<SortKey> sort; // absent: the order of the report
    Format format{Format::text};
    std::optional<std::filesystem::path> output; // absent for standard output
    std::optional<std::filesystem::path> notes;  // absent for the application's own
    bool withNotes{true};                        // whether notes are printed where they could be
    std::optional<Verdict> failOn; // this verdict or a worse one ends with exit code 1
    Color color{Color::automatic};
    bool quiet{};
    bool verbose{};
    NoteAction noteAction{NoteAction::list};
    Shell shell{};

    /// Whether the results have the user's notes with the fonts.
    [[nodiscard]] bool printsNotes() const;

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
    std::string usage{}; // one line
    bool operator==(const WrongUse&) const = default;
};

/// Whether a file has the name of a font or a PDF, which are read and never written; but a report
/// as PDF may go into a file that is named so.
[[nodiscard]] bool isNamedLikeAnInput(const std::filesystem::path& file, Format format);

/// Options may stand before, between and after the other arguments; what follows "--" is no option.
/// Of an option given twice the last one counts, but every --fonts does.
[[nodiscard]] std::variant<Options, Information, WrongUse>
parse(std::span<const std::string> arguments);

} // namespace quillmark::cli

// What is written on the command line for them.
template <>
inline constexpr auto
    quillmark::rawValues<quillmark::cli::Format> = std::to_array<std::string_view>({
        "text",
        "json",
        "jsonl",
        "csv",
        "pdf",
    });
template <>
inline constexpr auto
    quillmark::rawValues<quillmark::cli::Color> = std::to_array<std::string_view>({
        "auto",
        "always",
        "never",
    });
template <>
inline constexpr auto
    quillmark::rawValues<quillmark::cli::SortKey> = std::to_array<std::string_view>({
        "verdict",
        "name",
        "family",
        "file",
    });
template <>
inline constexpr auto
    quillmark::rawValues<quillmark::cli::NoteAction> = std::to_array<std::string_view>({
        "list",
        "show",
    });
template <>
inline constexpr auto
    quillmark::rawValues<quillmark::cli::Shell> = std::to_array<std::string_view>({
        "bash",
        "zsh",
        "fish",
    });
