// The least that a list of the installed fonts can cost: loads fontconfig's configuration and
// caches, and asks each font for its file and its place in it.

#include <cstdio>
#include <cstdlib>

#include <fontconfig/fontconfig.h>

int main()
{
    FcConfig* config = ::FcInitLoadConfigAndFonts();
    const FcFontSet* fonts = config == nullptr ? nullptr : ::FcConfigGetFonts(config, FcSetSystem);
    if (fonts == nullptr) {
        std::fputs("fontconfig has no configuration\n", stderr);
        return EXIT_FAILURE;
    }
    int count = 0;
    for (int i = 0; i < fonts->nfont; ++i) {
        FcChar8* file = nullptr;
        int index = 0;
        if (::FcPatternGetString(fonts->fonts[i], FC_FILE, 0, &file) == FcResultMatch &&
            ::FcPatternGetInteger(fonts->fonts[i], FC_INDEX, 0, &index) == FcResultMatch)
            ++count;
    }
    std::printf("%d fonts\n", count);
    ::FcConfigDestroy(config);
    return EXIT_SUCCESS;
}
