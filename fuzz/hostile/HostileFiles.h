// Files that nobody would make: small ones that promise gigabytes, and structures without an end.
// Each stands beside what must be read of it. ../../scripts/hostile runs the command line over
// them.
#pragma once

#include "support/FontBytes.h"

#include <span>
#include <string_view>

namespace quillmark::fuzz {

/// `expected` is what fuzz/hostile/run.py makes of the command line's report: of a font file the
/// families, of a document its pages and rows.
struct HostileFile {
    /// Files that a build for debugging needs long for.
    enum class Size { small, large };

    std::string_view name;
    test::Bytes (*make)();
    std::string_view expected;
    Size size{Size::small};
};

[[nodiscard]] std::span<const HostileFile> hostileFonts();
[[nodiscard]] std::span<const HostileFile> hostileDocuments();

} // namespace quillmark::fuzz
