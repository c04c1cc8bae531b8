// The bytes of a PDF of ours, taken apart: each object that is a stream stands in them with its
// number, "obj" and its length.
#pragma once

#include "pdf/Inflater.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillmark::test {

class WrittenPDF {
public:
    explicit WrittenPDF(const std::vector<std::byte>& bytes)
        : m_text(reinterpret_cast<const char*>(bytes.data()), bytes.size())
    {
    }

    [[nodiscard]] const std::string& text() const { return m_text; }

    /// The dictionary of a stream, without the brackets around it.
    [[nodiscard]] std::string entries(unsigned object) const
    {
        const std::string_view whole = stream(object);
        return std::string(whole.substr(0, whole.find(">>stream\n")));
    }

    /// A stream's data, decompressed.
    [[nodiscard]] std::string data(unsigned object) const
    {
        constexpr std::string_view start = ">>stream\n";
        constexpr std::size_t limit = std::size_t{64} << 20U;
        const std::string_view whole = stream(object);
        const std::string_view raw = whole.substr(whole.find(start) + start.size());
        const auto bytes = PDF::Inflater().inflate(std::as_bytes(std::span(raw)), limit);
        return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
    }

    /// All objects without a stream, one behind the other.
    [[nodiscard]] std::string objects() const
    {
        std::string all;
        for (unsigned object = 1; object <= mostObjects; ++object)
            if (m_text.find(head(object)) != std::string::npos &&
                entries(object).starts_with("/Type/ObjStm"))
                all += data(object);
        return all;
    }

private:
    static constexpr unsigned mostObjects = 1000;

    [[nodiscard]] static std::string head(unsigned object)
    {
        return "\n" + std::to_string(object) + " 0 obj\n<<";
    }

    /// Up to the keyword behind the data.
    [[nodiscard]] std::string_view stream(unsigned object) const
    {
        const std::size_t found = m_text.find(head(object));
        EXPECT_NE(found, std::string::npos) << object;
        if (found == std::string::npos) return {};
        const std::string_view from = std::string_view(m_text).substr(found + head(object).size());
        return from.substr(0, from.find("\nendstream"));
    }

    std::string m_text;
};

} // namespace quillmark::test
