#include "library/FolderWalk.h"

#include "library/AbsolutePath.h"
#include "library/FileName.h"
#include "library/LicenseFile.h"
#include "library/Limits.h"
#include "library/RegularFile.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace quillmark {
namespace {

namespace fs = std::filesystem;

constexpr std::array<std::string_view, 7> fontExtensions{
    "ttf", "otf", "ttc", "otc", "dfont", "woff", "woff2",
};

struct CloseFolder {
    void operator()(DIR* folder) const { ::closedir(folder); }
};
using OpenFolder = std::unique_ptr<DIR, CloseFolder>;

enum class Links { follow, leave };

OpenFolder openFolder(const Location& location, Links links)
{
    const int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | (links == Links::leave ? O_NOFOLLOW : 0);
    FileDescriptor descriptor(::openat(location.folder(), location.name(), flags));
    if (!descriptor.isOpen()) return nullptr;
    OpenFolder folder(::fdopendir(descriptor.get()));
    if (folder) (void)descriptor.release(); // closedir closes it
    return folder;
}

enum class EntryKind { folder, font, licenseCandidate };

struct Entry {
    std::string name;
    EntryKind kind{};
};

bool isRegularFile(DIR* folder, const char* name)
{
    struct stat status {};
    return ::fstatat(::dirfd(folder), name, &status, 0) == 0 && S_ISREG(status.st_mode);
}

/// The entry's type as readdir gives it; asked for where the file system leaves it out.
unsigned char entryType(DIR* folder, const dirent& entry)
{
    if (entry.d_type != DT_UNKNOWN) return entry.d_type;
    struct stat status {};
    if (::fstatat(::dirfd(folder), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return DT_UNKNOWN;
    if (S_ISDIR(status.st_mode)) return DT_DIR;
    if (S_ISREG(status.st_mode)) return DT_REG;
    return S_ISLNK(status.st_mode) ? DT_LNK : DT_UNKNOWN;
}

std::optional<EntryKind> entryKind(DIR* folder, const dirent& entry)
{
    const unsigned char type = entryType(folder, entry);
    if (type == DT_DIR) return EntryKind::folder;
    if (type != DT_REG && type != DT_LNK) return std::nullopt;
    const std::string_view name = entry.d_name;
    const bool isFont = hasFontExtension(name);
    if (!isFont && !LicenseFile::isCandidate(name)) return std::nullopt;
    if (type == DT_LNK && !isRegularFile(folder, entry.d_name)) return std::nullopt;
    return isFont ? EntryKind::font : EntryKind::licenseCandidate;
}

/// What is of use in a folder, last name first.
std::vector<Entry> entries(DIR* folder)
{
    std::vector<Entry> found;
    // Every walk has a folder stream of its own, so that readdir is safe here.
    while (const dirent* entry = ::readdir(folder)) {
        if (entry->d_name[0] == '.') continue; // hidden, or the folder and its parent
        if (const auto kind = entryKind(folder, *entry)) found.push_back({entry->d_name, *kind});
    }
    std::ranges::sort(found, std::ranges::greater{}, &Entry::name);
    return found;
}

} // namespace

bool hasFontExtension(std::string_view fileName)
{
    const std::string extension = FileName::extension(fileName);
    return std::ranges::find(fontExtensions, extension) != fontExtensions.end();
}

std::vector<fs::path> licenseCandidates(const fs::path& folder)
{
    const fs::path path = absolutePath(folder);
    const OpenFolder open = openFolder(Location(path.native()), Links::follow);
    if (!open) return {};
    std::vector<Entry> found = entries(open.get());
    std::erase_if(found, [](const Entry& e) { return e.kind != EntryKind::licenseCandidate; });
    std::vector<fs::path> candidates;
    for (auto entry = found.rbegin(); entry != found.rend(); ++entry)
        candidates.push_back(path / entry->name);
    return candidates;
}

FolderContents walkFolder(const fs::path& folder)
{
    struct Pending {
        std::string path;
        std::size_t nameStart{}; // of the last name in it
        EntryKind kind{};
        std::size_t folder{}; // the folder it lies in
    };
    FolderContents contents;
    std::vector<Pending> pending{{absolutePath(folder).native(), 0, EntryKind::folder, 0}};
    Links links = Links::follow; // only the folder that was asked for
    // The folder read last is kept open: what comes next often lies in it, and however deep the
    // folders are, the way into one more is short from there.
    OpenFolder last;
    std::string lastPath;
    while (!pending.empty()) {
        Pending next = std::move(pending.back());
        pending.pop_back();
        switch (next.kind) {
        case EntryKind::font:
            contents.fonts.push_back({std::move(next.path), next.folder});
            continue;
        case EntryKind::licenseCandidate:
            contents.licenseCandidates[next.folder].emplace_back(std::move(next.path));
            continue;
        case EntryKind::folder:
            break;
        }
        if (next.path.size() > Limits::pathBytes) continue;
        const std::string_view parent = std::string_view(next.path).substr(0, next.nameStart);
        const Location location =
            last && parent == lastPath
                ? Location(::dirfd(last.get()), next.path.substr(next.nameStart))
                : Location(next.path);
        OpenFolder open = openFolder(location, links);
        links = Links::leave;
        if (!open) continue;
        const std::size_t number = contents.licenseCandidates.size();
        contents.licenseCandidates.emplace_back();
        const std::string prefix = next.path.ends_with('/') ? next.path : next.path + "/";
        for (const Entry& entry : entries(open.get()))
            pending.push_back({prefix + entry.name, prefix.size(), entry.kind, number});
        last = std::move(open);
        lastPath = prefix;
    }
    return contents;
}

} // namespace quillmark
