#include "pdf/ObjectStore.h"

#include "pdf/Limits.h"

#include <algorithm>
#include <utility>

namespace quillmark::PDF {
namespace {

std::uint64_t keyOf(const Reference& reference)
{
    return (std::uint64_t{reference.number} << 32U) | reference.generation;
}

Node root(ParsedObjectRef object, const Reference& owner)
{
    if (!object) return {};
    const Value* value = &object->root();
    return {std::move(object), value, owner};
}

} // namespace

std::optional<ParsedObjectRef> KnownObjects::find(const Reference& reference) const
{
    if (hasRun(reference)) {
        const auto& run = m_runs[reference.number / runSize];
        return run ? (*run)[reference.number % runSize] : std::nullopt;
    }
    const auto other = m_others.find(keyOf(reference));
    return other == m_others.end() ? std::nullopt : std::optional(other->second);
}

void KnownObjects::add(const Reference& reference, ParsedObjectRef object)
{
    if (!hasRun(reference)) {
        m_others.emplace(keyOf(reference), std::move(object));
        return;
    }
    auto& run = m_runs[reference.number / runSize];
    if (!run) run = std::make_unique<Run>();
    (*run)[reference.number % runSize] = std::move(object);
}

void KnownObjects::clear()
{
    for (auto& run : m_runs)
        run.reset();
    m_others.clear();
}

void KnownObjects::forgetUnreadable()
{
    for (auto& run : m_runs) {
        if (!run) continue;
        for (auto& object : *run)
            if (object && !*object) object.reset();
    }
    std::erase_if(m_others, [](const auto& known) { return !known.second; });
}

ObjectStore::ObjectStore(std::unique_ptr<QPDFFile> file)
    : m_file(std::move(file)), m_objects(m_file->objectCount()),
      m_parsingLeft(Limits::parsedBytes(m_file->bytes().size())),
      m_objectStreams{Limits::objectStreams(m_file->bytes().size())}, m_programs{
                                                                          Limits::programBytes}
{
}

Node ObjectStore::catalog()
{
    const Reference reference = m_file->root();
    if (reference.number != 0) return root(object<Where::anywhere>(reference), reference);
    const auto source = memorySource(std::as_bytes(std::span(m_file->rootText())));
    return root(m_parser.direct({*source, 0, Limits::objectText}), reference);
}

Node ObjectStore::get(const Node& dictionary, std::string_view key)
{
    const Value* value =
        dictionary.object ? dictionary.object->find(*dictionary.value, key) : nullptr;
    if (!value) return {};
    return follow({dictionary.object, value, dictionary.owner});
}

Node ObjectStore::get(const Node& array, std::size_t index)
{
    if (!array.object || index >= array.value->arraySize()) return {};
    return follow({array.object, &array.object->element(*array.value, index), array.owner});
}

Node ObjectStore::follow(Node node)
{
    return followIn<Where::anywhere>(std::move(node));
}

template <ObjectStore::Where where>
Node ObjectStore::followIn(Node node)
{
    const auto reference = node.object ? node.value->reference() : std::nullopt;
    if (!reference) return node;
    return root(object<where>(*reference), *reference);
}

Identity ObjectStore::identity(const Node& node)
{
    std::uint32_t owner = node.owner.number;
    if (node.owner.generation != 0) {
        // Rare, so these get numbers of their own, above those that objects can have.
        const auto next = static_cast<std::uint32_t>(m_otherGenerations.size());
        owner = m_otherGenerations.try_emplace(keyOf(node.owner), next + (1U << 31U)).first->second;
    }
    return (Identity{owner} << 32U) | node.object->position(*node.value);
}

/// Counts what the parser has just done, and what it made. Text that gives nothing counts too, or
/// a document could have it read for ever.
void ObjectStore::charge(const ParsedObjectRef& object)
{
    const std::uint64_t cost = std::max(m_parser.textRead(), object ? object->memory() : 0);
    m_parsingLeft -= std::min(m_parsingLeft, cost);
}

template <ObjectStore::Where where>
ParsedObjectRef ObjectStore::object(const Reference& reference)
{
    if (auto known = m_objects.find(reference)) return *std::move(known);
    const auto location = m_file->find(reference);
    if (!location) return nullptr;
    ParsedObjectRef object;
    if (location->kind == Location::Kind::inFile)
        object = readFromFile(reference, location->value);
    else if constexpr (where == Where::anywhere)
        object = readFromStream(reference, location->value);
    else
        return nullptr;
    const std::size_t bytes = object ? object->memory() : sizeof(ParsedObject);
    m_objectBytes += bytes;
    if (m_objectBytes > Limits::objectCache) {
        m_objects.clear();
        m_objectBytes = bytes;
    }
    m_objects.add(reference, object);
    return object;
}

ParsedObjectRef ObjectStore::readFromFile(const Reference& reference, std::uint64_t offset)
{
    const auto read = [&](std::uint64_t at) {
        const auto limit = std::min<std::uint64_t>(Limits::objectText, m_parsingLeft);
        auto object =
            m_parser.indirect({m_file->bytes(), at, static_cast<std::size_t>(limit)}, reference);
        charge(object);
        return object;
    };
    if (auto object = read(offset)) return object;
    // It is where it should be; and libqpdf, which would search for it, would take many times its
    // text.
    if (m_parser.wasTooLong()) return nullptr;
    if (m_file->repair(reference)) {
        // What was unreadable before may be found now.
        m_objects.forgetUnreadable();
    }
    const auto location = m_file->find(reference);
    if (!location || location->kind != Location::Kind::inFile || location->value == offset)
        return nullptr;
    return read(location->value);
}

const ObjectPlace* ObjectStore::placeIn(const Members& members, std::uint32_t number)
{
    const auto place = std::ranges::lower_bound(members.places, number, {}, &ObjectPlace::number);
    return place == members.places.end() || place->number != number ? nullptr : &*place;
}

/// Most documents have links by the thousand and no appearances at all, so object streams are asked
/// as a whole before their objects are.
bool ObjectStore::mayMention(Members& members, std::string_view key)
{
    const auto known = members.mentioned.find(key);
    if (known != members.mentioned.end()) return known->second;
    const bool mentioned = PDF::mayMention(members.bytes, key);
    members.mentioned.emplace(key, mentioned);
    return mentioned;
}

bool ObjectStore::mayHaveKey(const Node& node, std::string_view key)
{
    // An object that does not show its lack of the key within this much is read anyway.
    const auto looked = static_cast<std::size_t>(std::min<std::uint64_t>(2048, m_parsingLeft));
    const auto reference = node.object ? node.value->reference() : std::nullopt;
    if (!reference || m_objects.find(*reference)) return true;
    const auto location = m_file->find(*reference);
    if (!location) return false;
    const auto look = [&](const ObjectText& text, const Reference& expected) {
        const bool may = m_parser.mayHaveKey(text, expected, key);
        charge(nullptr);
        return may;
    };
    if (location->kind == Location::Kind::inFile)
        return look({m_file->bytes(), location->value, looked}, *reference);
    const auto container = members(location->value);
    if (container && !mayMention(*container, key)) return false;
    const ObjectPlace* place = container ? placeIn(*container, reference->number) : nullptr;
    if (!place) return false;
    const auto source = memorySource(container->bytes);
    return look({*source, container->first + place->offset, looked}, {});
}

ParsedObjectRef ObjectStore::readFromStream(const Reference& reference, std::uint64_t stream)
{
    const auto container = members(stream);
    if (!container) return nullptr;
    const ObjectPlace* place = placeIn(*container, reference.number);
    if (!place) return nullptr;
    const auto source = memorySource(container->bytes);
    const auto limit =
        std::min({std::uint64_t{Limits::objectText}, m_parsingLeft, container->textLeft});
    auto object = m_parser.direct(
        {*source, container->first + place->offset, static_cast<std::size_t>(limit)});
    charge(object);
    container->textLeft -= std::min<std::uint64_t>(container->textLeft, m_parser.textRead());
    return object;
}

std::shared_ptr<ObjectStore::Members> ObjectStore::members(std::uint64_t stream)
{
    const auto known = m_members.find(stream);
    if (known != m_members.end()) return known->second;
    auto unpacked = unpack(stream);
    m_memberBytes += unpacked ? unpacked->bytes.size() : 0;
    if (m_memberBytes > Limits::objectStreamCache) {
        m_members.clear();
        m_memberBytes = unpacked->bytes.size();
    }
    m_members.emplace(stream, unpacked);
    return unpacked;
}

std::shared_ptr<ObjectStore::Members> ObjectStore::unpack(std::uint64_t stream)
{
    // A number that an object can have, since it comes from a cross-reference stream.
    const Reference reference{static_cast<std::uint32_t>(stream), 0};
    const Node node = root(object<Where::inFile>(reference), reference);
    if (!node.isStream()) return nullptr;
    const auto count = integer<Where::inFile>(node, "N");
    const auto first = integer<Where::inFile>(node, "First");
    if (!count || !first || *count < 0 || *first < 0) return nullptr;
    auto bytes = decoded<Where::inFile>(node, Limits::objectStream, m_objectStreams);
    if (!bytes) return nullptr;

    auto container = std::make_shared<Members>();
    container->bytes = *std::move(bytes);
    container->first = static_cast<std::uint64_t>(*first);
    // Objects do not overlap; reading some of them twice is normal, reading all of them often
    // is not.
    container->textLeft = 4 * container->bytes.size() + 1024;
    const auto source = memorySource(container->bytes);
    auto& places = container->places;
    places = parsePlaces({*source, 0, container->bytes.size()}, static_cast<std::uint64_t>(*count));
    // Of two objects with one number the last one counts.
    std::ranges::reverse(places);
    std::ranges::stable_sort(places, {}, &ObjectPlace::number);
    return container;
}

template <ObjectStore::Where where>
std::optional<std::int64_t> ObjectStore::integer(const Node& dictionary, std::string_view key)
{
    const Value* value =
        dictionary.object ? dictionary.object->find(*dictionary.value, key) : nullptr;
    if (!value) return std::nullopt;
    const Node node = followIn<where>({dictionary.object, value, dictionary.owner});
    return node.object ? node.value->integer() : std::nullopt;
}

/// The filters of a stream in the order of decoding; absent when one is not for plain bytes.
template <ObjectStore::Where where>
std::optional<std::vector<Filter>> ObjectStore::filters(const Node& stream)
{
    const auto child = [&](const Node& node, std::string_view key) -> Node {
        const Value* value = node.object->find(*node.value, key);
        if (!value) return {};
        return followIn<where>({node.object, value, node.owner});
    };
    // A single filter, or parameters, may stand without an array around it.
    const auto item = [&](const Node& node, std::size_t index) -> Node {
        if (node.kind() != Value::Kind::array) return node;
        if (index >= node.value->arraySize()) return {};
        return followIn<where>(
            {node.object, &node.object->element(*node.value, index), node.owner});
    };
    const Node names = child(stream, "Filter");
    const Node parameters = child(stream, "DecodeParms");
    std::size_t count = names.object ? 1 : 0;
    if (names.kind() == Value::Kind::array) count = names.value->arraySize();
    if (count > Limits::filters) return std::nullopt;

    std::vector<Filter> filters(count);
    for (std::size_t i = 0; i < count; ++i) {
        const Node name = item(names, i);
        const auto text = name.object ? name.object->name(*name.value) : std::nullopt;
        const auto kind = text ? filterKind(*text) : std::nullopt;
        if (!kind) return std::nullopt;
        filters[i].kind = *kind;
        const Node own = item(parameters, i);
        auto& predictor = filters[i].predictor;
        predictor.predictor = integer<where>(own, "Predictor").value_or(1);
        predictor.colors = integer<where>(own, "Colors").value_or(1);
        predictor.bitsPerComponent = integer<where>(own, "BitsPerComponent").value_or(8);
        predictor.columns = integer<where>(own, "Columns").value_or(1);
        filters[i].earlyChange = integer<where>(own, "EarlyChange").value_or(1) != 0;
    }
    return filters;
}

/// A stream's bytes straight from the file, if its length is right.
std::optional<Bytes> ObjectStore::plainBytes(const Node& stream, std::int64_t length,
                                             std::size_t limit)
{
    using namespace std::string_view_literals;
    constexpr std::size_t tail = 16; // for a line end and the keyword
    if (length < 0 || static_cast<std::uint64_t>(length) > limit) return std::nullopt;
    auto& file = m_file->bytes();
    std::uint64_t begin = stream.object->streamKeywordEnd();
    const auto lineEnd = file.at(begin);
    if (lineEnd.empty()) return std::nullopt;
    if (lineEnd[0] == std::byte{'\n'})
        begin += 1;
    else if (lineEnd.size() > 1 && lineEnd[0] == std::byte{'\r'} && lineEnd[1] == std::byte{'\n'})
        begin += 2;
    else
        return std::nullopt;
    const auto size = static_cast<std::size_t>(length);
    Bytes bytes(size + tail);
    bytes.resize(file.read(begin, bytes));
    if (bytes.size() < size) return std::nullopt;
    std::string_view behind(reinterpret_cast<const char*>(bytes.data()) + size,
                            bytes.size() - size);
    behind.remove_prefix(std::min(behind.find_first_not_of("\r\n "sv), behind.size()));
    if (!behind.starts_with("endstream")) return std::nullopt;
    bytes.resize(size);
    return bytes;
}

template <ObjectStore::Where where>
std::optional<Bytes> ObjectStore::undecoded(const Node& stream, std::size_t limit)
{
    const auto length = integer<where>(stream, "Length");
    if (length && !m_file->isEncrypted()) {
        if (auto bytes = plainBytes(stream, *length, limit)) return bytes;
    }
    // libqpdf looks the length up by itself, but must not unpack object streams for it.
    const Value* value = stream.object->find(*stream.value, "Length");
    const auto reference = value ? value->reference() : std::nullopt;
    if (reference && length) m_file->setInteger(*reference, *length);
    return m_file->streamBytes(stream.owner, limit);
}

template <ObjectStore::Where where>
std::optional<Bytes> ObjectStore::decoded(const Node& stream, std::size_t limit,
                                          StreamDecoder& decoder)
{
    if (stream.object->textSize() > Limits::streamDictionaryText) return std::nullopt;
    const auto chain = filters<where>(stream);
    if (!chain) return std::nullopt;
    auto raw = undecoded<where>(stream, std::min<std::uint64_t>(limit, decoder.budget()));
    if (!raw) return std::nullopt;
    return decoder.decode(*std::move(raw), *chain, limit);
}

SharedBytes ObjectStore::data(const Node& stream)
{
    const auto [known, isNew] = m_data.try_emplace(keyOf(stream.owner));
    if (!isNew) return known->second;
    if (auto bytes = decoded<Where::anywhere>(stream, Limits::streamBytes, m_programs))
        known->second = std::make_shared<const Bytes>(*std::move(bytes));
    return known->second;
}

} // namespace quillmark::PDF
