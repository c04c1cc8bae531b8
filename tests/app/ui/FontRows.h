// Rows for the tests of the views that show them.
#pragma once

#include "pdf/AuditRow.h"

#include <string>
#include <utility>

namespace quillmark::test {

/// A font in a file of its own that says all that a font can say.
[[nodiscard]] inline AuditRow talkativeRow()
{
    return auditRow({
        .postScriptName = "Brook-Regular",
        .family = "Brook",
        .style = "Regular",
        .fullName = "Brook Regular",
        .copyright = "Copyright 2020 The Brook Authors",
        .trademark = "Brook is a trademark",
        .manufacturer = "Brook Foundry",
        .designer = "Anna Brook",
        .vendorURL = std::nullopt,
        .licenseDescription = "Licensed under the SIL Open Font License, Version 1.1.",
        .licenseURL = "https://openfontlicense.org",
        .licenseFile = "/fonts/brook/OFL.txt",
        .os2 = OS2Info{.version = 4, .fsType = 8, .vendorID = "BROO"},
        .filePath = "/fonts/brook/Brook-Regular.ttf",
        .format = "TrueType",
        .origin = FontOrigin::folder,
    });
}

/// One that says next to nothing, and is in no file.
[[nodiscard]] inline AuditRow silentRow(const std::string& name = "Silent")
{
    return auditRow({.postScriptName = name,
                     .family = name,
                     .style = "",
                     .fullName = std::nullopt,
                     .copyright = std::nullopt,
                     .trademark = std::nullopt,
                     .manufacturer = std::nullopt,
                     .designer = std::nullopt,
                     .vendorURL = std::nullopt,
                     .licenseDescription = std::nullopt,
                     .licenseURL = std::nullopt,
                     .licenseFile = std::nullopt,
                     .os2 = std::nullopt,
                     .filePath = std::nullopt,
                     .format = std::nullopt,
                     .origin = FontOrigin::installed});
}

/// The same as a PDF uses it.
[[nodiscard]] inline AuditRow documentRow(PDFFontInfo pdf, AuditRow row = silentRow())
{
    row.pdf = std::move(pdf);
    return row;
}

} // namespace quillmark::test
