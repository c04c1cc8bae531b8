// A set of page numbers, kept as runs: a font of a long document is mostly used on many pages in a
// row, and then costs eight bytes.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace quillmark {

class PageSet {
public:
    /// A stretch of pages, both ends included.
    struct Run {
        int first{};
        int last{};
        bool operator==(const Run&) const = default;
    };

    /// Adds a page. Pages come in ascending order, as a walk meets them.
    void add(int page);

    /// The union of runs in any order.
    [[nodiscard]] static PageSet of(std::vector<Run> runs);

    [[nodiscard]] bool empty() const { return m_runs.empty(); }
    [[nodiscard]] std::size_t size() const;
    /// Ascending, with a gap of at least one page between two runs.
    [[nodiscard]] std::span<const Run> runs() const { return m_runs; }
    /// The lowest `limit` pages, ascending.
    [[nodiscard]] std::vector<int> numbers(std::size_t limit) const;

    bool operator==(const PageSet&) const = default;

private:
    std::vector<Run> m_runs;
};

} // namespace quillmark
