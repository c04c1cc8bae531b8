// Finds and parses the objects of a document, follows references and decodes streams. Behind
// PDFDocument.h.
#pragma once

#include "pdf/ObjectParser.h"
#include "pdf/PDFObjects.h"
#include "pdf/ParsedObject.h"
#include "pdf/QPDFFile.h"
#include "pdf/StreamFilters.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quillmark::PDF {

/// A value of the document: where in which object. Without an object, there is no value.
struct Node {
    ParsedObjectRef object;
    const Value* value{};
    Reference owner;

    [[nodiscard]] Value::Kind kind() const { return object ? value->kind() : Value::Kind::null; }
    [[nodiscard]] bool isStream() const
    {
        return object && object->isStream() && value == &object->root();
    }
};

/// Objects that were read, or found to be unreadable. What is near to each other in the document,
/// which mostly goes by its numbers, is so in memory too.
class KnownObjects {
public:
    /// `count`: of the objects that the document has, most often numbered from 1 on.
    explicit KnownObjects(std::size_t count) : m_runs(count / runSize + 1) {}

    /// Absent when it is not known; null when it is known to be unreadable.
    [[nodiscard]] std::optional<ParsedObjectRef> find(const Reference& reference) const;
    /// Adds an object that is not known, or that is null for being unreadable.
    void add(const Reference& reference, ParsedObjectRef object);
    void clear();
    void forgetUnreadable();

private:
    static constexpr std::size_t runSize = 128;
    using Run = std::array<std::optional<ParsedObjectRef>, runSize>;

    [[nodiscard]] bool hasRun(const Reference& reference) const
    {
        return reference.generation == 0 && reference.number / runSize < m_runs.size();
    }

    std::vector<std::unique_ptr<Run>> m_runs; // by number, of generation 0; made when needed
    std::unordered_map<std::uint64_t, ParsedObjectRef> m_others;
};

class ObjectStore {
public:
    /// A store over an open file.
    explicit ObjectStore(std::unique_ptr<QPDFFile> file);

    [[nodiscard]] Node catalog();

    /// The value of a key; what it refers to, if it is a reference.
    [[nodiscard]] Node get(const Node& dictionary, std::string_view key);
    [[nodiscard]] Node get(const Node& array, std::size_t index);
    /// Whether `node` may be, or refer to, a dictionary with this key. False only when it certainly
    /// is not; often that shows without reading the object.
    [[nodiscard]] bool mayHaveKey(const Node& node, std::string_view key);
    /// What `node` refers to, if it is a reference; else `node`.
    [[nodiscard]] Node follow(Node node);

    [[nodiscard]] Identity identity(const Node& node);

    /// The decoded data of a stream.
    [[nodiscard]] SharedBytes data(const Node& stream);

private:
    /// Object streams and what is needed to read them must not lie in object streams, so that
    /// following references ends. As a template parameter it lets the compiler see that: what reads
    /// an object stream calls nothing that would read another.
    enum class Where { anywhere, inFile };

    /// An object stream, unpacked.
    struct Members {
        Bytes bytes;
        std::uint64_t first{};           // where the offsets count from
        std::vector<ObjectPlace> places; // ascending by number
        std::uint64_t textLeft{};        // that may be parsed, against objects that overlap
        // Whether any object may have a key, for those that were asked for.
        std::map<std::string, bool, std::less<>> mentioned;
    };

    void charge(const ParsedObjectRef& object);
    template <Where where>
    [[nodiscard]] ParsedObjectRef object(const Reference& reference);
    [[nodiscard]] ParsedObjectRef readFromFile(const Reference& reference, std::uint64_t offset);
    [[nodiscard]] ParsedObjectRef readFromStream(const Reference& reference, std::uint64_t stream);
    [[nodiscard]] static bool mayMention(Members& members, std::string_view key);
    [[nodiscard]] static const ObjectPlace* placeIn(const Members& members, std::uint32_t number);
    [[nodiscard]] std::shared_ptr<Members> members(std::uint64_t stream);
    [[nodiscard]] std::shared_ptr<Members> unpack(std::uint64_t stream);
    template <Where where>
    [[nodiscard]] Node followIn(Node node);
    template <Where where>
    [[nodiscard]] std::optional<std::int64_t> integer(const Node& dictionary, std::string_view key);
    template <Where where>
    [[nodiscard]] std::optional<std::vector<Filter>> filters(const Node& stream);
    template <Where where>
    [[nodiscard]] std::optional<Bytes> decoded(const Node& stream, std::size_t limit,
                                               StreamDecoder& decoder);
    template <Where where>
    [[nodiscard]] std::optional<Bytes> undecoded(const Node& stream, std::size_t limit);
    [[nodiscard]] std::optional<Bytes> plainBytes(const Node& stream, std::int64_t length,
                                                  std::size_t limit);

    std::unique_ptr<QPDFFile> m_file;
    ObjectParser m_parser;
    KnownObjects m_objects;
    std::size_t m_objectBytes{};
    std::unordered_map<std::uint64_t, std::shared_ptr<Members>> m_members;
    std::size_t m_memberBytes{};
    std::unordered_map<std::uint64_t, SharedBytes> m_data;
    std::unordered_map<std::uint64_t, std::uint32_t> m_otherGenerations;
    std::uint64_t m_parsingLeft; // against Limits::parsedBytes
    StreamDecoder m_objectStreams;
    StreamDecoder m_programs;
};

} // namespace quillmark::PDF
