#include "fontfile/OS2Info.h"

#include "fontfile/ByteReader.h"
#include "text/Encoding.h"
#include "text/Trim.h"

namespace quillmark {

std::optional<OS2Info> OS2Info::read(std::span<const std::byte> table)
{
    const ByteReader reader(table);
    const auto version = reader.u16(0);
    const auto fsType = reader.u16(8);
    if (!version || !fsType) return std::nullopt;

    OS2Info info{*version, *fsType, std::nullopt};
    if (const auto achVendID = reader.slice(58, 4))
        info.vendorID = trimmedOrAbsent(decodeAscii(*achVendID), TrimAlso::controls);
    return info;
}

} // namespace quillmark
