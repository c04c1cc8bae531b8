#include "pdf/PDFDocument.h"

#include "pdf/Limits.h"
#include "pdf/ObjectStore.h"
#include "text/Encoding.h"

#include <utility>

namespace quillmark::PDF {
namespace {

DictionaryRef dictionaryAt(ObjectStore& store, Node node);
StreamRef streamAt(ObjectStore& store, Node node);

class StoredArray final : public Array {
public:
    StoredArray(ObjectStore& store, Node node) : m_store(store), m_node(std::move(node)) {}
    [[nodiscard]] Identity identity() const override { return m_store.identity(m_node); }
    [[nodiscard]] std::size_t size() const override { return m_node.value->arraySize(); }
    [[nodiscard]] DictionaryRef dictionary(std::size_t index) const override
    {
        return dictionaryAt(m_store, m_store.get(m_node, index));
    }
    [[nodiscard]] DictionaryRef dictionaryWith(std::size_t index,
                                               std::string_view key) const override
    {
        if (index >= size()) return nullptr;
        Node node{m_node.object, &m_node.object->element(*m_node.value, index), m_node.owner};
        if (!m_store.mayHaveKey(node, key)) return nullptr;
        node = m_store.follow(std::move(node));
        if (!m_store.get(node, key).object) return nullptr;
        return dictionaryAt(m_store, std::move(node));
    }

private:
    ObjectStore& m_store;
    Node m_node;
};

class StoredObject final : public Object {
public:
    StoredObject(ObjectStore& store, Node node) : m_store(store), m_node(std::move(node)) {}
    [[nodiscard]] DictionaryRef dictionary() const override
    {
        return dictionaryAt(m_store, m_store.follow(m_node));
    }
    [[nodiscard]] StreamRef stream() const override
    {
        return streamAt(m_store, m_store.follow(m_node));
    }

private:
    ObjectStore& m_store;
    Node m_node; // may be a reference
};

class StoredDictionary final : public Dictionary {
public:
    StoredDictionary(ObjectStore& store, Node node) : m_store(store), m_node(std::move(node)) {}
    [[nodiscard]] Identity identity() const override { return m_store.identity(m_node); }
    [[nodiscard]] DictionaryRef dictionary(std::string_view key) const override
    {
        return dictionaryAt(m_store, m_store.get(m_node, key));
    }
    [[nodiscard]] ArrayRef array(std::string_view key) const override
    {
        Node node = m_store.get(m_node, key);
        if (node.kind() != Value::Kind::array) return nullptr;
        return std::make_shared<StoredArray>(m_store, std::move(node));
    }
    [[nodiscard]] StreamRef stream(std::string_view key) const override
    {
        return streamAt(m_store, m_store.get(m_node, key));
    }
    [[nodiscard]] std::optional<std::string> name(std::string_view key) const override
    {
        const Node node = m_store.get(m_node, key);
        const auto name = node.object ? node.object->name(*node.value) : std::nullopt;
        if (!name || name->size() > Limits::nameBytes) return std::nullopt;
        return repairedUtf8(*name);
    }
    void enumerate(const Visitor& visitor) const override
    {
        const ParsedObject& object = *m_node.object;
        for (std::size_t i = 0; i < m_node.value->entryCount(); ++i) {
            const Node value{m_node.object, &object.entry(*m_node.value, i), m_node.owner};
            visitor(object.key(*m_node.value, i), std::make_shared<StoredObject>(m_store, value));
        }
    }

private:
    ObjectStore& m_store;
    Node m_node;
};

class StoredStream final : public Stream {
public:
    StoredStream(ObjectStore& store, Node node) : m_store(store), m_node(std::move(node)) {}
    [[nodiscard]] DictionaryRef dictionary() const override
    {
        return std::make_shared<StoredDictionary>(m_store, m_node);
    }
    [[nodiscard]] SharedBytes data() const override { return m_store.data(m_node); }

private:
    ObjectStore& m_store;
    Node m_node;
};

DictionaryRef dictionaryAt(ObjectStore& store, Node node)
{
    if (node.kind() != Value::Kind::dictionary || node.isStream()) return nullptr;
    return std::make_shared<StoredDictionary>(store, std::move(node));
}

StreamRef streamAt(ObjectStore& store, Node node)
{
    if (!node.isStream()) return nullptr;
    return std::make_shared<StoredStream>(store, std::move(node));
}

class StoredDocument final : public Document {
public:
    explicit StoredDocument(std::unique_ptr<QPDFFile> file) : m_store(std::move(file)) {}
    [[nodiscard]] bool hasCatalog() { return m_store.catalog().kind() == Value::Kind::dictionary; }
    [[nodiscard]] DictionaryRef pages() const override
    {
        return dictionaryAt(m_store, m_store.get(m_store.catalog(), "Pages"));
    }

private:
    mutable ObjectStore m_store; // reading fills its caches
};

Opened openSource(std::unique_ptr<ByteSource> source)
{
    if (!source) return PDFCheckError::Kind::unreadable;
    auto file = std::make_unique<QPDFFile>();
    if (const auto failure = file->open(skippingLeadingGarbage(std::move(source)))) return *failure;
    auto document = std::make_unique<StoredDocument>(std::move(file));
    if (!document->hasCatalog()) return PDFCheckError::Kind::unreadable;
    return document;
}

} // namespace

Opened open(const std::filesystem::path& path)
{
    return openSource(fileSource(path));
}

Opened open(std::span<const std::byte> data)
{
    return openSource(memorySource(data));
}

} // namespace quillmark::PDF
