// Writes the seeds of all fuzz harnesses: one folder for each, below the folder named on the
// command line.

#include "Seeds.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace {

std::filesystem::path root; // set once by main, before any seed is written

} // namespace

void quillmark::fuzz::writeSeed(std::string_view reader, std::string_view name,
                                std::span<const std::byte> bytes)
{
    const auto folder = root / reader;
    std::filesystem::create_directories(folder);
    std::ofstream file(folder / name, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    if (!file.flush()) throw std::runtime_error("could not write a seed");
}

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fputs("usage: fuzz_seeds FOLDER\n", stderr);
        return EXIT_FAILURE;
    }
    root = argv[1];
    quillmark::fuzz::writeExportSeeds();
    quillmark::fuzz::writeFontFileSeeds();
    quillmark::fuzz::writeLibrarySeeds();
    quillmark::fuzz::writeNotesSeeds();
    quillmark::fuzz::writePDFSeeds();
    quillmark::fuzz::writeReaderSeeds();
    quillmark::fuzz::writeUpdateSeeds();
    return EXIT_SUCCESS;
}
