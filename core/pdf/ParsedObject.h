// One object of a PDF, as its text says (ISO 32000-2, 7.3), without following any reference. Only
// what the walk looks at is kept: of strings, reals and truth values it is only known that they are
// there. Made by ObjectParser.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmark::PDF {

/// The number and generation of an object. Number 0 stands for no object.
struct Reference {
    std::uint32_t number{};
    std::uint32_t generation{};
    // clang-tidy 14 takes the zero that this compares with for a null pointer.
    // NOLINTNEXTLINE(modernize-use-nullptr)
    auto operator<=>(const Reference&) const = default;
};

/// A value inside a ParsedObject, which tells what is in it.
class Value {
public:
    enum class Kind : std::uint8_t { null, integer, name, reference, array, dictionary, other };

    [[nodiscard]] Kind kind() const { return m_kind; }
    /// Absent when this is no integer.
    [[nodiscard]] std::optional<std::int64_t> integer() const;
    /// Absent when this is no reference.
    [[nodiscard]] std::optional<Reference> reference() const;
    /// The number of elements; 0 when this is no array.
    [[nodiscard]] std::size_t arraySize() const;
    /// The number of entries; 0 when this is no dictionary.
    [[nodiscard]] std::size_t entryCount() const;

private:
    friend class ParsedObject;
    friend class ObjectParser;

    Kind m_kind{Kind::null};
    std::uint32_t m_count{}; // bytes of a name, elements, entries; a reference's generation
    std::int64_t m_number{}; // an integer; a reference's number; where names and children begin
};

/// The values lie in one array: an element takes 16 bytes, and nesting costs nothing when freed.
class ParsedObject {
public:
    /// What the object is.
    [[nodiscard]] const Value& root() const { return m_root; }
    /// Whether the keyword "stream" follows, so that the dictionary is a stream's.
    [[nodiscard]] bool isStream() const { return m_isStream; }
    /// For a stream, where in the file that keyword ends.
    [[nodiscard]] std::uint64_t streamKeywordEnd() const { return m_streamKeywordEnd; }
    /// Bytes of text that the object was read from.
    [[nodiscard]] std::size_t textSize() const { return m_textSize; }
    /// Bytes that it takes in memory.
    [[nodiscard]] std::size_t memory() const;

    /// A name's bytes after its #-escapes, without the slash; absent when `value` is no name.
    [[nodiscard]] std::optional<std::string_view> name(const Value& value) const;

    /// An element of an array, for an index below its size.
    [[nodiscard]] const Value& element(const Value& array, std::size_t index) const;

    /// Entries are in ascending byte order of their keys, for an index below their number. Of keys
    /// that stand several times the last counts; null values count as missing.
    [[nodiscard]] std::string_view key(const Value& dictionary, std::size_t index) const;
    [[nodiscard]] const Value& entry(const Value& dictionary, std::size_t index) const;
    /// The value of the key `wanted`; null when it is missing or `value` is no dictionary.
    [[nodiscard]] const Value* find(const Value& value, std::string_view wanted) const;

    /// A number that tells a value inside from all others in this object: the same whenever the
    /// same text is parsed. 0 is the root's.
    [[nodiscard]] std::uint32_t position(const Value& value) const;

private:
    friend class ObjectParser;

    std::vector<Value> m_values;
    std::string m_names;
    Value m_root;
    bool m_isStream{};
    std::uint64_t m_streamKeywordEnd{};
    std::size_t m_textSize{};
};

using ParsedObjectRef = std::shared_ptr<const ParsedObject>;

} // namespace quillmark::PDF
