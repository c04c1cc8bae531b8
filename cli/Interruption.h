// What Ctrl-C and the other signals that end a program do.
#pragma once

#include <filesystem>

namespace quillmark::cli::Interruption {

/// From now on Ctrl-C ends the program at once with exit code 130, and the signals TERM and HUP end
/// it as they do by default. A half-written output is removed first, and the progress line is
/// erased. A signal that is ignored stays so, as for a program that was started with nohup.
void install();

/// While it lives, the file at `path` is removed when a signal ends the program. There can be one
/// at a time.
class Removal {
public:
    explicit Removal(const std::filesystem::path& path);
    ~Removal();
    Removal(const Removal&) = delete;
    Removal& operator=(const Removal&) = delete;
};

/// Whether a progress line stands on the terminal behind `descriptor`.
void setProgressLine(int descriptor, bool shown);

} // namespace quillmark::cli::Interruption
