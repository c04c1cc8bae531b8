// What a reader process may send: whatever it is, it ends as an answer that could be one, or as
// none. The first byte says what was asked.

#include "Harness.h"

#include "reader/Limits.h"
#include "reader/Messages.h"

#include <algorithm>
#include <cstring>
#include <variant>

namespace {

using namespace quillmark;
using namespace quillmark::reader;

/// Whether the bytes end as a complete answer.
template <typename SomeAnswer>
bool isAnswer(SomeAnswer& answer, std::span<const std::byte> bytes)
{
    FrameBuffer buffer(reader::Limits::messageBytes);
    while (!bytes.empty()) {
        const std::span<char> room = buffer.room();
        const std::size_t count = std::min(room.size(), bytes.size());
        std::memcpy(room.data(), bytes.data(), count);
        buffer.filled(count);
        bytes = bytes.subspan(count);
        while (const auto frame = buffer.next()) {
            const reader::Progress progress = answer.add(*frame);
            if (progress != reader::Progress::goesOn) return progress == reader::Progress::ended;
        }
    }
    return false;
}

void expectValid(std::string_view text)
{
    fuzz::expect(repairedUtf8(text) == text);
}

void expectFaces(std::span<const std::byte> bytes)
{
    FacesAnswer answer;
    if (!isAnswer(answer, bytes)) return;
    std::string again;
    const auto faces = answer.take("/f/fuzz.ttf");
    for (const PlatformFont& face : faces) {
        expectValid(face.postScriptName);
        if (face.settledNames)
            for (const auto& [id, text] : *face.settledNames)
                expectValid(text);
        writeFace(again, face);
    }
    writeEnd(again);
    FacesAnswer same;
    fuzz::expect(isAnswer(same, std::as_bytes(std::span(again))));
    fuzz::expect(same.take("/f/fuzz.ttf").size() == faces.size());
}

void expectInstalled(std::span<const std::byte> bytes)
{
    InstalledFilesAnswer answer;
    if (!isAnswer(answer, bytes)) return;
    for (const InstalledFile& file : answer.take())
        fuzz::expect(!file.path.empty() && file.path.find('\0') == std::string::npos);
}

void expectDocument(std::span<const std::byte> bytes)
{
    DocumentAnswer answer;
    if (!isAnswer(answer, bytes)) return;
    const auto reading = answer.take();
    const auto* document = std::get_if<DocumentFonts>(&reading);
    if (document == nullptr) return;
    fuzz::expect(document->pageCount >= 0);
    std::string again;
    for (const DocumentFont& font : document->fonts) {
        fuzz::expect(std::ranges::adjacent_find(font.pages, std::ranges::greater_equal{}) ==
                     font.pages.end());
        fuzz::expect(font.pages.empty() || font.pages.front() > 0);
        expectValid(font.baseName);
        writeDocumentFont(again, font);
    }
    writeEnd(again, document->pageCount);
    DocumentAnswer same;
    fuzz::expect(isAnswer(same, std::as_bytes(std::span(again))));
    fuzz::expect(same.take() == reading);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) return 0;
    const auto bytes = fuzz::input(data, size).subspan(1);
    switch (data[0] % 3) {
    case 0:
        expectFaces(bytes);
        break;
    case 1:
        expectInstalled(bytes);
        break;
    case 2:
        expectDocument(bytes);
        break;
    }
    return 0;
}
