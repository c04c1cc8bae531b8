// Saving on disks with little room.

#include "Faults.h"

#include "Saver.h"
#include "notes/NotesBook.h"
#include "notes/NotesJson.h"
#include "support/TemporaryFolder.h"

#include <cerrno>
#include <filesystem>
#include <sched.h>
#include <string>
#include <sys/mount.h>

namespace quillmark::faults {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t page = 4096;

std::size_t pagesOf(std::size_t bytes)
{
    return (bytes + page - 1) / page;
}

/// A disk of so many pages, in memory, as long as this lives.
class SmallDisk {
public:
    SmallDisk(fs::path at, std::size_t pages) : m_at(std::move(at))
    {
        const std::string size = "size=" + std::to_string(pages * page);
        m_isMounted = mount("tmpfs", m_at.c_str(), "tmpfs", 0, size.c_str()) == 0;
    }
    ~SmallDisk()
    {
        if (m_isMounted) umount2(m_at.c_str(), MNT_DETACH);
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;
    [[nodiscard]] bool isMounted() const { return m_isMounted; }
    [[nodiscard]] const fs::path& path() const { return m_at; }
    [[nodiscard]] bool resize(std::size_t pages) const
    {
        const std::string size = "size=" + std::to_string(pages * page);
        return mount("tmpfs", m_at.c_str(), "tmpfs", MS_REMOUNT, size.c_str()) == 0;
    }

private:
    fs::path m_at;
    bool m_isMounted{};
};

/// Whether this process may mount disks, which nobody else then sees.
bool mayMount()
{
    return (unshare(CLONE_NEWNS) == 0 || unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0) &&
           mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

constexpr int notes = 200;

void type(Saver& saver, const std::string& text)
{
    for (int i = 0; i < notes; ++i)
        saver.type("Font-" + std::to_string(i), text);
}

bool isAll(const NotesBook& book, const std::string& text)
{
    for (int i = 0; i < notes; ++i)
        if (textIn(book, "Font-" + std::to_string(i)) != text) return false;
    return true;
}

enum class Trial { firstSave, laterSave, receipt };

/// Saves on a disk with room for so many pages more than what is there. Empty when all is well.
std::string tryIt(Trial trial, std::size_t room, std::size_t oldPages, std::size_t newPages,
                  const fs::path& mountPoint, const fs::path& receipt, Tally& tally)
{
    const std::string oldText(60, 'o');
    const std::string newText(230, 'n');
    const std::size_t former = trial == Trial::firstSave ? 0 : oldPages;
    if (former + room == 0) return {}; // that would be a disk without a limit
    const SmallDisk disk(mountPoint, former + room);
    if (!disk.isMounted()) return "no disk of this size can be made";
    ++tally.trials;
    Saver saver(disk.path());
    if (trial != Trial::firstSave) {
        type(saver, oldText);
        if (const auto failure = saver.save()) return *failure;
    }
    const bool attaches = trial == Trial::receipt;
    std::optional<std::string> failure;
    if (attaches)
        failure = saver.attach("Font-0", "receipt.pdf", receipt);
    else
        type(saver, newText);
    if (auto notSaved = saver.save(); notSaved && !failure) failure = notSaved;
    tally.refused += failure ? 1 : 0;

    if (!leftovers(disk.path()).empty()) return "a temporary file is left";
    const bool isThere = fs::exists(notesFile(disk.path()));
    if (trial != Trial::firstSave && !isThere) return "the notes are gone";
    if (isThere)
        if (std::string damage = damageOf(disk.path()); !damage.empty()) return damage;
    const NotesBook book = NotesBook::load(notesFile(disk.path()));
    if (attaches) {
        if (!isAll(book, oldText)) return "the notes have changed";
        const bool isAttached = book.note("Font-0")->attachment.has_value();
        if (isAttached == failure.has_value())
            return "the receipt is attached, and that it is not has been said, or the reverse";
        const auto copy = contentOf(attachmentsFolder(disk.path()) / "receipt.pdf");
        if (isAttached ? copy != contentOf(receipt) : copy.has_value())
            return "the copy of the receipt is not whole, or is there for nothing";
    } else {
        const bool isNew = isThere && isAll(book, newText);
        const bool isOld = trial == Trial::firstSave ? !isThere : isAll(book, oldText);
        if (!isNew && !isOld) return "the notes are neither the old nor the new ones";
        if (isNew == failure.has_value()) return "what has been done and what was said differ";
        if (isNew != (room >= newPages))
            return "there is room and nothing is saved, or the reverse";
    }
    if (!disk.resize(4 * (former + newPages) + 100)) return "the disk cannot be made larger";
    saver.type("Later", "later");
    if (saver.save()) return "nothing can be saved when there is room again";
    const NotesBook after = NotesBook::load(notesFile(disk.path()));
    if (textIn(after, "Later") != "later" || !isAll(after, attaches ? oldText : newText))
        return "the next save does not have what was typed";
    return {};
}

} // namespace

Tally fullDisks()
{
    Tally tally;
    if (!mayMount()) {
        tally.isSkipped = true;
        return tally;
    }
    const test::TemporaryFolder folder;
    const fs::path mountPoint = folder.path() / "disk";
    fs::create_directory(mountPoint);
    const fs::path receipt = folder.write("receipt.pdf", std::string(60'000, 'r'));
    const auto sizeOf = [&](std::size_t letters) {
        const test::TemporaryFolder elsewhere;
        Saver saver(elsewhere.path());
        type(saver, std::string(letters, 'x'));
        if (const auto failure = saver.save()) tally.lose(*failure);
        return pagesOf(fs::file_size(notesFile(elsewhere.path())));
    };
    const std::size_t oldPages = sizeOf(60);
    const std::size_t newPages = sizeOf(230);
    for (const Trial trial : {Trial::firstSave, Trial::laterSave, Trial::receipt})
        for (std::size_t room = 0; room <= 2 * newPages; ++room) {
            const std::string wrong =
                tryIt(trial, room, oldPages, newPages, mountPoint, receipt, tally);
            if (!wrong.empty())
                tally.lose("room for " + std::to_string(room * page) + " bytes, " +
                           (trial == Trial::firstSave   ? "first save"
                            : trial == Trial::laterSave ? "later save"
                                                        : "receipt") +
                           ": " + wrong);
        }
    tally.remarks.push_back("notes of " + std::to_string(newPages * page) +
                            " bytes over none and over " + std::to_string(oldPages * page) +
                            " bytes, and a receipt of 60,000 bytes");
    return tally;
}

} // namespace quillmark::faults
