#include "CommandLineFixture.h"

#include "cli/CommandLine.h"
#include "files/FileDescriptor.h"
#include "support/FontBytes.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <fstream>
#include <iterator>
#include <sys/mman.h>
#include <unistd.h>

namespace quillmark::test {
namespace {

std::string readBack(const FileDescriptor& file)
{
    std::string text;
    std::array<char, 4096> piece{};
    lseek(file.get(), 0, SEEK_SET);
    for (auto count = read(file.get(), piece.data(), piece.size()); count > 0;
         count = read(file.get(), piece.data(), piece.size()))
        text.append(piece.data(), static_cast<std::size_t>(count));
    return text;
}

std::string replaced(std::string text, std::string_view what, std::string_view with)
{
    for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size()))
        text.replace(at, what.size(), with);
    return text;
}

constexpr std::uint16_t instanceStyleID = 256;

/// An `fvar` table with one axis and one instance.
Bytes variations()
{
    ByteWriter table;
    table.u16(1).u16(0).u16(16).u16(2).u16(1).u16(20).u16(1).u16(8); // header
    table.zeros(20);                                                 // the axis
    table.u16(instanceStyleID).u16(0).zeros(4);                      // the instance
    return table.build();
}

} // namespace

PlatformFont platformFont(const FontValues& values)
{
    std::vector<NameRecord> records;
    const auto add = [&](std::uint16_t nameID, const std::u16string& text) {
        if (!text.empty()) records.push_back(windowsEnglish(nameID, text));
    };
    add(0, values.copyright);
    add(1, values.family);
    add(2, values.style);
    add(4, values.fullName);
    add(6, std::u16string(values.postScriptName.begin(), values.postScriptName.end()));
    add(8, values.manufacturer);
    add(13, values.license);
    add(14, values.licenseURL);
    add(instanceStyleID, values.instance);
    PlatformFont font;
    font.postScriptName = values.postScriptName;
    font.format = FontFormat::trueType;
    font.name = nameTable(records).build();
    if (!values.instance.empty()) font.fvar = variations();
    if (values.fsType) font.os2 = os2Table({.fsType = *values.fsType});
    return font;
}

FontValues restrictedFont()
{
    return {.family = u"Acme",
            .style = u"Bold",
            .fullName = u"Acme Bold",
            .postScriptName = "AcmeHeadline-Bold",
            .license = u"Ask us.",
            .fsType = forbidden};
}

FontValues unknownFont()
{
    return {.family = u"Brook",
            .fullName = u"Brook",
            .postScriptName = "Brook",
            .copyright = u"Copyright Brook",
            .fsType = installable};
}

FontValues likelyOKFont()
{
    return {.family = u"Cedar",
            .fullName = u"Cedar Regular",
            .postScriptName = "Cedar-Regular",
            .license = std::u16string(openFontLicense),
            .fsType = installable};
}

std::filesystem::path CommandLineFixture::addFile(const std::filesystem::path& relative,
                                                  const std::vector<FontValues>& faces)
{
    std::filesystem::path path = folder.write(relative, "stands for a font");
    for (const FontValues& values : faces) {
        fakeFonts.files[path].push_back(platformFont(values));
        fakeFonts.files[path].back().path = path;
    }
    return path;
}

void CommandLineFixture::addInstalled(const FontValues& values)
{
    PlatformFont font = platformFont(values);
    font.path = "/fonts/" + values.postScriptName + ".ttf";
    fakeFonts.installed.emplace_back(values.postScriptName, font);
}

Outcome CommandLineFixture::run(const std::vector<std::string>& arguments)
{
    const FileDescriptor output(memfd_create("output", 0));
    const FileDescriptor errors(memfd_create("errors", 0));
    Outcome outcome;
    outcome.exitCode = runTo(output.get(), errors.get(), arguments);
    outcome.output = replaced(readBack(output), folder.path().native(), "FOLDER");
    outcome.errors = replaced(readBack(errors), folder.path().native(), "FOLDER");
    return outcome;
}

int CommandLineFixture::runTo(int output, int errors, const std::vector<std::string>& arguments)
{
    using namespace std::chrono;
    const cli::Environment environment{
        .fonts = *fonts,
        .output = {output, outputColumns},
        .errors = {errors, errorColumns},
        .locale = "en",
        .plainTerminal = plainTerminal,
        .clock = [] { return sys_days(year(2026) / 11 / 21) + hours(4); },
    };
    return cli::run(arguments, environment);
}

std::string CommandLineFixture::at(const std::filesystem::path& relative) const
{
    return folder.path() / relative;
}

std::optional<std::string> CommandLineFixture::content(const std::filesystem::path& relative) const
{
    std::ifstream file(folder.path() / relative, std::ios::binary);
    if (!file) return std::nullopt;
    return replaced({std::istreambuf_iterator<char>(file), {}}, folder.path().native(), "FOLDER");
}

std::vector<std::string> CommandLineFixture::namesInFolder() const
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
        names.push_back(entry.path().filename());
    std::ranges::sort(names);
    return names;
}

} // namespace quillmark::test
