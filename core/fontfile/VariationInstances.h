// The named instances of a variable font (OpenType `fvar`).
#pragma once

#include "fontfile/NameTable.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace quillmark {

/// One named instance, as programs that write PDFs name it.
struct VariationInstance {
    std::string postScriptName;
    std::string style;
    std::string fullName;
    bool operator==(const VariationInstance&) const = default;
};

namespace VariationInstances {

/// The instances in table order. The PostScript name is the instance's own where `fvar` gives one,
/// else name 25 or 6 followed by "-" and the instance's style (Adobe Technical Note 5902). An
/// instance without a style name, or for which no PostScript name can be made, is left out.
[[nodiscard]] std::vector<VariationInstance> read(std::span<const std::byte> fvar,
                                                  const NameStrings& names);

} // namespace VariationInstances
} // namespace quillmark
