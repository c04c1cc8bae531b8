// Seeds for the harness of reader/.

#include "Seeds.h"

#include "reader/Messages.h"

#include <string>

namespace quillmark::fuzz {
namespace {

void write(char question, std::string_view name, const std::string& messages)
{
    const std::string seed = question + messages;
    writeSeed("messages", name, std::as_bytes(std::span(seed)));
}

} // namespace

void writeReaderSeeds()
{
    using namespace reader;
    std::string faces;
    PlatformFont face;
    face.postScriptName = "Foo-Bold";
    face.format = FontFormat::trueType;
    face.os2.emplace(60, std::byte{1});
    face.settledNames = NameStrings{{0, "(c)"}, {1, "Foo"}, {6, "Foo-Bold"}};
    writeFace(faces, face);
    face.settledInstances = {{"Foo-Thin", "Thin", "Foo Thin"}};
    writeFace(faces, face);
    writeEnd(faces);
    write('\0', "faces", faces);

    std::string installed;
    writeInstalledFile(installed, {"/fonts/a.ttc", {0, 1}});
    writeInstalledFile(installed, {"/fonts/b.otf", {}});
    writeEnd(installed);
    write('\1', "installed", installed);

    std::string document;
    DocumentFont font;
    font.baseName = "Foo";
    font.pdfNames = {"ABCDEF+Foo"};
    font.subtype = "TrueType";
    font.program = EmbeddedProgram::trueType;
    font.pages = {1, 2, 3, 9, 1'000};
    font.embedded.emplace();
    font.embedded->family = "Foo";
    font.embedded->os2.emplace();
    writeDocumentFont(document, font);
    writeEnd(document, 1'000);
    write('\2', "document", document);

    std::string locked;
    writeError(locked, PDFCheckError::Kind::locked);
    write('\2', "locked", locked);
}

} // namespace quillmark::fuzz
