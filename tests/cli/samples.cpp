// Writes the fonts and the document that program_test.py runs the built program on.

#include "support/FontBytes.h"
#include "support/SampleDocument.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <span>
#include <stdexcept>
#include <string>

namespace {

using quillmark::test::Bytes;
using quillmark::test::FontBytes;
using quillmark::test::sampleDocument;

void write(const std::filesystem::path& path, std::span<const std::byte> bytes)
{
    std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    if (!file.flush()) throw std::runtime_error("could not write " + path.string());
}

Bytes cedar()
{
    return FontBytes()
        .face()
        .name(1, u"Cedar")
        .name(2, u"Regular")
        .name(4, u"Cedar Regular")
        .name(6, u"Cedar-Regular")
        .name(13, u"SIL Open Font License, Version 1.1")
        .name(14, u"https://openfontlicense.org")
        .os2({.fsType = 0})
        .build();
}

Bytes acme()
{
    return FontBytes()
        .face()
        .name(1, u"Acme")
        .name(2, u"Bold")
        .name(6, u"AcmeHeadline-Bold")
        .name(8, u"Acme Type")
        .os2({.fsType = 2})
        .build();
}

} // namespace

// What goes wrong ends the program, and with it the test that runs it.
// NOLINTNEXTLINE(bugprone-exception-escape)
int main(int argumentCount, char** arguments)
{
    if (argumentCount != 2) {
        std::fputs("usage: cli_samples FOLDER\n", stderr);
        return EXIT_FAILURE;
    }
    const std::filesystem::path folder = arguments[1];
    write(folder / "Fonts/cedar.ttf", cedar());
    write(folder / "Fonts/acme.ttf", acme());
    const std::string document =
        sampleDocument(2, {{.name = "ABCDEF+Cedar-Regular", .pages = {1, 2}, .program = cedar()}});
    write(folder / "document.pdf", std::as_bytes(std::span(document)));
    return EXIT_SUCCESS;
}
