// Panels that a test answers, and a desktop that remembers what it was asked for.
#pragma once

#include "model/Prompts.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quillmark::test {

class FakePrompts final : public Prompts {
public:
    using Paths = std::vector<std::filesystem::path>;

    void open(const OpenPanel& panel, std::function<void(Paths)> chosen) override
    {
        opened = panel;
        m_openAnswer = std::move(chosen);
    }
    void save(const SavePanel& panel, std::function<void(std::filesystem::path)> chosen) override
    {
        saved = panel;
        m_saveAnswer = std::move(chosen);
    }
    void reveal(const std::filesystem::path& path) override { revealed.push_back(path); }
    bool openURL(const std::string& url) override
    {
        openedURLs.push_back(url);
        return opensURLs;
    }

    /// Confirms the panel that was shown last. Not to answer it is to cancel it.
    void answerOpen(Paths paths) { std::exchange(m_openAnswer, nullptr)(std::move(paths)); }
    void answerSave(std::filesystem::path path)
    {
        std::exchange(m_saveAnswer, nullptr)(std::move(path));
    }

    std::optional<OpenPanel> opened;
    std::optional<SavePanel> saved;
    Paths revealed;
    std::vector<std::string> openedURLs;
    bool opensURLs{true};

private:
    std::function<void(Paths)> m_openAnswer;
    std::function<void(std::filesystem::path)> m_saveAnswer;
};

} // namespace quillmark::test
