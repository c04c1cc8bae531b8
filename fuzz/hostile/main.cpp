// Writes the hostile files into a folder, without the large ones if that is wanted, and what is
// expected of them into the file "expected" there: a line each, of the name and the expectation
// with a tabulator between them.

#include "HostileFiles.h"

#include "support/PDFBytes.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string_view>

int main(int argc, char** argv)
{
    using namespace quillmark;
    const bool isQuick = argc == 3 && std::string_view(argv[2]) == "--quick";
    if (argc != 2 && !isQuick) {
        std::fputs("usage: hostile_files FOLDER [--quick]\n", stderr);
        return EXIT_FAILURE;
    }
    const std::filesystem::path folder = argv[1];
    std::filesystem::create_directories(folder);
    std::ofstream expected(folder / "expected");
    for (const auto files : {fuzz::hostileFonts(), fuzz::hostileDocuments()}) {
        for (const fuzz::HostileFile& file : files) {
            if (isQuick && file.size == fuzz::HostileFile::Size::large) continue;
            std::ofstream written(folder / file.name, std::ios::binary);
            written << test::asText(file.make());
            expected << file.name << '\t' << file.expected << '\n';
            if (!written.flush()) return EXIT_FAILURE;
        }
    }
    return expected.flush() ? EXIT_SUCCESS : EXIT_FAILURE;
}
