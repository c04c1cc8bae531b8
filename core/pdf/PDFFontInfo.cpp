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

std::string pageRanges(const PDFFontInfo& info)
{
    const std::vector<int>& pages = info.pages;
    std::string text;
    for (auto first = pages.begin(); first != pages.end();) {
        auto last = first;
        while (last + 1 != pages.end() && *(last + 1) == *last + 1)
            ++last;
        if (!text.empty()) text += ", ";
        text += std::to_string(*first);
        if (last != first) text += "-" + std::to_string(*last);
        first = last + 1;
    }
    return text;
}

} // namespace quillmark
