#include "fontfile/EmbeddingRights.h"

namespace quillmark {
namespace {

constexpr std::uint16_t restrictedBit = 0x0002;
constexpr std::uint16_t previewAndPrintBit = 0x0004;
constexpr std::uint16_t editableBit = 0x0008;

} // namespace

EmbeddingRights::Level EmbeddingRights::level() const
{
    if ((fsType & editableBit) != 0) return Level::editable;
    if ((fsType & previewAndPrintBit) != 0) return Level::previewAndPrint;
    if ((fsType & restrictedBit) != 0) return Level::restricted;
    return Level::installable;
}

std::string_view EmbeddingRights::label() const
{
    switch (level()) {
    case Level::installable:
        return "Installable (no restriction bits set)";
    case Level::restricted:
        return "Restricted license (no embedding)";
    case Level::previewAndPrint:
        return "Preview & print";
    case Level::editable:
        return "Editable";
    }
    return {};
}

std::string EmbeddingRights::summary() const
{
    std::string text(label());
    if (noSubsetting()) text += ", no subsetting";
    if (bitmapOnly()) text += ", bitmap only";
    return text;
}

std::string EmbeddingRights::hex() const
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text = "0x";
    for (const unsigned shift : {12U, 8U, 4U, 0U})
        text.push_back(digits[fsType >> shift & 0xFU]);
    return text;
}

} // namespace quillmark
