#include "pdf/ParsedObject.h"

#include <compare>

namespace quillmark::PDF {

std::optional<std::int64_t> Value::integer() const
{
    if (m_kind != Kind::integer) return std::nullopt;
    return m_number;
}

std::optional<Reference> Value::reference() const
{
    if (m_kind != Kind::reference) return std::nullopt;
    return Reference{static_cast<std::uint32_t>(m_number), m_count};
}

std::size_t Value::arraySize() const
{
    return m_kind == Kind::array ? m_count : 0;
}

std::size_t Value::entryCount() const
{
    return m_kind == Kind::dictionary ? m_count : 0;
}

std::size_t ParsedObject::memory() const
{
    return sizeof(ParsedObject) + m_values.capacity() * sizeof(Value) + m_names.capacity();
}

std::optional<std::string_view> ParsedObject::name(const Value& value) const
{
    if (value.m_kind != Value::Kind::name) return std::nullopt;
    return std::string_view(m_names).substr(static_cast<std::size_t>(value.m_number),
                                            value.m_count);
}

const Value& ParsedObject::element(const Value& array, std::size_t index) const
{
    return m_values[static_cast<std::size_t>(array.m_number) + index];
}

std::string_view ParsedObject::key(const Value& dictionary, std::size_t index) const
{
    const Value& key = m_values[static_cast<std::size_t>(dictionary.m_number) + 2 * index];
    return std::string_view(m_names).substr(static_cast<std::size_t>(key.m_number), key.m_count);
}

const Value& ParsedObject::entry(const Value& dictionary, std::size_t index) const
{
    return m_values[static_cast<std::size_t>(dictionary.m_number) + 2 * index + 1];
}

const Value* ParsedObject::find(const Value& value, std::string_view wanted) const
{
    std::size_t low = 0;
    std::size_t high = value.entryCount();
    while (low < high) {
        const std::size_t middle = low + (high - low) / 2;
        const auto order = key(value, middle) <=> wanted;
        if (std::is_eq(order)) return &entry(value, middle);
        if (std::is_lt(order))
            low = middle + 1;
        else
            high = middle;
    }
    return nullptr;
}

std::uint32_t ParsedObject::position(const Value& value) const
{
    return &value == &m_root ? 0 : static_cast<std::uint32_t>(&value - m_values.data()) + 1;
}

} // namespace quillmark::PDF
