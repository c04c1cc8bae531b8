// The pages of a document, one after the other.
#pragma once

#include "pdf/PDFObjects.h"

#include <cstddef>
#include <unordered_set>
#include <vector>

namespace quillmark::PDF {

/// Walks a page tree from left to right without recursion. A dictionary of type Page is a page;
/// any other with kids is a node; a kid with neither type nor kids is taken for a page, as readers
/// do. A page that is listed twice comes twice. A node is entered once, so that trees with loops
/// or shared branches end. Behind so many entries as Limits.h says, nothing comes any more.
class PageTree {
public:
    explicit PageTree(const Document& document);

    /// The next page; null after the last one.
    [[nodiscard]] DictionaryRef next();

private:
    struct Level {
        ArrayRef kids;
        std::size_t position{};
    };

    /// The page that `node` is; null when it is an inner node, whose kids then come next.
    [[nodiscard]] DictionaryRef enter(DictionaryRef node);

    DictionaryRef m_root;
    std::vector<Level> m_levels;
    std::size_t m_entriesLeft;
    std::unordered_set<Identity> m_entered;
};

} // namespace quillmark::PDF
