// What is asked of a reader process, and what it answers. The questions come from us and are
// trusted; the answers come from a process that has read what nobody vouches for, and are not.
#pragma once

#include "library/FontService.h"
#include "library/InstalledFonts.h"
#include "pdf/DocumentFonts.h"
#include "pdf/PDFFontScanner.h"
#include "reader/Frames.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmark::reader {

enum class Question : std::uint32_t {
    faces,         // of the font file at a path; their names are read
    variableFaces, // the same of those with instances, which are read
    installedFiles,
    document, // the fonts of the document at a path
};

/// An answer is a number of messages of one kind, and one that ends it.
enum class Answer : std::uint32_t {
    face,
    installedFile,
    documentFont,
    end,        // with the number of pages, if that was asked for
    unreadable, // the end of an answer about a document that does not open
    locked,
};

void writeQuestion(std::string& into, Question question, std::string_view path);
void writeFace(std::string& into, const PlatformFont& face);
void writeInstalledFile(std::string& into, const InstalledFile& file);
void writeDocumentFont(std::string& into, const DocumentFont& font);
void writeEnd(std::string& into, int pageCount = 0);
void writeError(std::string& into, PDFCheckError::Kind error);

/// Whether an answer goes on.
enum class Progress {
    goesOn,
    ended,
    broken, // this is no answer that a sound reader gives
};

/// The faces of one file.
class FacesAnswer {
public:
    [[nodiscard]] Progress add(const Frame& frame);
    /// What has come, which is then forgotten. Each face carries `path`.
    [[nodiscard]] std::vector<PlatformFont> take(const std::string& path);
    void clear();

private:
    std::vector<PlatformFont> m_faces;
    std::size_t m_bytes{};
};

/// The files that are installed.
class InstalledFilesAnswer {
public:
    [[nodiscard]] Progress add(const Frame& frame);
    [[nodiscard]] std::vector<InstalledFile> take();
    void clear();

private:
    std::vector<InstalledFile> m_files;
    std::size_t m_bytes{};
};

/// The fonts of one document.
class DocumentAnswer {
public:
    [[nodiscard]] Progress add(const Frame& frame);
    [[nodiscard]] PDFFontScanner::Reading take();
    void clear();

private:
    Progress addFont(std::string_view bytes);

    DocumentFonts m_document;
    std::optional<PDFCheckError::Kind> m_error;
    std::size_t m_bytes{};
    std::size_t m_pages{};
    std::size_t m_names{};
};

} // namespace quillmark::reader
