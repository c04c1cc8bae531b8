// Each system call of a save fails, one after the other.

#include "Faults.h"

#include "Saver.h"
#include "notes/NotesBook.h"
#include "support/FaultyCalls.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillmark::faults {
namespace {

namespace fs = std::filesystem;
using test::Call;
using test::MadeCall;
using test::WatchedCalls;

constexpr const char* damaged = "{\"notes\": half of";
constexpr auto errors = std::to_array<int>({ENOSPC, EIO, EINTR, EACCES});

/// A folder with something in it, and what is saved over it.
struct Scene {
    const char* name;
    std::function<void(const fs::path& folder)> prepare; // `folder`/data is the program's
    bool attaches;
};

void saveFormer(const fs::path& folder)
{
    Saver saver(folder / "data");
    saver.type("Brook", "old");
    saver.type("Cedar", "kept");
    if (saver.attach("Brook", "old-receipt.pdf", folder / "receipt.pdf") || saver.save())
        throw std::runtime_error("the scene cannot be set");
}

void write(const fs::path& file, std::string_view text)
{
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
}

const auto scenes = std::to_array<Scene>({
    {"the first save", [](const fs::path& /*folder*/) {}, false},
    {"a later save", saveFormer, false},
    {"a file behind a link",
     [](const fs::path& folder) {
         saveFormer(folder);
         fs::create_directory(folder / "elsewhere");
         fs::rename(folder / "data/notes.json", folder / "elsewhere/mine.json");
         fs::create_symlink("../elsewhere/mine.json", folder / "data/notes.json");
     },
     false},
    {"a file that cannot be read",
     [](const fs::path& folder) { write(folder / "data/notes.json", damaged); }, false},
    {"the first receipt", [](const fs::path& /*folder*/) {}, true},
    {"another receipt", saveFormer, true},
});

/// A folder for one trial.
class Stage {
public:
    explicit Stage(const Scene& scene) : m_scene(scene)
    {
        m_folder.write("receipt.pdf", std::string(70'000, 'r'));
        scene.prepare(m_folder.path());
        m_former = NotesBook::load(notesFile(data()));
        m_formerBytes = contentOf(notesFile(data())).value_or("");
    }

    [[nodiscard]] fs::path data() const { return m_folder.path() / "data"; }
    [[nodiscard]] const fs::path& path() const { return m_folder.path(); }
    [[nodiscard]] const NotesBook& former() const { return m_former; }
    [[nodiscard]] bool hadFile() const { return !m_formerBytes.empty(); }
    /// Whether the bytes of the former file are still there, under whatever name.
    [[nodiscard]] bool hasFormerBytes() const
    {
        std::error_code error;
        return std::ranges::any_of(
            fs::recursive_directory_iterator(m_folder.path(), error), [&](const auto& entry) {
                return entry.is_regular_file() && contentOf(entry.path()) == m_formerBytes;
            });
    }

    /// What the program of the scene does; a sentence when it is told that it has failed.
    std::optional<std::string> act(Saver& saver) const
    {
        std::optional<std::string> failure;
        saver.type("Brook", "new");
        if (m_scene.attaches)
            failure = saver.attach("Brook", "new-receipt.pdf", m_folder.path() / "receipt.pdf");
        auto notSaved = saver.save();
        return failure ? failure : notSaved;
    }

private:
    const Scene& m_scene;
    test::TemporaryFolder m_folder{inMemory()};
    NotesBook m_former;
    std::string m_formerBytes;
};

/// What is wrong with the order of the calls of a save that nothing disturbed, were the power to
/// fail between any two of them. Empty when nothing is.
std::string disorderIn(const std::vector<MadeCall>& calls)
{
    std::set<int> unsynced;           // descriptors that were written to
    std::map<int, std::string> moved; // folders in which a name was given to a new file
    std::string linked;               // a second name that was given
    for (const MadeCall& made : calls) {
        switch (made.call) {
        case Call::write:
            unsynced.insert(made.descriptor);
            break;
        case Call::fsync:
            if (!unsynced.contains(made.descriptor)) linked.clear();
            unsynced.erase(made.descriptor);
            moved.erase(made.descriptor);
            break;
        case Call::close:
            if (unsynced.contains(made.descriptor)) return "a file is closed before it is synced";
            if (moved.contains(made.descriptor))
                return "the folder with " + moved[made.descriptor] +
                       " is closed before it is synced";
            break;
        case Call::link:
            linked = made.name;
            break;
        case Call::rename:
            if (!linked.empty()) return linked + " is not synced before it is needed";
            if (!unsynced.empty()) return made.name + " gets its name before it is on the disk";
            moved[made.descriptor] = made.name;
            break;
        case Call::unlink:
            if (!moved.empty())
                return made.name + " is removed before " + moved.begin()->second + " is synced";
            break;
        default:
            break;
        }
    }
    if (!unsynced.empty() || !moved.empty()) return "something is never put on the disk";
    return {};
}

/// Whether a save can be as good as done although this call has failed.
bool mayGoUnnoticed(const std::vector<MadeCall>& calls, int error)
{
    const auto failed = std::ranges::find(calls, true, &MadeCall::failed);
    if (failed == calls.end() || error == EINTR) return true;
    switch (failed->call) {
    case Call::write:
    case Call::fsync:
    case Call::rename:
    case Call::mkdir:
        return false;
    case Call::close:
        // What was only read can be closed somehow.
        return std::none_of(calls.begin(), failed, [&](const MadeCall& made) {
            return made.call == Call::write && made.descriptor == failed->descriptor;
        });
    default:
        return true;
    }
}

std::size_t openDescriptors()
{
    return static_cast<std::size_t>(std::distance(fs::directory_iterator("/proc/self/fd"), {}));
}

/// What is wrong after a save during which calls failed. Empty when nothing is.
std::string damageAfter(const Stage& stage, const std::optional<std::string>& failure)
{
    const bool isThere = fs::exists(notesFile(stage.data()));
    const std::string damage = isThere ? damageOf(stage.data()) : "";
    const bool wasDamaged = contentOf(notesFile(stage.data())) == damaged;
    if (!damage.empty() && !wasDamaged) return damage;
    const NotesBook book = NotesBook::load(notesFile(stage.data()));
    const bool isNew = textIn(book, "Brook") == "new";
    if (!failure && !isNew) return "the save is said to be done, and is not";
    if (!isNew && book != stage.former()) return "the notes are neither the old nor the new ones";
    // What cannot be read is kept under another name, as a whole.
    if (stage.hadFile() && stage.hasFormerBytes()) return {};
    for (const auto& [key, note] : stage.former().notes)
        if (key != "Brook" && textIn(book, key) != note.text)
            return "the note on " + key + " is lost";
    return {};
}

} // namespace

Tally failingCalls()
{
    Tally tally;
    for (const Scene& scene : scenes) {
        std::size_t count = 0;
        {
            const Stage stage(scene);
            const WatchedCalls watched;
            Saver saver(stage.data());
            if (const auto failure = stage.act(saver)) tally.lose(*failure);
            count = WatchedCalls::made().size();
            const std::string disorder = disorderIn(WatchedCalls::made());
            if (!disorder.empty()) tally.lose(std::string(scene.name) + ": " + disorder);
        }
        tally.remarks.push_back(std::string(scene.name) + ": " + std::to_string(count) + " calls");
        for (std::size_t passed = 0; passed < count; ++passed)
            for (const int error : errors)
                for (const auto lasting :
                     {WatchedCalls::Lasting::once, WatchedCalls::Lasting::onwards}) {
                    // Nothing is interrupted for ever.
                    if (error == EINTR && lasting == WatchedCalls::Lasting::onwards) continue;
                    ++tally.trials;
                    const Stage stage(scene);
                    const bool wasDamaged = contentOf(notesFile(stage.data())) == damaged;
                    const std::size_t descriptors = openDescriptors();
                    std::string wrong;
                    std::vector<MadeCall> calls;
                    {
                        std::optional<std::string> failure;
                        std::optional<Saver> saver;
                        {
                            const WatchedCalls watched(passed, error, lasting);
                            saver.emplace(stage.data());
                            failure = stage.act(*saver);
                            calls = WatchedCalls::made();
                        }
                        tally.refused += failure ? 1 : 0;
                        wrong = damageAfter(stage, failure);
                        if (!failure && !mayGoUnnoticed(calls, error))
                            wrong = "a failure is not reported";
                        // A temporary file may stay only if it could not be removed.
                        const bool couldRemove =
                            std::ranges::none_of(calls, [](const MadeCall& made) {
                                return made.failed && made.call == Call::unlink;
                            });
                        if (wrong.empty() && couldRemove && !leftovers(stage.path()).empty())
                            wrong = "a temporary file is left";
                        saver->type("Dogwood", "later");
                        if (wrong.empty() && saver->save())
                            wrong = "nothing can be saved when the fault is over";
                        const NotesBook book = NotesBook::load(notesFile(stage.data()));
                        if (wrong.empty() &&
                            (textIn(book, "Brook") != "new" || textIn(book, "Dogwood") != "later"))
                            wrong = "the next save does not have what was typed";
                        if (wrong.empty()) wrong = damageOf(stage.data());
                        if (wrong.empty() && wasDamaged && !stage.hasFormerBytes())
                            wrong = "the bytes that could not be read are gone";
                    }
                    if (wrong.empty() && openDescriptors() != descriptors)
                        wrong = "a descriptor stays open";
                    if (wrong.empty()) continue;
                    const auto failed = std::ranges::find(calls, true, &MadeCall::failed);
                    const std::string call =
                        failed == calls.end()
                            ? "no call"
                            : std::string(nameOf(failed->call)) + " of \"" + failed->name + "\"";
                    tally.lose(std::string(scene.name) + ", call " + std::to_string(passed) + " (" +
                               call + ") fails " +
                               (lasting == WatchedCalls::Lasting::once ? "once" : "from then on") +
                               " with " + std::strerror(error) + ": " + wrong);
                }
    }
    return tally;
}

} // namespace quillmark::faults
