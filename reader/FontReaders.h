// Font files read by reader processes.
#pragma once

#include "library/FontFiles.h"
#include "reader/Readers.h"

#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace quillmark::reader {

/// A file over which a process ends or is silent has no faces. All functions throw StartFailure.
class FontReaders final : public FontFiles {
public:
    explicit FontReaders(std::shared_ptr<const Readers> readers) : m_readers(std::move(readers)) {}

    /// Throws std::runtime_error when a process ends over the list: no list is not an empty one.
    [[nodiscard]] std::vector<InstalledFile> installed() const override;
    void facesOfEach(std::span<const std::string> files, quillmark::Faces which,
                     const TakeFaces& take) const override;

private:
    std::shared_ptr<const Readers> m_readers;
};

} // namespace quillmark::reader
