#include "notes/LicenseNote.h"

namespace quillmark {

bool LicenseNote::isEmpty() const
{
    return boughtFrom.empty() && license == HeldLicense::notSet && url.empty() && !attachment &&
           text.empty();
}

} // namespace quillmark
