// The files that mutants are made of, and what is made of them.
#pragma once

#include "support/FontBytes.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace quillmark::fuzz {

struct Seed {
    std::string name;
    test::Bytes bytes;
};

/// Mutants of one kind of file. Mutant n is the same wherever and whenever it is made.
class Mutants {
public:
    virtual ~Mutants() = default;
    struct Mutant {
        std::string name; // of what it was made
        test::Bytes bytes;
    };
    [[nodiscard]] virtual Mutant make(std::uint64_t number) const = 0;
};

/// Of font files: plain ones, collections, WOFF and WOFF2, Type 1, bitmaps and suitcases. `seeds`
/// is the folder that fuzz_seeds has written.
class FontMutants final : public Mutants {
public:
    explicit FontMutants(const std::filesystem::path& seeds);
    [[nodiscard]] Mutant make(std::uint64_t number) const override;

private:
    std::vector<Seed> m_seeds;
    std::vector<Seed> m_plain; // those that can be packed into other containers
};

/// Of documents: with tables and streams of cross-references, object streams, all filters and all
/// ways to encrypt. `words` is a dictionary of words for a fuzzer.
class DocumentMutants final : public Mutants {
public:
    DocumentMutants(const std::filesystem::path& seeds, const std::filesystem::path& words);
    [[nodiscard]] Mutant make(std::uint64_t number) const override;

private:
    std::vector<Seed> m_seeds;
    std::vector<Seed> m_programs; // fonts to be embedded
    std::vector<std::string> m_words;
};

} // namespace quillmark::fuzz
