#include "pdf/PDFFontInfo.h"

namespace quillmark {

std::string embeddedText(const PDFFontInfo& info)
{
    std::string text(label(info.program));
    if (info.subset) text += ", subset";
    return text;
}

std::string pageList(const PDFFontInfo& info)
{
    std::string text;
    for (const int page : info.pages) {
        if (!text.empty()) text += ", ";
        text += std::to_string(page);
    }
    return text;
}

} // namespace quillmark
