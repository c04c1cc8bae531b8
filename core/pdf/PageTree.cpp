#include "pdf/PageTree.h"

#include "pdf/Limits.h"

#include <utility>

namespace quillmark::PDF {

PageTree::PageTree(const Document& document)
    : m_root(document.pages()), m_entriesLeft(Limits::treeEntries)
{
}

DictionaryRef PageTree::enter(DictionaryRef node)
{
    const auto type = node->name("Type");
    if (type == "Page") return node;
    auto kids = node->array("Kids");
    if (!kids) return type || m_levels.empty() ? nullptr : std::move(node);
    if (m_entered.insert(node->identity()).second) m_levels.push_back({std::move(kids), 0});
    return nullptr;
}

DictionaryRef PageTree::next()
{
    if (m_root) {
        if (auto page = enter(std::exchange(m_root, nullptr))) return page;
    }
    while (!m_levels.empty()) {
        Level& level = m_levels.back();
        if (level.position == level.kids->size()) {
            m_levels.pop_back();
            continue;
        }
        if (m_entriesLeft == 0) return nullptr;
        --m_entriesLeft;
        auto kid = level.kids->dictionary(level.position++);
        if (!kid) continue;
        if (auto page = enter(std::move(kid))) return page;
    }
    return nullptr;
}

} // namespace quillmark::PDF
