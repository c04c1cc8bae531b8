#include "pdf/EmbeddedProgram.h"

namespace quillmark {

std::string_view label(EmbeddedProgram program)
{
    switch (program) {
    case EmbeddedProgram::notEmbedded:
        return "Not embedded";
    case EmbeddedProgram::trueType:
        return "Embedded (TrueType)";
    case EmbeddedProgram::openType:
        return "Embedded (OpenType)";
    case EmbeddedProgram::cff:
        return "Embedded (CFF)";
    case EmbeddedProgram::type1:
        return "Embedded (Type 1)";
    case EmbeddedProgram::type3:
        return "Type 3 (drawn glyphs)";
    }
    return {};
}

} // namespace quillmark
