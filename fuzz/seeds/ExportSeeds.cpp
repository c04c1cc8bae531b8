// Seeds for the harness of core/export.

#include "Seeds.h"

#include <string>

namespace quillmark::fuzz {

void writeExportSeeds()
{
    const auto write = [](std::string_view name, std::string_view fields) {
        writeSeed("csv", name, std::as_bytes(std::span(fields)));
    };
    write("plain",
          "Foo-Bold\xFF"
          "Foo\xFF"
          "Bold\xFF"
          "Foo Bold\xFFhttps://example.com\xFFMaker\xFF(c) Maker\xFF/fonts/foo.ttf\xFFWhy\xFF"
          "Shop\xFFhttps://example.com/receipt\xFFreceipt.pdf\xFFOne note");
    write("quoted", "a,b\xFF\"c\"\xFF"
                    "d\r\ne\xFF\"\xFF,\xFF\n\xFF\r\xFF\"\"");
    using namespace std::string_view_literals;
    write("formulas", "=1+1\xFF+1\xFF-1\xFF@A1\xFF\0=1\xFF'=1\xFF =1\xFF\t=1\xFF=\"a\",b"sv);
}

} // namespace quillmark::fuzz
