#include "reader/FontReaders.h"

#include "reader/Limits.h"
#include "reader/Messages.h"

#include <stdexcept>

namespace quillmark::reader {
namespace {

class Faces final : public Answers {
public:
    Faces(std::span<const std::string> files, const TakeFaces& take) : m_files(files), m_take(take)
    {
    }

    [[nodiscard]] Progress add(const Frame& frame) override { return m_answer.add(frame); }
    void deliver(std::size_t i) override { m_take(i, m_answer.take(m_files[i])); }
    void lose(std::size_t i) override { m_take(i, {}); }
    void clear() override { m_answer.clear(); }

private:
    std::span<const std::string> m_files;
    const TakeFaces& m_take;
    FacesAnswer m_answer;
};

class Installed final : public Answers {
public:
    explicit Installed(std::vector<InstalledFile>& files) : m_files(files) {}

    [[nodiscard]] Progress add(const Frame& frame) override { return m_answer.add(frame); }
    void deliver(std::size_t /*i*/) override { m_files = m_answer.take(); }
    void lose(std::size_t /*i*/) override
    {
        throw std::runtime_error("the list of the installed fonts cannot be read");
    }
    void clear() override { m_answer.clear(); }

private:
    std::vector<InstalledFile>& m_files;
    InstalledFilesAnswer m_answer;
};

Question question(quillmark::Faces which)
{
    switch (which) {
    case quillmark::Faces::all:
        return Question::faces;
    case quillmark::Faces::variable:
        return Question::variableFaces;
    }
    return {};
}

} // namespace

std::vector<InstalledFile> FontReaders::installed() const
{
    std::vector<InstalledFile> files;
    m_readers->ask({
        .count = 1,
        .write = [](std::size_t,
                    std::string& into) { writeQuestion(into, Question::installedFiles, {}); },
        .makeAnswers = [&files] { return std::make_unique<Installed>(files); },
        .silence = Limits::listing,
    });
    return files;
}

void FontReaders::facesOfEach(std::span<const std::string> files, quillmark::Faces which,
                              const TakeFaces& take) const
{
    m_readers->ask({
        .count = files.size(),
        .write = [&](std::size_t i,
                     std::string& into) { writeQuestion(into, question(which), files[i]); },
        .makeAnswers = [&] { return std::make_unique<Faces>(files, take); },
    });
}

} // namespace quillmark::reader
