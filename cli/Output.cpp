#include "cli/Output.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillmark::cli {
namespace {

namespace fs = std::filesystem;

/// Bytes that are worth a system call.
constexpr std::size_t pieceSize = 65536;

constexpr mode_t permissionBits = 07777;

mode_t defaultMode()
{
    // No other thread runs yet that could make a file while the mask is off.
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

/// Where a file is made that is opened as `path`: links may lead to one that does not exist yet.
fs::path endOfLinks(fs::path path)
{
    constexpr int most = 40; // as many as Linux follows
    std::error_code error;
    for (int links = 0; links < most && fs::is_symlink(path, error); ++links)
        path = path.parent_path() / fs::read_symlink(path, error);
    return path;
}

} // namespace

Output::Output(const std::optional<fs::path>& file, const Stream& standardOutput)
{
    // Standard output stays what it is under its name as a device: opened again, a file that it was
    // redirected to would be replaced, and `>>` would not append.
    if (!file || *file == "/dev/stdout") {
        m_name = "standard output";
        m_descriptor = standardOutput.descriptor;
        return;
    }
    m_name = file->native();
    openTarget(*file);
    m_descriptor = m_file.get();
}

Output::~Output()
{
    if (!m_temporary.empty()) unlink(m_temporary.c_str());
}

void Output::openTarget(const fs::path& file)
{
    struct stat status {};
    const bool exists = stat(file.c_str(), &status) == 0;
    if (!exists && errno != ENOENT) return fail(errno);
    if (exists && !S_ISREG(status.st_mode)) {
        m_file = openFile(file, O_WRONLY);
        if (!m_file.isOpen()) fail(errno);
        return;
    }
    // A link stays a link to the file that is replaced.
    std::error_code error;
    m_target = fs::weakly_canonical(exists ? file : endOfLinks(file), error);
    if (error) return fail(error.value());
    makeTemporary(exists ? status.st_mode & permissionBits : defaultMode());
}

void Output::makeTemporary(unsigned mode)
{
    std::string name = m_target.parent_path() / ".quillmark-XXXXXX";
    // No signal may come between making the file and knowing that it is to be removed.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, &before);
    m_file = FileDescriptor(mkostemp(name.data(), O_CLOEXEC));
    const int error = errno;
    if (m_file.isOpen()) {
        m_temporary = name;
        m_removal.emplace(m_temporary);
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    if (!m_file.isOpen()) return fail(error);
    if (fchmod(m_file.get(), mode) != 0) fail(errno);
}

void Output::drain()
{
    if (m_buffer.size() >= pieceSize) write();
}

void Output::finish()
{
    write();
    if (m_error || !m_file.isOpen()) return;
    if (const int error = m_file.close(); error != 0) return fail(error);
    if (m_temporary.empty()) return;
    if (rename(m_temporary.c_str(), m_target.c_str()) != 0) return fail(errno);
    m_temporary.clear();
    m_removal.reset();
}

void Output::write()
{
    if (!m_error) {
        const int error = writeAll(m_descriptor, m_buffer);
        if (error != 0) fail(error);
    }
    m_buffer.clear();
}

void Output::fail(int errorNumber)
{
    if (m_error) return;
    if (errorNumber == EPIPE) {
        m_error = OutputError{OutputError::Kind::closedPipe, {}};
        return;
    }
    m_error = OutputError{OutputError::Kind::failed,
                          m_name + " could not be written: " + errorText(errorNumber) + "."};
}

} // namespace quillmark::cli
