#include "export/AuditExport.h"

#include <gtest/gtest.h>

namespace quillmark {
namespace {

TEST(CSV, OfAnEmptyListIsTheHeadersAndTheDisclaimer)
{
    EXPECT_EQ(AuditExport::csv({}, {}),
              "Font,PostScript name,Family,Style,Verdict,Why,License in font,License URL,"
              "Embedding bits,fsType,Vendor ID,Maker,Copyright,Apple system font,File,In PDF,Pages,"
              "Your license,Bought from,License link,Attachment,Your notes\r\n"
              "Note,Check the license; this reads the font's own data. Not legal advice.\r\n");
}

} // namespace
} // namespace quillmark
