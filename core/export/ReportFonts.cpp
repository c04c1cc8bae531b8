#include "export/ReportFonts.h"

#include "files/ProgramFiles.h"

#include <memory>
#include <system_error>

#include <fontconfig/fontconfig.h>

namespace quillmark {
namespace {

struct Destroy {
    void operator()(FcConfig* config) const { ::FcConfigDestroy(config); }
    void operator()(FcPattern* pattern) const { ::FcPatternDestroy(pattern); }
};

/// What the system has for "Courier". An empty path when it has no fonts at all.
FontFile systemCourier(bool bold)
{
    FontFile file;
    const std::unique_ptr<FcConfig, Destroy> config(::FcInitLoadConfigAndFonts());
    const std::unique_ptr<FcPattern, Destroy> wanted(::FcPatternCreate());
    if (!config || !wanted) return file;
    ::FcPatternAddString(wanted.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>("Courier"));
    ::FcPatternAddInteger(wanted.get(), FC_SPACING, FC_MONO);
    ::FcPatternAddInteger(wanted.get(), FC_WEIGHT, bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
    ::FcPatternAddBool(wanted.get(), FC_SCALABLE, FcTrue);
    ::FcConfigSubstitute(config.get(), wanted.get(), FcMatchPattern);
    ::FcDefaultSubstitute(wanted.get());
    FcResult result{};
    const std::unique_ptr<FcPattern, Destroy> found(
        ::FcFontMatch(config.get(), wanted.get(), &result));
    FcChar8* path = nullptr;
    if (found && ::FcPatternGetString(found.get(), FC_FILE, 0, &path) == FcResultMatch) {
        file.path = reinterpret_cast<const char*>(path);
        ::FcPatternGetInteger(found.get(), FC_INDEX, 0, &file.index);
    }
    return file;
}

bool holdsFont(const std::filesystem::path& path)
{
    int faces = 0;
    const std::unique_ptr<FcPattern, Destroy> face(
        ::FcFreeTypeQuery(reinterpret_cast<const FcChar8*>(path.c_str()), 0, nullptr, &faces));
    return face != nullptr;
}

FontFile load(const std::filesystem::path& path, bool bold, const Diagnostic& diagnostic)
{
    std::error_code error;
    if (std::filesystem::is_regular_file(path, error) && holdsFont(path)) return {path.string(), 0};
    FontFile courier = systemCourier(bold);
    diagnostic("Quillmark report font: " + path.filename().string() +
               " is missing or cannot be read; " +
               (courier.path.empty() ? "there is no other font to stand in for it."
                                     : "Courier stands in for it."));
    return courier;
}

} // namespace

ReportFonts ReportFonts::load(const std::filesystem::path& folder, const Diagnostic& diagnostic)
{
    ReportFonts fonts{quillmark::load(folder / "CourierPrime-Regular.ttf", false, diagnostic),
                      quillmark::load(folder / "CourierPrime-Bold.ttf", true, diagnostic)};
    if (fonts.regular.path.empty()) fonts.regular = fonts.bold;
    if (fonts.bold.path.empty()) fonts.bold = fonts.regular;
    return fonts;
}

std::filesystem::path reportFontFolder()
{
    return besideProgram("share/quillmark/Fonts");
}

} // namespace quillmark
