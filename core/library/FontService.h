// The seam between the font library and the system that knows the installed fonts.
// The real one is SystemFontService.h; tests have a fake.
#pragma once

#include "fontfile/NameTable.h"
#include "fontfile/VariationInstances.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillmark {

/// The kinds of font that the service tells apart. Other files have none.
enum class FontFormat {
    openTypePostScript = 1,
    openTypeTrueType = 2,
    trueType = 3,
    postScript = 4,
    bitmap = 5,
};

/// One face as the service knows it.
struct PlatformFont {
    std::string postScriptName;      // the service's own name for it; may be empty in a file's face
    std::uint32_t index{};           // the face's place in its file, counted from 0
    std::optional<std::string> path; // as the bytes that the system knows the file by
    std::optional<FontFormat> format;
    std::optional<std::vector<std::byte>> name; // raw `name` table
    std::optional<std::vector<std::byte>> os2;  // raw `OS/2` table
    std::optional<std::vector<std::byte>> fvar; // raw `fvar` table, only with Faces::variable
    NameStrings names; // names that the format has outside a `name` table, by name identifier
    /// What `name` and `names` come to, in their place, where the service has read them already.
    std::optional<NameStrings> settledNames;
    /// What `fvar` comes to, likewise.
    std::optional<std::vector<VariationInstance>> settledInstances;
};

/// Which faces of a file are wanted. The variable ones are those with an `fvar` table, and only
/// they are fetched then: the names of instances are looked for in every font that is known, and
/// most fonts have none.
enum class Faces { all, variable };

/// Takes the faces of one of several files, which is told by its place among them.
using TakeFaces = std::function<void(std::size_t file, std::vector<PlatformFont>&& faces)>;

/// All functions may be called from any thread. Nothing fails: what cannot be read is not there.
class FontService {
public:
    virtual ~FontService() = default;

    /// The PostScript names of the installed fonts, each once, in an order that does not change
    /// between calls.
    [[nodiscard]] virtual std::vector<std::string> installedNames() const = 0;

    /// The installed font asked for by `postScriptName`. A service may answer with another font,
    /// so a caller compares the name in the answer.
    [[nodiscard]] virtual std::optional<PlatformFont>
    installedFont(std::string_view postScriptName) const = 0;

    /// The faces of one font file in file order; empty when it has none that can be read.
    [[nodiscard]] virtual std::vector<PlatformFont> facesOf(const std::string& file,
                                                            Faces which) const = 0;

    /// The faces of many files, read on all cores: `take` is called once for each file, by several
    /// threads at once and in any order. The first exception that leaves it is thrown again here.
    virtual void facesOfEach(std::span<const std::string> files, Faces which,
                             const TakeFaces& take) const;
};

} // namespace quillmark
