// The objects of a PDF, as far as looking for fonts needs them. Everything here is read lazily and
// never fails: a key that is missing, has another type or cannot be read gives nothing. References
// to other objects are followed by the reader. The real reader is opened by PDFDocument.h; the walk
// over these objects is FontWalk.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmark::PDF {

class Array;
class Dictionary;
class Object;
class Stream;

/// Objects are handed out as shared handles; null stands for an absent object. They must not
/// outlive their document.
using ArrayRef = std::shared_ptr<const Array>;
using DictionaryRef = std::shared_ptr<const Dictionary>;
using ObjectRef = std::shared_ptr<const Object>;
using StreamRef = std::shared_ptr<const Stream>;

using Bytes = std::vector<std::byte>;
/// Decoded stream data, shared between everybody who asked for it; null stands for absent data.
using SharedBytes = std::shared_ptr<const Bytes>;

/// Tells a container from all others of its document: two handles have the same identity exactly
/// when they stand for the same object of the file. An object of its own is known by the number it
/// was reached by; one written inside another, by its owner and the keys that lead to it.
using Identity = std::uint64_t;

/// A value that was met while enumerating a dictionary. Nothing of it is read until it is asked for
/// as one of its types.
class Object {
public:
    virtual ~Object() = default;
    [[nodiscard]] virtual DictionaryRef dictionary() const = 0;
    [[nodiscard]] virtual StreamRef stream() const = 0;
};

class Dictionary {
public:
    /// Called for one entry; the key has no slash.
    using Visitor = std::function<void(std::string_view key, const ObjectRef& value)>;

    virtual ~Dictionary() = default;
    [[nodiscard]] virtual Identity identity() const = 0;

    /// A stream is no dictionary; see Stream::dictionary.
    [[nodiscard]] virtual DictionaryRef dictionary(std::string_view key) const = 0;
    [[nodiscard]] virtual ArrayRef array(std::string_view key) const = 0;
    [[nodiscard]] virtual StreamRef stream(std::string_view key) const = 0;
    /// A name's bytes after its #-escapes, read as UTF-8 with repair.
    [[nodiscard]] virtual std::optional<std::string> name(std::string_view key) const = 0;

    /// Visits all entries in ascending byte order of their keys.
    virtual void enumerate(const Visitor& visitor) const = 0;
};

class Array {
public:
    virtual ~Array() = default;
    [[nodiscard]] virtual Identity identity() const = 0;
    [[nodiscard]] virtual std::size_t size() const = 0;
    [[nodiscard]] virtual DictionaryRef dictionary(std::size_t index) const = 0;
    /// The same, but null for a dictionary without the entry `key`: most annotations have no
    /// appearance, and need not be taken apart to see that.
    [[nodiscard]] virtual DictionaryRef dictionaryWith(std::size_t index,
                                                       std::string_view key) const = 0;
};

class Stream {
public:
    virtual ~Stream() = default;
    /// The entries in front of the data; never null.
    [[nodiscard]] virtual DictionaryRef dictionary() const = 0;
    /// The decoded data; null when a filter is not one for plain bytes (image formats, unknown
    /// ones), the data cannot be had, or a limit is exceeded.
    [[nodiscard]] virtual SharedBytes data() const = 0;
};

class Document {
public:
    virtual ~Document() = default;
    /// The root of the page tree; null when there is none.
    [[nodiscard]] virtual DictionaryRef pages() const = 0;
};

/// One entry of a dictionary.
struct Entry {
    std::string key;
    ObjectRef value;
};

/// All entries of a dictionary, in its order of enumeration.
[[nodiscard]] std::vector<Entry> entries(const Dictionary& dictionary);

/// A page's resources: its own, or those of the nearest of its ancestors that has some. At most 32
/// dictionaries are looked at, so that parents which form a loop end.
[[nodiscard]] DictionaryRef resources(const DictionaryRef& page);

} // namespace quillmark::PDF
