// What the command line understands: commands and options, each described once. The parser, the
// help and the completions for shells are made from these tables. For one run see Options.h.
#pragma once

#include <array>
#include <cstddef>
#include <initializer_list>
#include <span>
#include <string_view>

namespace quillmark::cli {

enum class Command { installed, scan, check, show, notes, explain, completion };

/// What a command's operands are, which is what a shell can offer for them.
enum class Operands { none, fontFiles, documents, fonts, noteAction, shell };

struct CommandEntry {
    Command command{};
    std::string_view name;
    std::string_view operands; // as in a usage line; empty: takes none
    Operands kind{};
    std::string_view summary; // begins in lower case, without a full stop
};

/// In the order in which they are explained; a command's place is its number.
extern const std::array<CommandEntry, 7> commandTable;

[[nodiscard]] const CommandEntry& entry(Command command);

/// Several commands.
class CommandSet {
public:
    constexpr CommandSet(std::initializer_list<Command> commands)
    {
        for (const Command command : commands)
            m_bits |= bit(command);
    }
    [[nodiscard]] constexpr bool contains(Command command) const
    {
        return (m_bits & bit(command)) != 0;
    }
    bool operator==(const CommandSet&) const = default;

private:
    static constexpr unsigned bit(Command command) { return 1U << static_cast<unsigned>(command); }

    unsigned m_bits{};
};

enum class OptionID {
    verdict,
    source,
    search,
    sort,
    fonts,
    noInstalled,
    filesFrom,
    null,
    format,
    json,
    output,
    notes,
    noNotes,
    failOn,
    color,
    quiet,
    verbose,
    help,
    helpAll,
    version,
};

/// Options that are explained together.
enum class OptionGroup { filter, input, result, general };

enum class Takes {
    nothing,
    choice, // one of the option's choices
    list,   // some of them, with commas between
    file,
    folder,
    text,
};

struct OptionEntry {
    OptionID id{};
    OptionGroup group{};
    CommandSet commands;    // those that it goes with
    char shortName{};       // zero: none
    std::string_view name;  // with its dashes
    std::string_view value; // what stands for its value in the help; empty: takes none
    Takes takes{};
    std::span<const std::string_view> choices;
    std::string_view help; // begins in lower case, without a full stop
};

inline constexpr std::size_t optionCount = static_cast<std::size_t>(OptionID::version) + 1;

/// In the order in which they are explained; an option's place is its number.
extern const std::array<OptionEntry, optionCount> optionTable;

[[nodiscard]] const OptionEntry& entry(OptionID option);

} // namespace quillmark::cli
