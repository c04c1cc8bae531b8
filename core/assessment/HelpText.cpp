#include "assessment/HelpText.h"

#include "assessment/Brand.h"

namespace quillmark::HelpText {
namespace {

std::string aroundBrand(std::string_view before, std::string_view after)
{
    std::string text(before);
    text += Brand;
    text += after;
    return text;
}

} // namespace

std::string title()
{
    return aroundBrand("How ", " decides");
}

std::string introduction()
{
    return aroundBrand("",
                       " reads what each font file says about itself. It can't see the license you "
                       "bought, so every verdict is a starting point for checking the license, not "
                       "a clearance.");
}

std::string matching()
{
    return aroundBrand("PDF writers often strip the license fields from the copy they embed. ",
                       " then matches the font by name to an installed font or one in a folder you "
                       "scanned; scan the folder with the fonts you used for the best match.");
}

} // namespace quillmark::HelpText
