#include "reader/Messages.h"

#include "library/Limits.h"
#include "pdf/Limits.h"
#include "reader/Limits.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

namespace quillmark::reader {
namespace {

/// As much of an `OS/2` table as is looked at, and a bit.
constexpr std::size_t os2Bytes = 96;

constexpr std::uint32_t kind(Answer answer)
{
    return static_cast<std::uint32_t>(answer);
}

std::string_view characters(std::span<const std::byte> bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// The texts of font facts that may be absent.
constexpr std::array optionalTexts{
    &FontFacts::fullName,    &FontFacts::copyright,
    &FontFacts::trademark,   &FontFacts::manufacturer,
    &FontFacts::designer,    &FontFacts::vendorURL,
    &FontFacts::licenseURL,  &FontFacts::licenseDescription,
    &FontFacts::licenseFile, &FontFacts::filePath,
    &FontFacts::format,
};

void writeText(FrameWriter& writer, const std::optional<std::string>& text)
{
    writer.u8(text ? 1 : 0);
    if (text) writer.text(*text);
}

std::optional<std::string> readText(FrameFields& fields)
{
    if (fields.u8() == 0) return std::nullopt;
    return fields.text();
}

void writeFacts(FrameWriter& writer, const FontFacts& facts)
{
    writer.text(facts.postScriptName);
    writer.text(facts.family);
    writer.text(facts.style);
    for (const auto text : optionalTexts)
        writeText(writer, facts.*text);
    writer.u8(facts.os2 ? 1 : 0);
    if (!facts.os2) return;
    writer.u16(facts.os2->version);
    writer.u16(facts.os2->fsType);
    writeText(writer, facts.os2->vendorID);
}

FontFacts readFacts(FrameFields& fields)
{
    FontFacts facts;
    facts.postScriptName = fields.text();
    facts.family = fields.text();
    facts.style = fields.text();
    for (const auto text : optionalTexts)
        facts.*text = readText(fields);
    facts.origin = FontOrigin::document;
    if (fields.u8() == 0) return facts;
    facts.os2.emplace();
    facts.os2->version = fields.u16();
    facts.os2->fsType = fields.u16();
    facts.os2->vendorID = readText(fields);
    return facts;
}

/// Pages as runs, each by its distance from the one before and its length: a font of a long
/// document is mostly used on many pages in a row.
void writePages(FrameWriter& writer, const std::vector<int>& pages)
{
    std::size_t runs = 0;
    for (std::size_t i = 0; i < pages.size(); ++i)
        if (i == 0 || pages[i] != pages[i - 1] + 1) ++runs;
    writer.compact(runs);
    int last = 0;
    for (std::size_t i = 0; i < pages.size();) {
        std::size_t end = i + 1;
        while (end < pages.size() && pages[end] == pages[end - 1] + 1)
            ++end;
        writer.compact(static_cast<std::uint64_t>(pages[i] - last));
        writer.compact(end - i);
        last = pages[end - 1];
        i = end;
    }
}

/// At most `most` of them.
std::vector<int> readPages(FrameFields& fields, std::size_t most)
{
    constexpr std::uint64_t lastPage = std::numeric_limits<int>::max();
    std::vector<int> pages;
    std::uint64_t last = 0;
    for (std::uint64_t runs = fields.compact(); runs > 0 && fields.isSound(); --runs) {
        const std::uint64_t distance = fields.compact();
        const std::uint64_t count = fields.compact();
        if (distance == 0 || distance > lastPage - last || count == 0 ||
            count - 1 > lastPage - last - distance || count > most - pages.size()) {
            fields.fail();
            break;
        }
        for (std::uint64_t i = 0; i < count; ++i)
            pages.push_back(static_cast<int>(last + distance + i));
        last += distance + count - 1;
    }
    return pages;
}

std::optional<FontFormat> readFormat(FrameFields& fields)
{
    const std::uint8_t number = fields.u8();
    if (number > static_cast<std::uint8_t>(FontFormat::bitmap)) fields.fail();
    if (number == 0 || !fields.isSound()) return std::nullopt;
    return static_cast<FontFormat>(number);
}

PlatformFont readFace(FrameFields& fields)
{
    PlatformFont face;
    face.index = fields.u32();
    face.format = readFormat(fields);
    face.postScriptName = fields.text();
    if (const std::uint8_t size = fields.u8(); size > 0) {
        const auto table = std::as_bytes(std::span(fields.bytes(size)));
        face.os2.emplace(table.begin(), table.end());
    }
    const std::uint8_t names = fields.u8();
    if (names > Limits::names) fields.fail();
    if (names > 0) face.settledNames.emplace();
    for (std::size_t i = 1; i < names && fields.isSound(); ++i) {
        const std::uint16_t id = fields.u16();
        face.settledNames->add(id, fields.text());
    }
    const std::uint16_t instances = fields.u16();
    if (instances > VariationInstances::maximumInstances + 1) fields.fail();
    if (instances > 0) face.settledInstances.emplace();
    for (std::size_t i = 1; i < instances && fields.isSound(); ++i) {
        VariationInstance instance;
        instance.postScriptName = fields.text();
        instance.style = fields.text();
        instance.fullName = fields.text();
        face.settledInstances->push_back(std::move(instance));
    }
    return face;
}

/// Counts a message's bytes; whether there are too many.
bool isTooLong(std::size_t& bytes, const Frame& frame)
{
    bytes += frame.bytes.size();
    return bytes > Limits::answerBytes;
}

} // namespace

void writeQuestion(std::string& into, Question question, std::string_view path)
{
    FrameWriter(into, static_cast<std::uint32_t>(question)).bytes(path);
}

void writeFace(std::string& into, const PlatformFont& face)
{
    FrameWriter writer(into, kind(Answer::face));
    writer.u32(face.index);
    writer.u8(face.format ? static_cast<std::uint8_t>(*face.format) : 0);
    writer.text(face.postScriptName);
    const std::size_t size = face.os2 ? std::min(face.os2->size(), os2Bytes) : 0;
    writer.u8(static_cast<std::uint8_t>(size));
    if (size > 0) writer.bytes(characters(std::span(*face.os2).first(size)));
    // Zero stands for none, one for an empty list.
    writer.u8(face.settledNames ? static_cast<std::uint8_t>(face.settledNames->size() + 1) : 0);
    if (face.settledNames) {
        for (const auto& [id, text] : *face.settledNames) {
            writer.u16(id);
            writer.text(text);
        }
    }
    const auto& instances = face.settledInstances;
    writer.u16(instances ? static_cast<std::uint16_t>(instances->size() + 1) : 0);
    if (!instances) return;
    for (const VariationInstance& instance : *instances) {
        writer.text(instance.postScriptName);
        writer.text(instance.style);
        writer.text(instance.fullName);
    }
}

void writeInstalledFile(std::string& into, const InstalledFile& file)
{
    FrameWriter writer(into, kind(Answer::installedFile));
    writer.text(file.path);
    writer.u32(static_cast<std::uint32_t>(file.faces.size()));
    for (const std::uint32_t face : file.faces)
        writer.u32(face);
}

void writeDocumentFont(std::string& into, const DocumentFont& font)
{
    FrameWriter writer(into, kind(Answer::documentFont));
    writer.text(font.baseName);
    writer.u32(static_cast<std::uint32_t>(font.pdfNames.size()));
    for (const std::string& name : font.pdfNames)
        writer.text(name);
    writer.text(font.subtype);
    writer.u8(static_cast<std::uint8_t>(font.program));
    writer.u8(font.subset ? 1 : 0);
    writePages(writer, font.pages);
    writer.u8(font.embedded ? 1 : 0);
    if (font.embedded) writeFacts(writer, *font.embedded);
}

void writeEnd(std::string& into, int pageCount)
{
    FrameWriter(into, kind(Answer::end)).u32(static_cast<std::uint32_t>(pageCount));
}

void writeError(std::string& into, PDFCheckError::Kind error)
{
    switch (error) {
    case PDFCheckError::Kind::unreadable:
        FrameWriter(into, kind(Answer::unreadable));
        break;
    case PDFCheckError::Kind::locked:
        FrameWriter(into, kind(Answer::locked));
        break;
    }
}

Progress FacesAnswer::add(const Frame& frame)
{
    if (frame.kind == kind(Answer::end)) return Progress::ended;
    if (frame.kind != kind(Answer::face) || isTooLong(m_bytes, frame) ||
        m_faces.size() == quillmark::Limits::faces)
        return Progress::broken;
    FrameFields fields(frame.bytes);
    m_faces.push_back(readFace(fields));
    return fields.isComplete() ? Progress::goesOn : Progress::broken;
}

std::vector<PlatformFont> FacesAnswer::take(const std::string& path)
{
    for (PlatformFont& face : m_faces)
        face.path = path;
    m_bytes = 0;
    return std::exchange(m_faces, {});
}

void FacesAnswer::clear()
{
    *this = {};
}

Progress InstalledFilesAnswer::add(const Frame& frame)
{
    if (frame.kind == kind(Answer::end)) return Progress::ended;
    if (frame.kind != kind(Answer::installedFile) || isTooLong(m_bytes, frame) ||
        m_files.size() == Limits::installedFiles)
        return Progress::broken;
    FrameFields fields(frame.bytes);
    InstalledFile file;
    file.path = fields.bytes();
    const bool isPath = !file.path.empty() && file.path.find('\0') == std::string::npos;
    for (std::uint32_t count = fields.u32(); count > 0 && fields.isSound(); --count)
        file.faces.push_back(fields.u32());
    m_files.push_back(std::move(file));
    return isPath && fields.isComplete() ? Progress::goesOn : Progress::broken;
}

std::vector<InstalledFile> InstalledFilesAnswer::take()
{
    m_bytes = 0;
    return std::exchange(m_files, {});
}

void InstalledFilesAnswer::clear()
{
    *this = {};
}

Progress DocumentAnswer::add(const Frame& frame)
{
    switch (static_cast<Answer>(frame.kind)) {
    case Answer::documentFont:
        if (isTooLong(m_bytes, frame)) return Progress::broken;
        return addFont(frame.bytes);
    case Answer::end: {
        FrameFields fields(frame.bytes);
        const std::uint32_t pages = fields.u32();
        if (!fields.isComplete() || pages > std::numeric_limits<int>::max()) break;
        m_document.pageCount = static_cast<int>(pages);
        return Progress::ended;
    }
    case Answer::unreadable:
        m_error = PDFCheckError::Kind::unreadable;
        return Progress::ended;
    case Answer::locked:
        m_error = PDFCheckError::Kind::locked;
        return Progress::ended;
    case Answer::face:
    case Answer::installedFile:
        break;
    }
    return Progress::broken;
}

Progress DocumentAnswer::addFont(std::string_view bytes)
{
    if (m_document.fonts.size() == PDF::Limits::fonts) return Progress::broken;
    FrameFields fields(bytes);
    DocumentFont font;
    font.baseName = fields.text();
    for (std::uint32_t count = fields.u32(); count > 0 && fields.isSound(); --count) {
        if (++m_names > Limits::documentNames) return Progress::broken;
        font.pdfNames.push_back(fields.text());
    }
    font.subtype = fields.text();
    const std::uint8_t program = fields.u8();
    if (program >= allCases<EmbeddedProgram>.size()) return Progress::broken;
    font.program = static_cast<EmbeddedProgram>(program);
    font.subset = fields.u8() != 0;
    // Behind the limit each font still has its first page.
    const std::size_t left = PDF::Limits::fontPages - std::min(PDF::Limits::fontPages, m_pages);
    font.pages = readPages(fields, std::max<std::size_t>(left, 1));
    m_pages += font.pages.size();
    if (fields.u8() != 0) font.embedded = readFacts(fields);
    m_document.fonts.push_back(std::move(font));
    return fields.isComplete() ? Progress::goesOn : Progress::broken;
}

PDFFontScanner::Reading DocumentAnswer::take()
{
    PDFFontScanner::Reading reading;
    if (m_error)
        reading = *m_error;
    else
        reading = std::move(m_document);
    clear();
    return reading;
}

void DocumentAnswer::clear()
{
    *this = {};
}

} // namespace quillmark::reader
