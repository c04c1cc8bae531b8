// Encrypted copies of PDFs.
#pragma once

#include "support/FontBytes.h"

#include <string>

namespace quillmark::test {

enum class Encryption { rc4With40Bits, rc4With128Bits, aesWith128Bits, aesWith256Bits };

/// The document, encrypted. With an empty `userPassword` readers open it without asking.
[[nodiscard]] Bytes encrypted(const Bytes& pdf, Encryption encryption,
                              const std::string& userPassword);

} // namespace quillmark::test
