#include "reader/DocumentReader.h"

#include "reader/Messages.h"

#include <filesystem>
#include <utility>

namespace quillmark::reader {
namespace {

class Document final : public Answers {
public:
    explicit Document(PDFFontScanner::Reading& reading) : m_reading(reading) {}

    [[nodiscard]] Progress add(const Frame& frame) override { return m_answer.add(frame); }
    void deliver(std::size_t /*i*/) override { m_reading = m_answer.take(); }
    void lose(std::size_t /*i*/) override {}
    void clear() override { m_answer.clear(); }

private:
    PDFFontScanner::Reading& m_reading;
    DocumentAnswer m_answer;
};

} // namespace

PDFFontScanner::Read documentReader(std::shared_ptr<const Readers> readers)
{
    return [readers = std::move(readers)](const std::filesystem::path& path) {
        PDFFontScanner::Reading reading = PDFCheckError::Kind::unreadable;
        readers->ask({
            .count = 1,
            .write =
                [&path](std::size_t, std::string& into) {
                    writeQuestion(into, Question::document, path.native());
                },
            .makeAnswers = [&reading] { return std::make_unique<Document>(reading); },
        });
        return reading;
    };
}

} // namespace quillmark::reader
