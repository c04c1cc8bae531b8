// Names of attached copies that lead elsewhere, and things in the folder that are no copies:
// nothing outside the folder may be opened, changed or removed, whatever is done with the note.
#include "app/model/ModelFixture.h"

#include "notes/NotesBook.h"
#include "notes/NotesJson.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <map>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillmark::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

/// Tells of each time that anything below some folders is opened, changed or removed, by whomever.
class Watch {
public:
    explicit Watch(const std::vector<fs::path>& folders) : m_descriptor(inotify_init1(IN_NONBLOCK))
    {
        EXPECT_GE(m_descriptor, 0) << "nothing can be watched";
        for (const auto& folder : folders) {
            add(folder);
            for (const auto& entry : fs::recursive_directory_iterator(folder))
                if (!entry.is_symlink()) add(entry.path());
        }
        // Finding the files has opened the folders.
        static_cast<void>(seen());
    }
    ~Watch() { close(m_descriptor); }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    /// What was done since it was asked last.
    [[nodiscard]] std::vector<std::string> seen() const
    {
        std::vector<std::string> events;
        alignas(inotify_event) std::array<char, 65'536> bytes{};
        ssize_t count = 0;
        while ((count = read(m_descriptor, bytes.data(), bytes.size())) > 0)
            for (ssize_t at = 0; at < count;) {
                inotify_event event{};
                std::memcpy(&event, bytes.data() + at, sizeof event);
                events.push_back(m_paths.at(event.wd) + ": " + std::to_string(event.mask));
                at += static_cast<ssize_t>(sizeof event + event.len);
            }
        return events;
    }

private:
    void add(const fs::path& path)
    {
        const int watched =
            inotify_add_watch(m_descriptor, path.c_str(), IN_ALL_EVENTS | IN_DONT_FOLLOW);
        EXPECT_GE(watched, 0) << path << " cannot be watched";
        m_paths[watched] = path;
    }

    int m_descriptor;
    std::map<int, std::string> m_paths;
};

TEST(Watch, TellsOfWhatIsOpenedChangedAndRemoved)
{
    const TemporaryFolder folder;
    const auto file = folder.write("canary/deep/precious.pdf", "precious");
    const auto told = [&](const std::function<void()>& act) {
        const Watch watch({folder.path() / "canary"});
        act();
        return watch.seen();
    };
    const auto tells = testing::Contains(StartsWith((folder.path() / "canary").native()));
    EXPECT_THAT(told([] {}), IsEmpty());
    EXPECT_THAT(told([&] { EXPECT_EQ(folder.content("canary/deep/precious.pdf"), "precious"); }),
                tells);
    EXPECT_THAT(told([&] { EXPECT_EQ(::chmod(file.c_str(), 0600), 0); }), tells);
    EXPECT_THAT(told([&] { folder.write("canary/new", ""); }), tells);
    EXPECT_THAT(told([&] { fs::remove(file); }), tells);
}

/// All that is below a folder: paths, kinds, permissions, times and contents.
std::vector<std::string> inventory(const fs::path& folder)
{
    std::vector<std::string> lines;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        struct stat status {};
        EXPECT_EQ(lstat(entry.path().c_str(), &status), 0);
        std::string line = entry.path().native() + " " + std::to_string(status.st_mode) + " " +
                           std::to_string(status.st_ino) + " " +
                           std::to_string(status.st_mtim.tv_sec) + "." +
                           std::to_string(status.st_mtim.tv_nsec);
        if (entry.is_symlink()) line += " -> " + fs::read_symlink(entry.path()).native();
        lines.push_back(line);
    }
    std::ranges::sort(lines);
    return lines;
}

/// What is done before the note is read; `folder` has the copies, `canary` is not to be touched.
struct Hostility {
    const char* name;
    std::function<std::string(const fs::path& folder, const fs::path& canary)> set; // the value
};

Hostility value(const char* name, std::string text)
{
    return {name, [text](const fs::path&, const fs::path&) { return text; }};
}

/// Something in the folder, under a plain name.
Hostility thing(const char* name, void (*make)(const fs::path& at, const fs::path& canary))
{
    return {name, [make](const fs::path& folder, const fs::path& canary) {
                make(folder / "thing.pdf", canary);
                return std::string("thing.pdf");
            }};
}

/// The folder of the copies is something else.
Hostility place(const char* name, void (*make)(const fs::path& folder, const fs::path& canary))
{
    return {name, [make](const fs::path& folder, const fs::path& canary) {
                fs::remove_all(folder);
                make(folder, canary);
                return std::string("precious.pdf");
            }};
}

using namespace std::string_literals;

const std::vector<Hostility> hostilities{
    {"AnAbsolutePath",
     [](const fs::path&, const fs::path& canary) { return (canary / "precious.pdf").native(); }},
    value("TheFolderAbove", ".."),
    value("TheFolderItself", "."),
    value("Nothing", ""),
    value("ABlank", " "),
    value("ASlash", "/"),
    value("TwoSlashes", "//"),
    value("AFileAbove", "../notes.json"),
    value("AFileFarAbove", "../../../canary/precious.pdf"),
    value("ThroughTheFolder", "x/../../../../canary/precious.pdf"),
    value("ThroughItself", "./../../../canary/precious.pdf"),
    value("ASlashAtTheEnd", "thing.pdf/"),
    value("DotsAndASlash", "../"),
    value("APartOfAPath", "deep/thing.pdf"),
    value("BehindANul", "../../../canary/precious.pdf\0.pdf"s),
    value("ANul", "\0"s),
    value("DotsAndANul", "..\0"s),
    value("ANameAndANul", "thing.pdf\0"s),
    value("ALineFeed", "thing\n.pdf"),
    value("ALineFeedAndDots", "\n../../../canary/precious.pdf"),
    value("ManyDots", "...."),
    value("Backslashes", "..\\..\\..\\canary\\precious.pdf"),
    value("APercentSlash", "..%2F..%2F..%2Fcanary%2Fprecious.pdf"),
    value("APercentNul", "thing.pdf%00"),
    value("AnAddress", "file:..%2fprecious.pdf"),
    value("AnOption", "--help"),
    value("ATilde", "~"),
    value("AVariable", "$HOME"),
    value("ACommand", "`touch precious.pdf`"),
    value("AStar", "*"),
    value("AWideSlash", "..\uFF0F..\uFF0F..\uFF0Fcanary\uFF0Fprecious.pdf"),
    value("ADivisionSlash", "..\u2215..\u2215..\u2215canary\u2215precious.pdf"),
    value("LeaderDots", "\u2025/\u2025/canary"),
    value("RightToLeft", "\u202Efdp.gniht"),
    value("AnOverlongSlash", "..\xC0\xAF..\xC0\xAF..\xC0\xAF"
                             "canary"),
    value("OfTheLongestLength", std::string(255, 'x')),
    value("TooLong", std::string(256, 'x')),
    value("LongerThanAPath", std::string(5'000, 'x')),
    value("OfAMegabyte", std::string(1'000'000, 'x')),
    value("ALongWayUp",
          []() {
              std::string path;
              for (int i = 0; i < 300; ++i)
                  path += "../";
              return path + "etc/passwd";
          }()),
    value("ADevice", "/dev/zero"),
    value("AProcessFile", "/proc/self/cwd/precious.pdf"),
    thing("ALinkToAFile",
          [](const fs::path& at, const fs::path& canary) {
              fs::create_symlink(canary / "precious.pdf", at);
          }),
    thing("ALinkToAFolder",
          [](const fs::path& at, const fs::path& canary) { fs::create_symlink(canary, at); }),
    thing("ARelativeLink",
          [](const fs::path& at, const fs::path&) {
              fs::create_symlink("../../../canary/precious.pdf", at);
          }),
    thing("ALinkToNowhere",
          [](const fs::path& at, const fs::path& canary) {
              fs::create_symlink(canary / "new.pdf", at);
          }),
    thing("ALinkToItself", [](const fs::path& at, const fs::path&) { fs::create_symlink(at, at); }),
    thing("ALinkToADevice",
          [](const fs::path& at, const fs::path&) { fs::create_symlink("/dev/zero", at); }),
    thing("AHardLink",
          [](const fs::path& at, const fs::path& canary) {
              fs::create_hard_link(canary / "shared.pdf", at);
          }),
    thing("APipe",
          [](const fs::path& at, const fs::path&) { EXPECT_EQ(mkfifo(at.c_str(), 0600), 0); }),
    thing("AFolder",
          [](const fs::path& at, const fs::path& canary) {
              fs::create_directory(at);
              fs::create_symlink(canary / "precious.pdf", at / "precious.pdf");
          }),
    place("AFolderThatIsALink",
          [](const fs::path& folder, const fs::path& canary) {
              fs::create_directory_symlink(canary, folder);
          }),
    place("AFolderThatIsALinkToAFile",
          [](const fs::path& folder, const fs::path& canary) {
              fs::create_symlink(canary / "precious.pdf", folder);
          }),
    place("AFolderThatIsALinkToNowhere",
          [](const fs::path& folder, const fs::path& canary) {
              fs::create_directory_symlink(canary / "new", folder);
          }),
    place("AFolderThatIsAFile",
          [](const fs::path& folder, const fs::path&) {
              EXPECT_EQ(close(open(folder.c_str(), O_CREAT | O_WRONLY, 0600)), 0);
          }),
};

class HostileAttachments : public ModelFixture, public testing::WithParamInterface<Hostility> {
protected:
    HostileAttachments()
    {
        folder.write("canary/precious.pdf", "precious");
        folder.write("canary/deep/precious.pdf", "precious");
        folder.write("canary/shared.pdf", "precious");
        folder.write("receipts/receipt.pdf", "paid");
        fs::create_directories(places.attachments());
        addScannedFolder("fonts", {{.postScriptName = "Brook"}});
        hostile = GetParam().set(places.attachments(), canary());
        save(note(hostile));
    }

    [[nodiscard]] fs::path canary() const { return folder.path() / "canary"; }
    [[nodiscard]] static LicenseNote note(const std::string& attachment)
    {
        return {.boughtFrom = "A shop",
                .attachment = attachment,
                .attachmentName = "receipt.pdf",
                .updated = std::chrono::sys_seconds(std::chrono::seconds(1'767'225'600))};
    }
    void save(const LicenseNote& saved)
    {
        NotesBook book;
        book.set(saved, "Brook");
        folder.write("data/Quillmark/notes.json", NotesJson::encode(book));
    }

    /// Has it done, and sees that nothing but the folder of the copies was touched.
    void untouched(const char* what, const std::function<void()>& act)
    {
        SCOPED_TRACE(what);
        const auto before = inventory(canary());
        const Watch watch({canary()});
        act();
        background.runAll();
        auto events = watch.seen();
        // When a second name of a file is removed it has one name less.
        std::erase(events, (canary() / "shared.pdf").native() + ": " + std::to_string(IN_ATTRIB));
        EXPECT_THAT(events, IsEmpty());
        EXPECT_EQ(inventory(canary()), before);
        EXPECT_EQ(content(canary() / "precious.pdf"), "precious");
        EXPECT_EQ(content(canary() / "shared.pdf"), "precious");
        EXPECT_FALSE(fs::exists(canary() / "new"));
    }

    std::string hostile;
};

TEST_P(HostileAttachments, TouchNothingOutsideTheFolder)
{
    untouched("load", [&] { model->start(); });
    ASSERT_EQ(model->note("Brook").boughtFrom, "A shop");
    untouched("open", [&] { model->openAttachment("Brook"); });
    for (const std::string& url : prompts.openedURLs) {
        // Only a file that lies in the folder itself is handed on.
        const LicenseNote opened = model->note("Brook");
        ASSERT_TRUE(opened.attachment);
        const fs::path path = places.attachments() / *opened.attachment;
        EXPECT_THAT(url, StartsWith("file://" + places.attachments().native() + "/"));
        EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(path)));
        EXPECT_FALSE(fs::is_symlink(places.attachments()));
    }
    untouched("save", [&] {
        LicenseNote edited = model->note("Brook");
        edited.text = "typed";
        model->saveNote(edited, "Brook");
    });
    for (const auto format : {ExportFormat::csv, ExportFormat::pdf})
        untouched("export", [&] {
            model->setSelection(SidebarItem::folder(folder.path() / "fonts"));
            model->export_(format);
            prompts.answerSave(folder.path() / "list");
        });
    EXPECT_TRUE(fs::exists(folder.path() / "list"));
    untouched("replace", [&] {
        model->attachFile("Brook");
        prompts.answerOpen({folder.path() / "receipts/receipt.pdf"});
    });
    untouched("remove", [&] { model->removeAttachment("Brook"); });

    // As it was, and removed at once.
    save(note(hostile));
    makeModel(AppModel::Persistence::on);
    untouched("load again", [&] { model->start(); });
    untouched("remove at once", [&] { model->removeAttachment("Brook"); });
    untouched("attach", [&] {
        model->attachFile("Brook");
        prompts.answerOpen({folder.path() / "receipts/receipt.pdf"});
    });
    untouched("end", [&] { model.reset(); });
    EXPECT_EQ(content(folder.path() / "receipts/receipt.pdf"), "paid");
}

INSTANTIATE_TEST_SUITE_P(HostileAttachments, HostileAttachments, testing::ValuesIn(hostilities),
                         [](const auto& test) { return std::string(test.param.name); });

/// Things that are put in a copy's place while the application is at work.
class SwappedAttachments : public ModelFixture {
protected:
    SwappedAttachments()
    {
        folder.write("canary/precious.pdf", "precious");
        folder.write("canary/0A1B2C3D-receipt.pdf", "precious");
        folder.write("receipts/receipt.pdf", "paid");
    }
    [[nodiscard]] fs::path canary() const { return folder.path() / "canary"; }
    void attach()
    {
        model->attachFile("Brook");
        prompts.answerOpen({folder.path() / "receipts/receipt.pdf"});
    }
    void putLinkInPlaceOfTheFolder()
    {
        fs::rename(places.attachments(), folder.path() / "moved");
        fs::create_directory_symlink(canary(), places.attachments());
    }
};

TEST_F(SwappedAttachments, TheWatchSeesWhatIsOpenedChangedAndRemoved)
{
    const Watch watch({canary()});
    EXPECT_THAT(watch.seen(), IsEmpty());
    EXPECT_EQ(content(canary() / "precious.pdf"), "precious");
    EXPECT_FALSE(watch.seen().empty());
    fs::permissions(canary() / "precious.pdf", fs::perms(0600));
    EXPECT_FALSE(watch.seen().empty());
    fs::remove(canary() / "precious.pdf");
    EXPECT_FALSE(watch.seen().empty());
}

TEST_F(SwappedAttachments, ALinkUnderTheNameOfTheNextCopyIsNotWrittenThrough)
{
    fs::create_directories(places.attachments());
    const Watch watch({canary()});
    uuids = {"0A1B2C3D-1"};
    attach();
    // After the name has been chosen, and before the file is copied.
    fs::create_symlink(canary() / "precious.pdf", places.attachments() / "0A1B2C3D-receipt.pdf");
    background.runAll();
    EXPECT_THAT(watch.seen(), IsEmpty());
    EXPECT_TRUE(model->alert());
    EXPECT_EQ(model->note("Brook"), LicenseNote());
}

TEST_F(SwappedAttachments, ALinkInPlaceOfACopyIsNeitherOpenedNorFollowedWhenRemoved)
{
    attach();
    background.runAll();
    const Watch watch({canary()});
    const fs::path copy = places.attachments() / *model->note("Brook").attachment;
    fs::remove(copy);
    fs::create_symlink(canary() / "precious.pdf", copy);
    model->openAttachment("Brook");
    EXPECT_THAT(prompts.openedURLs, IsEmpty());
    model->removeAttachment("Brook");
    background.runAll();
    EXPECT_FALSE(fs::is_symlink(copy));
    EXPECT_THAT(watch.seen(), IsEmpty());
    EXPECT_EQ(content(canary() / "precious.pdf"), "precious");
}

TEST_F(SwappedAttachments, ALinkInPlaceOfTheFolderIsNotFollowed)
{
    attach();
    background.runAll();
    ASSERT_EQ(model->note("Brook").attachment, "0A1B2C3D-receipt.pdf");
    putLinkInPlaceOfTheFolder();
    const Watch watch({canary()});
    model->openAttachment("Brook");
    EXPECT_THAT(prompts.openedURLs, IsEmpty());
    EXPECT_EQ(model->alert(), "receipt.pdf could not be opened: Not a directory.");
    attach();
    background.runAll();
    EXPECT_EQ(model->note("Brook").attachment, "0A1B2C3D-receipt.pdf");
    model->removeAttachment("Brook");
    background.runAll();
    EXPECT_EQ(model->alert(), "0A1B2C3D-receipt.pdf could not be removed: Not a directory.");
    EXPECT_THAT(watch.seen(), IsEmpty());
    EXPECT_THAT(namesIn(canary()), ElementsAre("0A1B2C3D-receipt.pdf", "precious.pdf"));
}

} // namespace
} // namespace quillmark::test
