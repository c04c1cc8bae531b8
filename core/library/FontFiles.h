// The seam between the font service and the files that it reads. LocalFontFiles reads them here;
// reader/ has another, by which a process with limits does it.
#pragma once

#include "library/FontService.h"
#include "library/InstalledFonts.h"

#include <span>
#include <string>
#include <vector>

namespace quillmark {

/// About what is kept of a font file until all are read, in bytes.
inline constexpr std::size_t keptOfAFile = 2'048;

/// All functions may be called from any thread.
class FontFiles {
public:
    virtual ~FontFiles() = default;

    /// See InstalledFonts.h.
    [[nodiscard]] virtual std::vector<InstalledFile> installed() const = 0;

    /// See FontService::facesOfEach. Names and instances may be settled already.
    virtual void facesOfEach(std::span<const std::string> files, Faces which,
                             const TakeFaces& take) const = 0;
};

/// Reads in this process.
class LocalFontFiles final : public FontFiles {
public:
    [[nodiscard]] std::vector<InstalledFile> installed() const override;
    void facesOfEach(std::span<const std::string> files, Faces which,
                     const TakeFaces& take) const override;
};

} // namespace quillmark
