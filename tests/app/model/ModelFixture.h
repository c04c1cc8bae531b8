// An application model in a small world of a test's own: made-up fonts, panels and threads.
#pragma once

#include "app/model/FakeBackgroundRunner.h"
#include "app/model/FakePrompts.h"
#include "model/AppModel.h"
#include "support/FakeFontService.h"
#include "support/FontValues.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace quillmark::test {

class ModelFixture : public testing::Test {
protected:
    using Paths = std::vector<std::filesystem::path>;

    ModelFixture();

    /// Puts a new model in place of the one that is there; what was saved stays.
    void makeModel(AppModel::Persistence persistence);
    /// Makes a folder with one file for each font; returns its path.
    std::filesystem::path addFolder(const std::string& name, const std::vector<FontValues>& fonts);
    /// Scans it to the end without showing it.
    std::filesystem::path addScannedFolder(const std::string& name,
                                           const std::vector<FontValues>& fonts);
    /// Writes a PDF of one page that uses one font, which is not embedded.
    std::filesystem::path addDocument(const std::string& name, const std::string& font = "Brook");
    /// Checks it to the end.
    std::filesystem::path addCheckedDocument(const std::string& name,
                                             const std::string& font = "Brook");

    /// The content of a file; absent when there is none.
    [[nodiscard]] static std::optional<std::string> content(const std::filesystem::path& path);
    /// The names in a folder, sorted; none when it is not there.
    [[nodiscard]] static std::vector<std::string> namesIn(const std::filesystem::path& folder);

    [[nodiscard]] Paths folderPaths() const;
    [[nodiscard]] Paths documentPaths() const;
    /// What the settings say, as somebody else reads them.
    [[nodiscard]] std::optional<std::vector<std::string>> savedFolders() const;
    void saveFolders(const std::vector<std::string>& folders);

    /// How often a signal of the model comes from now on.
    template <typename Signal>
    [[nodiscard]] std::shared_ptr<const int> count(Signal signal)
    {
        auto count = std::make_shared<int>(0);
        QObject::connect(model.get(), signal, model.get(), [count] { ++*count; });
        return count;
    }

    TemporaryFolder folder;
    std::shared_ptr<FakeFontService> fonts{std::make_shared<FakeFontService>()};
    FakePrompts prompts;
    FakeBackgroundRunner background;
    std::chrono::system_clock::time_point now;
    std::vector<std::string> uuids; // to come; the last one stays
    UserPlaces places;
    std::unique_ptr<AppModel> model;
};

[[nodiscard]] std::vector<std::string> displayNames(std::span<const AuditRow> rows);

} // namespace quillmark::test
