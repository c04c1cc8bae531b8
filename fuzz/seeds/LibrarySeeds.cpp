// Seeds for the harnesses of core/library.

#include "Seeds.h"

#include "support/FontBytes.h"
#include "support/FontContainers.h"

#include <span>
#include <string>
#include <string_view>

namespace quillmark::fuzz {
namespace {

using test::Bytes;

Bytes names()
{
    return test::nameTable({
                               test::windowsEnglish(1, u"Foo"),
                               test::windowsEnglish(6, u"Foo-Regular"),
                               test::windowsEnglish(13, u"SIL Open Font License, Version 1.1"),
                           })
        .build();
}

std::span<const std::byte> half(const Bytes& bytes)
{
    return std::span(bytes).first(bytes.size() / 2);
}

void writeWOFFSeeds()
{
    const Bytes font = test::woff(test::trueTypeVersion,
                                  {{"OS/2", test::os2Table({.fsType = 4})}, {"name", names()}})
                           .build();
    writeSeed("woff", "two-tables", font);
    writeSeed("woff", "truncated", half(font));
    writeSeed("woff", "no-tables", test::woff("OTTO", {}).build());
}

void writeWOFF2Seeds()
{
    test::WOFF2Values values;
    values.tables = {
        {.tag = "OS/2", .bytes = test::os2Table({.fsType = 8})},
        {.tag = "glyf", .bytes = Bytes(40), .transformation = 0, .originalLength = 60},
        {.tag = "loca", .bytes = {}, .transformation = 0, .originalLength = 4},
        {.tag = "name", .bytes = names()},
        {.tag = "Zzzz", .bytes = Bytes(3)},
    };
    const Bytes font = test::woff2(values).build();
    writeSeed("woff2", "transformed-glyphs", font);
    writeSeed("woff2", "truncated", half(font));

    values.version = "ttcf";
    values.faces = {{test::trueTypeVersion, {0, 1, 2, 3}}, {"OTTO", {0, 3}}};
    writeSeed("woff2", "collection", test::woff2(values).build());
}

void writeFacesSeeds()
{
    const Bytes font = test::FontBytes().face().name(1, u"Foo").os2({.fsType = 4}).build();
    writeSeed("faces", "truetype", font);
    writeSeed("faces", "collection", test::collectionOf({font, font}));
    writeSeed("faces", "dfont", test::dfont({font, font}));
    writeSeed("faces", "type1", test::type1Font());
    writeSeed("faces", "bdf", test::bdfFont());
    writeSeed("faces", "gzipped", test::gzipped(test::bdfFont()));
    writeSeed("faces", "woff", test::woff(test::trueTypeVersion, {{"name", names()}}).build());
    test::WOFF2Values values;
    values.tables = {{.tag = "name", .bytes = names()}};
    writeSeed("faces", "woff2", test::woff2(values).build());
}

void writeLicenseSeed(std::string_view name, std::string_view text)
{
    writeSeed("license", name, std::as_bytes(std::span(text)));
}

void writeLicenseSeeds()
{
    writeLicenseSeed("ofl", "This Font Software is licensed under the SIL Open Font License.\n");
    writeLicenseSeed("address", "https://www.apache.org/licenses/LICENSE-2.0");
    writeLicenseSeed("blank", " \t\r\n\xC2\xA0\xE2\x80\xA8");
    writeLicenseSeed("not-utf8", "Licen\xE7"
                                 "a \xF0\x9F gpl \xED\xA0\x80");
    writeLicenseSeed("long", std::string(3998, 'x') + "\xE2\x82\xAC public domain");
}

} // namespace

void writeLibrarySeeds()
{
    writeWOFFSeeds();
    writeWOFF2Seeds();
    writeFacesSeeds();
    writeLicenseSeeds();
}

} // namespace quillmark::fuzz
