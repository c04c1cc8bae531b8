// The form in which family names are compared.
#pragma once

#include <string>
#include <string_view>

namespace quillmark {

/// `text` lower-cased, with only letters, marks and numbers kept (general categories L, M and N):
/// "Times New Roman" and "times-new_roman" both give "timesnewroman".
[[nodiscard]] std::string familyKey(std::string_view text);

} // namespace quillmark
