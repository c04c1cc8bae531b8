#include "cli/Output.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace quillmark::cli {
namespace {

namespace fs = std::filesystem;

/// Bytes that are worth a system call.
constexpr std::size_t pieceSize = 65536;

} // namespace

Output::Output(const std::optional<fs::path>& file, const Stream& standardOutput)
{
    // Standard output stays what it is under its name as a device: opened again, a file that it was
    // redirected to would be replaced, and `>>` would not append.
    if (!file || *file == "/dev/stdout") {
        m_name = "standard output";
        m_descriptor = standardOutput.descriptor;
        m_isTerminal = standardOutput.columns.has_value();
        return;
    }
    m_name = file->native();
    openTarget(*file);
}

void Output::openTarget(const fs::path& file)
{
    struct stat status {};
    if (stat(file.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
        m_direct = openFile(file, O_WRONLY | O_NOCTTY);
        if (!m_direct.isOpen()) return fail(FileError::ofSystem(errno));
        m_descriptor = m_direct.get();
        m_isTerminal = isatty(m_descriptor) == 1;
        return;
    }
    // No signal may come between making the file and knowing that it is to be removed.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, &before);
    auto made = DurableFile::create(file, newFileMode());
    const auto* error = std::get_if<FileError>(&made);
    if (error == nullptr) {
        m_file.emplace(std::move(std::get<DurableFile>(made)));
        m_removal.emplace(m_file->temporary());
        m_descriptor = m_file->descriptor();
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    if (error != nullptr) fail(*error);
}

void Output::drain()
{
    if (m_buffer.size() >= pieceSize) write();
}

void Output::finish()
{
    write();
    if (m_error) return;
    if (const int error = m_direct.close(); error != 0) return fail(FileError::ofSystem(error));
    if (!m_file) return;
    // A report can be made again: nobody has to wait for the disk.
    if (const auto error = m_file->commit(Durability::unsynced)) return fail(*error);
    m_removal.reset();
}

void Output::write()
{
    if (!m_error) {
        const int error = writeAll(m_descriptor, m_buffer);
        if (error != 0) fail(FileError::ofSystem(error));
    }
    m_buffer.clear();
}

void Output::fail(const FileError& error)
{
    if (m_error) return;
    if (error.number == EPIPE) {
        m_error = OutputError{OutputError::Kind::closedPipe, {}};
        return;
    }
    m_error = OutputError{OutputError::Kind::failed,
                          m_name + " could not be written: " + error.reason + "."};
}

} // namespace quillmark::cli
