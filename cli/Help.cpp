#include "cli/Help.h"

#include "assessment/Classifier.h"

namespace quillmark::cli {
namespace {

// At most 79 columns, so that nothing wraps on the usual terminal.
constexpr std::string_view help = R"(Usage: quillmark-cli COMMAND [OPTIONS]

Says for every font whether it may be embedded in something that is sold, from
what the font says about itself. Fonts and PDFs are only read, never changed.

Commands:
  installed             every installed font
  scan FOLDER|FILE...   fonts in folders, subfolders included, or single font
                        files, which are shown in full
  check PDF...          fonts of PDFs, matched to the installed fonts and to
                        those in the folders named with --fonts

Options for check:
      --fonts FOLDER    match to the fonts in this folder too; can be repeated
      --no-installed    do not match to installed fonts

Options:
  -f, --format FORMAT   text (the default), json, csv (for spreadsheets) or pdf
                        (a report to print)
  -o, --output FILE     write to FILE instead of standard output
      --notes FILE      csv and pdf: the license notes to print with the fonts
                        (default: the notes.json of the application)
      --fail-on VERDICT exit with 1 when a font is restricted, or with
                        "unknown" also when a verdict is unknown
      --color WHEN      auto (the default), always or never; NO_COLOR is
                        respected
  -q, --quiet           no progress and no tips, only results and errors
  -h, --help            show this help
      --version         show the version

Examples:
  quillmark-cli installed
  quillmark-cli scan ~/Fonts
  quillmark-cli check book.pdf --fonts ~/Fonts
  quillmark-cli check --fail-on restricted dist/*.pdf
  quillmark-cli scan --format pdf --output audit.pdf ~/Fonts

Exit codes:
    0   done
    1   done, and a font has the verdict of --fail-on or a worse one
    2   the arguments make no sense
    3   some input could not be read; everything else is still reported
    4   the output could not be written
   70   internal error
  130   interrupted

)";

} // namespace

std::string_view version()
{
    return QUILLMARK_VERSION;
}

std::string helpText()
{
    std::string text(help);
    text += Classifier::disclaimer;
    text += '\n';
    return text;
}

std::string versionText()
{
    std::string text(programName);
    text += ' ';
    text += version();
    text += '\n';
    return text;
}

} // namespace quillmark::cli
