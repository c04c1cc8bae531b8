// What is done to the saving of notes, and what came of it. Each function works in folders of its
// own. The file of notes is saved as the application does it, through NotesStore.
#pragma once

#include <string>
#include <vector>

namespace quillmark::faults {

struct Tally {
    int trials{};
    int refused{};                    // saves that were reported not to have been done
    std::vector<std::string> remarks; // that show that the faults have struck
    std::vector<std::string> losses;  // what must not be; empty when all is well
    bool isSkipped{};                 // the system does not let this be tried

    void lose(std::string what) { losses.push_back(std::move(what)); }
};

/// Kills a program that saves, again and again, at random moments.
[[nodiscard]] Tally kills(int rounds);

/// Has each system call of a save fail, one after the other and with each error.
[[nodiscard]] Tally failingCalls();

/// Saves on small disks, with room for nothing up to room for twice the file.
[[nodiscard]] Tally fullDisks();

/// Saves over files of notes that were changed at random.
[[nodiscard]] Tally mutants(int count);

/// Has two programs save so many notes each, in the same file and at the same time.
[[nodiscard]] Tally twoPrograms(int notes);

} // namespace quillmark::faults
