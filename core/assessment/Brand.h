// The product's name, wherever a text needs it.
#pragma once

#include <string_view>

namespace quillmark {

inline constexpr std::string_view Brand = "Quillmark";

} // namespace quillmark
