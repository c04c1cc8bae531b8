#include "support/FontValues.h"

#include "support/FontBytes.h"

namespace quillmark::test {
namespace {

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

void install(FakeFontService& service, const FontValues& values)
{
    PlatformFont font = platformFont(values);
    font.path = "/fonts/" + values.postScriptName + ".ttf";
    service.installed.emplace_back(values.postScriptName, font);
}

std::filesystem::path addFile(FakeFontService& service, const TemporaryFolder& folder,
                              const std::filesystem::path& relative,
                              const std::vector<FontValues>& faces)
{
    std::filesystem::path path = folder.write(relative, "stands for a font");
    for (const FontValues& values : faces) {
        service.files[path].push_back(platformFont(values));
        service.files[path].back().path = path;
    }
    return path;
}

} // namespace quillmark::test
