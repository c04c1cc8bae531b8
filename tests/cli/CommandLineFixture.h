// Runs the command-line tool inside the test, on fonts that the test makes up.
#pragma once

#include "cli/Environment.h"
#include "support/FakeFontService.h"
#include "support/FontValues.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillmark::test {

struct Outcome {
    int exitCode{};
    std::string output; // what went to standard output
    std::string errors; // what went to standard error
};

/// Has no fonts, and does something of the test's own when it is asked for the installed ones.
class ListingFontService final : public FontService {
public:
    explicit ListingFontService(std::function<void()> action) : m_action(std::move(action)) {}

    [[nodiscard]] std::vector<std::string> installedNames() const override
    {
        m_action();
        return {};
    }
    [[nodiscard]] std::optional<PlatformFont>
    installedFont(std::string_view /*postScriptName*/) const override
    {
        return std::nullopt;
    }
    [[nodiscard]] std::vector<PlatformFont> facesOf(const std::string& /*file*/,
                                                    Faces /*which*/) const override
    {
        return {};
    }

private:
    std::function<void()> m_action;
};

class CommandLineFixture : public testing::Test {
protected:
    /// Puts a font file into the folder, with one face for each of `faces`.
    std::filesystem::path addFile(const std::filesystem::path& relative,
                                  const std::vector<FontValues>& faces);
    void addInstalled(const FontValues& values);

    /// Runs the tool with these arguments and puts "FOLDER" for the test's folder in what it said.
    [[nodiscard]] Outcome run(const std::vector<std::string>& arguments);
    /// The same, with what it says going elsewhere.
    [[nodiscard]] int runTo(int output, int errors, const std::vector<std::string>& arguments);

    [[nodiscard]] std::string at(const std::filesystem::path& relative) const;
    /// The content of a file in the folder; absent when there is none.
    [[nodiscard]] std::optional<std::string> content(const std::filesystem::path& relative) const;

    TemporaryFolder folder;
    FakeFontService fakeFonts;
    const FontService* fonts{&fakeFonts};
    std::optional<std::size_t> outputColumns; // of the terminal, when it is one
    std::optional<std::size_t> errorColumns;
    bool plainTerminal{};
    int standardInput{-1};
    std::chrono::milliseconds progressDelay{};
    std::optional<std::filesystem::path> applicationNotes;
};

} // namespace quillmark::test
