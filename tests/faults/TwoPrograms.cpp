// Two programs save in the same file at the same time.

#include "Faults.h"

#include "Saver.h"
#include "notes/NotesBook.h"
#include "support/TemporaryFolder.h"

#include <array>
#include <filesystem>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace quillmark::faults {
namespace {

std::string keyOf(char program, int number)
{
    return std::string("Font-") + program + std::to_string(number);
}

/// Begins when `start` is closed at the other end. The exit code says how many saves failed.
[[noreturn]] void saveEach(const std::filesystem::path& folder, char program, int notes, int start)
{
    Saver saver(folder);
    char none{};
    if (read(start, &none, 1) != 0) _exit(255);
    int failed = 0;
    for (int i = 0; i < notes; ++i) {
        saver.type(keyOf(program, i), std::string(1, program));
        if (saver.save() && failed < 254) ++failed;
    }
    _exit(failed);
}

} // namespace

Tally twoPrograms(int notes)
{
    Tally tally;
    const test::TemporaryFolder folder;
    const auto data = folder.path() / "data";
    constexpr std::array programs{'a', 'b'};
    int start[2]{};
    if (pipe(start) != 0) {
        tally.lose("there is no pipe to be had");
        return tally;
    }
    std::array<pid_t, programs.size()> children{};
    for (std::size_t i = 0; i < programs.size(); ++i) {
        children[i] = fork();
        if (children[i] == 0) {
            close(start[1]);
            saveEach(data, programs[i], notes, start[0]);
        }
    }
    close(start[0]);
    close(start[1]);
    for (const pid_t child : children) {
        int status = 0;
        if (waitpid(child, &status, 0) != child || !WIFEXITED(status))
            tally.lose("a program did not come to its end");
        else
            tally.refused += WEXITSTATUS(status);
    }
    if (tally.refused > 0) tally.lose("saves failed though nothing was wrong");
    if (std::string damage = damageOf(data); !damage.empty()) tally.lose(damage);
    const NotesBook book = NotesBook::load(notesFile(data));
    for (const char program : programs)
        for (int i = 0; i < notes; ++i, ++tally.trials)
            if (textIn(book, keyOf(program, i)) != std::string(1, program))
                tally.lose("the note on " + keyOf(program, i) + " is lost");
    if (!leftovers(folder.path()).empty()) tally.lose("a temporary file is left");
    return tally;
}

} // namespace quillmark::faults
