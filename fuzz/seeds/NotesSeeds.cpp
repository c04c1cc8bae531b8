// Seeds for the harness of core/notes.

#include "Seeds.h"

#include <string>

namespace quillmark::fuzz {

void writeNotesSeeds()
{
    const auto write = [](std::string_view name, std::string_view text) {
        writeSeed("notes", name, std::as_bytes(std::span(text)));
    };
    const std::string whole = R"({"format": 2, "notes": {
"Foo-Bold": {"attachment": "0A1B2C3D-a.pdf", "attachmentName": "a.pdf", "boughtFrom": "A \"shop\"",
"license": "web", "seats": [1, -2, 0.5e3, {"a": null}], "text": "one\ntwo \u00e9\u0000",
"updated": "2026-03-14T10:26:53.5+01:00", "url": ""}}})";
    write("whole", whole);
    write("truncated", std::string_view(whole).substr(0, whole.size() / 2));
    write("empty", R"({"notes": {}})");
    write("nested", R"({"notes": {}, "a": [[[[[[[[{"b": {}}]]]]]]]]})");
    write("ill-formed", "{\"notes\": {}, \"\xC3\": \"\xED\xA0\x80\"}");
}

} // namespace quillmark::fuzz
