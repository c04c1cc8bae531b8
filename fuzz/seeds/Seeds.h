// Seeds for the fuzz harnesses: small sound and damaged inputs, built by code.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace quillmark::fuzz {

/// Writes `bytes` as one seed of the harness `reader`.
void writeSeed(std::string_view reader, std::string_view name, std::span<const std::byte> bytes);

/// Each writes the seeds of the harnesses for one folder of core/ or app/, or for reader/.
void writeExportSeeds();
void writeFontFileSeeds();
void writeLibrarySeeds();
void writeNotesSeeds();
void writePDFSeeds();
void writeReaderSeeds();
void writeUpdateSeeds();

} // namespace quillmark::fuzz
