// The `name` table.

#include "Harness.h"

#include "fontfile/NameTable.h"
#include "text/Trim.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace quillmark;
    for (const auto& [id, text] : NameTable::strings(fuzz::input(data, size))) {
        fuzz::expectText(std::string_view(text));
        fuzz::expect(trimmed(text, TrimAlso::nul) == text);
    }
    return 0;
}
