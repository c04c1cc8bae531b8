// Random names.
#pragma once

#include <string>

namespace quillmark {

/// A random UUID (RFC 4122) in its text form, with capital digits.
[[nodiscard]] std::string randomUUID();

} // namespace quillmark
