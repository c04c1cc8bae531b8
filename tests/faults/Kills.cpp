// A program that saves is killed at random moments.

#include "Faults.h"

#include "Saver.h"
#include "notes/NotesBook.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <random>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace quillmark::faults {
namespace {

namespace fs = std::filesystem;

constexpr int notes = 20;

std::string keyOf(int number)
{
    return "Font-" + std::to_string(number);
}

/// Each generation has texts of another length.
std::string textOf(int generation)
{
    return std::to_string(generation) + std::string(static_cast<std::size_t>(generation % 97), 'x');
}

/// Of each attempt: a program that is killed can leave a copy that no note names.
std::string copyOf(int generation, pid_t process)
{
    return std::to_string(generation) + "-" + std::to_string(process) + ".pdf";
}

/// What a receipt of this generation holds; more than one write's worth.
std::string receiptOf(int generation)
{
    return std::string(100'000, static_cast<char>('a' + generation % 26)) +
           std::to_string(generation);
}

/// Saves one generation after the other until it is killed, and tells of each that is saved.
[[noreturn]] void saveForever(const fs::path& folder, int generation, int told)
{
    Saver saver(folder / "data");
    while (true) {
        ++generation;
        for (int i = 0; i < notes; ++i)
            saver.type(keyOf(i), textOf(generation));
        // Most of the time goes into the notes.
        if (generation % 4 == 0) {
            const test::TemporaryFolder receipts(folder);
            const auto file = receipts.write("receipt.pdf", receiptOf(generation));
            if (saver.attach("Receipt", copyOf(generation, getpid()), file)) _exit(1);
        }
        if (saver.save()) _exit(1);
        if (write(told, &generation, sizeof generation) != sizeof generation) _exit(1);
    }
}

/// The last generation that a process said it had saved; `before` if none.
int lastTold(int told, int before)
{
    int last = before;
    int generation = 0;
    while (read(told, &generation, sizeof generation) == sizeof generation)
        last = generation;
    return last;
}

/// What is wrong after a process was killed; empty when nothing is.
std::string damageAfter(const fs::path& data, int lastSaved, int& generation)
{
    if (std::string damage = damageOf(data); !damage.empty()) return damage;
    const NotesBook book = NotesBook::load(notesFile(data));
    const std::string first = textIn(book, keyOf(0)).value_or("");
    generation = std::atoi(first.c_str());
    for (int i = 0; i < notes; ++i)
        if (textIn(book, keyOf(i)) != textOf(generation)) return "the notes are of different times";
    if (generation < lastSaved)
        return "the notes are those of save " + std::to_string(generation) + ", but save " +
               std::to_string(lastSaved) + " was done";
    if (generation > lastSaved + 1) return "the notes are of a save that was not begun";
    const LicenseNote* const note = book.note("Receipt");
    if (note == nullptr || !note->attachment) return generation >= 4 ? "the receipt is lost" : "";
    const int attached = std::atoi(note->attachment->c_str());
    if (attached != generation - generation % 4) return "the receipt is not that of its save";
    if (contentOf(attachmentsFolder(data) / *note->attachment) != receiptOf(attached))
        return "the receipt is not whole";
    return {};
}

} // namespace

Tally kills(int rounds)
{
    Tally tally;
    const test::TemporaryFolder folder;
    const fs::path data = folder.path() / "data";
    std::minstd_rand random(20261122);
    int generation = 0;
    int left = 0;
    {
        Saver saver(data);
        for (int i = 0; i < notes; ++i)
            saver.type(keyOf(i), textOf(generation));
        if (const auto failure = saver.save()) tally.lose(*failure);
    }
    for (; tally.trials < rounds && tally.losses.empty(); ++tally.trials) {
        int told[2]{};
        if (pipe2(told, O_CLOEXEC) != 0) {
            tally.lose("there is no pipe to be had");
            break;
        }
        const pid_t child = fork();
        if (child == 0) saveForever(folder.path(), generation, told[1]);
        close(told[1]);
        constexpr unsigned longest = 60'000; // microseconds; several saves
        usleep(static_cast<useconds_t>(random() % longest));
        kill(child, SIGKILL);
        int status = 0;
        const bool isKilled = waitpid(child, &status, 0) == child && WIFSIGNALED(status);
        const int lastSaved = lastTold(told[0], generation);
        close(told[0]);
        if (!isKilled) tally.lose("the program ended before it was killed");
        if (std::string damage = damageAfter(data, lastSaved, generation); !damage.empty())
            tally.lose("round " + std::to_string(tally.trials) + ": " + damage);
        // They show that a process was killed in the middle of a save.
        const auto temporaries = leftovers(data);
        left += temporaries.empty() ? 0 : 1;
        for (const auto& temporary : temporaries)
            fs::remove(temporary);
        std::error_code error;
        for (const auto& entry : fs::directory_iterator(folder.path(), error))
            if (entry.path() != data) fs::remove_all(entry.path());
    }
    tally.remarks.push_back(std::to_string(generation) + " saves came through, " +
                            std::to_string(left) + " were killed with a file half written");
    if (rounds >= 100 && left == 0) tally.lose("no kill met a save");
    return tally;
}

} // namespace quillmark::faults
