#include "pdf/PDFObjects.h"

#include "pdf/Limits.h"

namespace quillmark::PDF {

std::vector<Entry> entries(const Dictionary& dictionary)
{
    std::vector<Entry> items;
    dictionary.enumerate([&items](std::string_view key, const ObjectRef& value) {
        items.push_back({std::string(key), value});
    });
    return items;
}

DictionaryRef resources(const DictionaryRef& page)
{
    DictionaryRef node = page;
    for (int examined = 0; node && examined < Limits::resourceChain; ++examined) {
        if (auto found = node->dictionary("Resources")) return found;
        node = node->dictionary("Parent");
    }
    return nullptr;
}

} // namespace quillmark::PDF
