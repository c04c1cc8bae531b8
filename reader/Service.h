// What a reader process does: it answers questions until nobody asks any more.
#pragma once

#include "library/FontService.h"
#include "library/InstalledFonts.h"
#include "pdf/PDFFontScanner.h"
#include "reader/ReaderProcess.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace quillmark::reader {

/// How files are read. Exceptions end the process, as they should: whoever asks starts another one.
struct FileReading {
    std::function<std::vector<PlatformFont>(const std::string& path, Faces which)> faces;
    std::function<std::vector<InstalledFile>()> installedFiles;
    PDFFontScanner::Read document;
};

/// Reading with the readers of core/.
[[nodiscard]] FileReading ordinaryReading();

/// Answers what comes through the socket `channel`, until the other side closes it or has no work
/// for a while. Before a file is opened its question's number goes to `begun`.
void serve(int channel, Begun& begun, const FileReading& reading);

/// The whole reader program but for its readers: takes over what it finds open, confines itself and
/// serves. Returns the exit code.
[[nodiscard]] int runReader(const FileReading& reading);

} // namespace quillmark::reader
