#include "pdf/PDFFontScanner.h"

#include "assessment/Classifier.h"
#include "fontfile/CFF.h"
#include "fontfile/TextSize.h"
#include "fontfile/Type1.h"
#include "pdf/FontWalk.h"
#include "pdf/Limits.h"
#include "pdf/PDFDocument.h"
#include "pdf/SubsetPrefix.h"
#include "text/Encoding.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace quillmark::PDFFontScanner {
namespace {

/// Facts from the names of a program that has no name table. Its own PostScript name may carry a
/// subset prefix, like the PDF's name for it; notes and look-ups want the name without. Absent when
/// the program says nothing of use.
std::optional<FontFacts> factsOf(const std::optional<BareFontInfo>& info,
                                 std::string_view fallbackName)
{
    if (!info) return std::nullopt;
    NameStrings names;
    const auto put = [&names](NameID id, const std::optional<std::string>& text) {
        if (text) names.add(static_cast<std::uint16_t>(id), *text);
    };
    if (info->fontName) put(NameID::postScriptName, splitSubsetPrefix(*info->fontName).cleanName);
    put(NameID::fullName, info->fullName);
    put(NameID::family, info->familyName);
    put(NameID::copyright, info->copyright);
    // Older fonts have their copyright line in the notice; with both, the notice is about marks.
    put(info->copyright ? NameID::trademark : NameID::copyright, info->notice);
    if (names.empty()) return std::nullopt;
    return FontFacts::fromNames(std::move(names), std::nullopt, fallbackName, std::nullopt,
                                std::string(FormatLabel::bareProgram), FontOrigin::document);
}

/// Lets records into the rows until their texts take too much together.
class TextBudget {
public:
    /// Absent when there is no record or it is more than what is left.
    template <typename Record>
    [[nodiscard]] std::optional<Record> afforded(const std::optional<Record>& record)
    {
        return takes(record) ? record : std::nullopt;
    }
    template <typename Record>
    [[nodiscard]] std::optional<Record> afforded(std::optional<Record>&& record)
    {
        return takes(record) ? std::move(record) : std::nullopt;
    }

private:
    template <typename Record>
    bool takes(const std::optional<Record>& record)
    {
        if (!record) return false;
        const std::size_t size = textSize(*record);
        if (size > m_left) return false;
        m_left -= size;
        return true;
    }

    std::size_t m_left{PDF::Limits::rowText};
};

/// Reads embedded programs, each once: fonts of a document may share one.
class ProgramReader {
public:
    explicit ProgramReader(TextBudget& budget) : m_budget(budget) {}

    /// The facts that a font's program gives; absent when there is none or it says nothing.
    std::optional<FontFacts> facts(const Found& font)
    {
        if (!font.data) return std::nullopt;
        switch (font.program) {
        case EmbeddedProgram::trueType:
        case EmbeddedProgram::openType:
            return m_budget.afforded(read(m_fontFiles, font.data, firstFace));
        case EmbeddedProgram::cff:
            return factsOf(m_budget.afforded(read(m_cff, font.data, CFF::read)), font.baseName);
        case EmbeddedProgram::type1:
            return factsOf(m_budget.afforded(read(m_type1, font.data, Type1::read)), font.baseName);
        case EmbeddedProgram::type3:
        case EmbeddedProgram::notEmbedded:
            return std::nullopt;
        }
        return std::nullopt;
    }

private:
    template <typename T>
    using Known = std::unordered_map<PDF::SharedBytes, std::optional<T>>;

    template <typename T, typename Read>
    static const std::optional<T>& read(Known<T>& known, const PDF::SharedBytes& data, Read&& read)
    {
        const auto [found, isNew] = known.try_emplace(data);
        if (isNew) found->second = read(*data);
        return found->second;
    }

    static std::optional<FontFacts> firstFace(std::span<const std::byte> data)
    {
        auto faces = FontFacts::read(data, std::nullopt, FontOrigin::document);
        if (faces.empty()) return std::nullopt;
        return std::move(faces.front());
    }

    TextBudget& m_budget;
    Known<FontFacts> m_fontFiles;
    Known<BareFontInfo> m_cff;
    Known<BareFontInfo> m_type1;
};

FontFacts factsFromName(const std::string& name)
{
    FontFacts facts;
    facts.postScriptName = name;
    facts.family = name;
    facts.origin = FontOrigin::document;
    return facts;
}

DocumentFont documentFont(Found font, ProgramReader& programs)
{
    DocumentFont read;
    read.embedded = programs.facts(font);
    read.baseName = std::move(font.baseName);
    read.pdfNames.assign(font.pdfNames.begin(), font.pdfNames.end());
    read.subtype = std::move(font.subtype);
    read.program = font.program;
    read.subset = font.subset;
    read.pages = std::move(font.pages);
    return read;
}

AuditRow row(DocumentFont font, TextBudget& budget, const Lookup& lookup)
{
    auto embedded = budget.afforded(std::move(font.embedded));
    auto matched = budget.afforded(lookup(font.baseName));

    PDFFontInfo info;
    info.pdfNames = std::move(font.pdfNames);
    info.subtype = std::move(font.subtype);
    info.program = font.program;
    info.subset = font.subset;
    info.pages = std::move(font.pages);
    info.readEmbeddedData = embedded.has_value();
    FontFacts facts;
    if (matched) {
        matched->origin = FontOrigin::document;
        info.matchedPath = matched->filePath;
        info.matchedByFamily = matched->postScriptName != font.baseName;
        facts = embedded ? matched->filled(*embedded) : *std::move(matched);
    } else {
        facts = embedded ? *std::move(embedded) : factsFromName(font.baseName);
    }
    Assessment assessment = assess(facts, info);
    return {std::move(facts), std::move(assessment), std::move(info)};
}

void sortByVerdictAndName(std::vector<AuditRow>& rows)
{
    std::ranges::stable_sort(rows, [](const AuditRow& left, const AuditRow& right) {
        if (left.assessment.verdict != right.assessment.verdict)
            return left.assessment.verdict < right.assessment.verdict;
        return left.facts.displayName() < right.facts.displayName();
    });
}

Reading read(PDF::Opened opened)
{
    if (const auto* kind = std::get_if<PDFCheckError::Kind>(&opened)) return *kind;
    auto& document = std::get<std::unique_ptr<PDF::Document>>(opened);
    Scan found = scan(*document);
    document.reset();

    DocumentFonts read;
    read.pageCount = found.pageCount;
    read.fonts.reserve(found.fonts.size());
    TextBudget budget;
    ProgramReader programs(budget);
    for (Found& font : found.fonts)
        read.fonts.push_back(documentFont(std::move(font), programs));
    return read;
}

Result audit(Reading reading, std::string path, std::string fileName, const Lookup& lookup,
             const Clock& clock)
{
    if (const auto* kind = std::get_if<PDFCheckError::Kind>(&reading))
        return PDFCheckError{*kind, std::move(fileName)};
    auto& document = std::get<DocumentFonts>(reading);
    DocumentAudit audit;
    audit.path = std::move(path);
    audit.fileName = std::move(fileName);
    audit.pageCount = document.pageCount;
    audit.rows.reserve(document.fonts.size());
    TextBudget budget;
    for (DocumentFont& font : document.fonts)
        audit.rows.push_back(row(std::move(font), budget, lookup));
    sortByVerdictAndName(audit.rows);
    audit.checkedAt = clock();
    return audit;
}

} // namespace

Reading read(const std::filesystem::path& path)
{
    return read(PDF::open(path));
}

Result audit(const std::filesystem::path& path, const Lookup& lookup, const Clock& clock)
{
    return audit(
        path, [](const std::filesystem::path& file) { return read(file); }, lookup, clock);
}

Result audit(const std::filesystem::path& path, const Read& read, const Lookup& lookup,
             const Clock& clock)
{
    // A path that ends in a slash has its last component before it.
    const auto name = path.has_filename() ? path.filename() : path.parent_path().filename();
    return audit(read(path), repairedUtf8(path.native()), repairedUtf8(name.native()), lookup,
                 clock);
}

Result audit(std::span<const std::byte> data, std::string_view fileName, const Lookup& lookup,
             const Clock& clock)
{
    std::string name = repairedUtf8(fileName);
    return audit(read(PDF::open(data)), name, name, lookup, clock);
}

Assessment assess(const FontFacts& facts, const std::optional<PDFFontInfo>& pdf)
{
    Assessment assessment = Classifier::assess(facts);
    if (!pdf) return assessment;
    if (pdf->program == EmbeddedProgram::type3 && !pdf->matchedPath) {
        assessment.verdict = Verdict::unknown;
        assessment.headline = "Type 3 font: glyphs drawn inside the PDF.";
        assessment.reasons = {
            "There's no font file to read; the shapes were drawn by the app that made the PDF, and "
            "no installed or scanned font has this name. Check which font they came from."};
        return assessment;
    }
    if (pdf->program == EmbeddedProgram::notEmbedded) {
        std::vector<std::string> reasons{
            "The file carries no font data for it; the reader uses its own copy or a substitute, "
            "so none of the font ships with the file."};
        if (assessment.verdict != Verdict::likelyOK)
            reasons.push_back(
                "If you re-export this file, check whether the font gets embedded then: " +
                assessment.headline);
        assessment.verdict = Verdict::likelyOK;
        assessment.headline = "Not embedded: the PDF only names this font.";
        assessment.reasons = std::move(reasons);
        return assessment;
    }

    std::vector<std::string> reasons;
    if (pdf->program == EmbeddedProgram::type3)
        reasons.emplace_back("Type 3 in this PDF: the font's glyph shapes are drawn inside the "
                             "file, so the font's license still applies.");
    else
        reasons.push_back(embeddedText(*pdf) + " in this PDF.");
    if (pdf->readEmbeddedData) reasons.emplace_back("Read from the font data inside the PDF.");
    if (!pdf->matchedPath && !pdf->readEmbeddedData)
        reasons.emplace_back(
            "The PDF's copy has no license fields, and no installed or scanned font has this name, "
            "so only its name could be read. Scan the folder with the font files you used to match "
            "it.");
    if (pdf->matchedPath)
        reasons.push_back((pdf->matchedByFamily ? "Matched by family name to the font file at "
                                                : "Matched by name to the font file at ") +
                          *pdf->matchedPath + ".");
    reasons.insert(reasons.end(), std::make_move_iterator(assessment.reasons.begin()),
                   std::make_move_iterator(assessment.reasons.end()));
    assessment.reasons = std::move(reasons);
    return assessment;
}

} // namespace quillmark::PDFFontScanner
