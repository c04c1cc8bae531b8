// Where results go: standard output, a device, or a file that is replaced only when all is written.
#pragma once

#include "cli/Environment.h"
#include "cli/Interruption.h"
#include "files/DurableFile.h"
#include "files/FileDescriptor.h"
#include "files/FileError.h"

#include <filesystem>
#include <optional>
#include <string>
#include <variant>

namespace quillmark::cli {

/// Why results cannot be written.
struct OutputError {
    enum class Kind {
        failed,     // the system refuses
        closedPipe, // whoever read standard output has stopped; no message is due
    };
    Kind kind{};
    std::string sentence; // for the user, with the file's name; empty for closedPipe
    bool operator==(const OutputError&) const = default;
};

/// A report writes into `buffer` and calls `drain` now and then. After a failure all that follows
/// is dropped. Without `finish` nothing of a file remains, and one that was there stays as it was.
class Output {
public:
    /// `file` absent: standard output. A regular file, or one that does not exist yet, is written
    /// to a temporary beside it; the new file keeps the old one's permissions. Anything else, such
    /// as a pipe or a device, is written directly.
    Output(const std::optional<std::filesystem::path>& file, const Stream& standardOutput);
    ~Output() = default;
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    [[nodiscard]] std::string& buffer() { return m_buffer; }
    /// Whether somebody sees it on a terminal, which is a device by many names.
    [[nodiscard]] bool isTerminal() const { return m_isTerminal; }
    /// Writes the buffer out once there is enough in it to be worth a system call.
    void drain();
    /// Writes the buffer out, for a reader who waits.
    void flush() { write(); }
    /// Writes what is left and puts the file in its place.
    void finish();
    [[nodiscard]] const std::optional<OutputError>& error() const { return m_error; }

private:
    void openTarget(const std::filesystem::path& file);
    void write();
    void fail(const FileError& error);

    std::string m_buffer;
    std::string m_name; // for messages
    int m_descriptor{-1};
    bool m_isTerminal{};
    FileDescriptor m_direct;                        // a pipe or a device
    std::optional<Interruption::Removal> m_removal; // outlives the temporary
    std::optional<DurableFile> m_file;
    std::optional<OutputError> m_error;
};

} // namespace quillmark::cli
