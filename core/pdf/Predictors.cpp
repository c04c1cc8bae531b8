#include "pdf/Predictors.h"

#include <algorithm>
#include <cstdlib>

namespace quillmark::PDF {
namespace {

constexpr std::int64_t maximumColors = 32;
constexpr std::int64_t maximumColumns = std::int64_t{1} << 24;

struct Row {
    std::size_t bytes{}; // of one row, without the PNG tag
    std::size_t pixel{}; // bytes between a byte and its left neighbour, at least 1
    unsigned bits{};     // per component
    std::size_t colors{};
    std::size_t columns{};
};

unsigned value(std::byte byte)
{
    return std::to_integer<unsigned>(byte);
}

/// The neighbour that is nearest to left + above - aboveLeft (PNG, 9.4).
unsigned paeth(unsigned left, unsigned above, unsigned aboveLeft)
{
    const int estimate = static_cast<int>(left + above) - static_cast<int>(aboveLeft);
    const int toLeft = std::abs(estimate - static_cast<int>(left));
    const int toAbove = std::abs(estimate - static_cast<int>(above));
    const int toAboveLeft = std::abs(estimate - static_cast<int>(aboveLeft));
    if (toLeft <= toAbove && toLeft <= toAboveLeft) return left;
    return toAbove <= toAboveLeft ? above : aboveLeft;
}

/// Every row has a tag of its own, whatever the predictor's number says.
void undoPNG(const Row& row, Bytes& data)
{
    std::size_t out = 0;   // where the current row goes: rows move up over the tags
    std::size_t above = 0; // where the row above begins
    bool hasAbove = false;
    for (std::size_t in = 0; in + 1 < data.size();) {
        const unsigned tag = value(data[in++]);
        const std::size_t length = std::min(row.bytes, data.size() - in);
        for (std::size_t i = 0; i < length; ++i) {
            const unsigned left = i >= row.pixel ? value(data[out + i - row.pixel]) : 0;
            const unsigned up = hasAbove ? value(data[above + i]) : 0;
            const unsigned upLeft =
                hasAbove && i >= row.pixel ? value(data[above + i - row.pixel]) : 0;
            unsigned predicted = 0;
            if (tag == 1)
                predicted = left;
            else if (tag == 2)
                predicted = up;
            else if (tag == 3)
                predicted = (left + up) / 2;
            else if (tag == 4)
                predicted = paeth(left, up, upLeft);
            data[out + i] = static_cast<std::byte>(value(data[in + i]) + predicted);
        }
        above = out;
        hasAbove = true;
        out += length;
        in += length;
    }
    data.resize(out);
}

/// Each component is the difference to the same component of the pixel on its left.
void undoTIFF(const Row& row, Bytes& data)
{
    const unsigned mask = (1U << row.bits) - 1U;
    const auto get = [&](std::size_t start, std::size_t component) {
        const std::size_t bit = component * row.bits;
        if (row.bits == 16)
            return value(data[start + bit / 8]) * 256 + value(data[start + bit / 8 + 1]);
        return (value(data[start + bit / 8]) >> (8 - row.bits - bit % 8)) & mask;
    };
    const auto set = [&](std::size_t start, std::size_t component, unsigned to) {
        const std::size_t bit = component * row.bits;
        std::byte& byte = data[start + bit / 8];
        if (row.bits == 16) {
            byte = static_cast<std::byte>(to >> 8U);
            data[start + bit / 8 + 1] = static_cast<std::byte>(to);
        } else {
            const auto shift = static_cast<unsigned>(8 - row.bits - bit % 8);
            byte = static_cast<std::byte>((value(byte) & ~(mask << shift)) | (to << shift));
        }
    };
    for (std::size_t start = 0; start < data.size(); start += row.bytes) {
        const std::size_t whole = std::min(row.bytes, data.size() - start) * 8 / row.bits;
        const std::size_t components = std::min(row.colors * row.columns, whole);
        for (std::size_t i = row.colors; i < components; ++i)
            set(start, i, (get(start, i) + get(start, i - row.colors)) & mask);
    }
}

} // namespace

bool undoPredictor(const Predictor& predictor, Bytes& data)
{
    if (predictor.predictor == 1) return true;
    const bool png = predictor.predictor >= 10 && predictor.predictor <= 15;
    const auto bits = predictor.bitsPerComponent;
    if (!png && predictor.predictor != 2) return false;
    if (bits != 1 && bits != 2 && bits != 4 && bits != 8 && bits != 16) return false;
    if (predictor.colors < 1 || predictor.colors > maximumColors) return false;
    if (predictor.columns < 1 || predictor.columns > maximumColumns) return false;

    Row row;
    row.bits = static_cast<unsigned>(bits);
    row.colors = static_cast<std::size_t>(predictor.colors);
    row.columns = static_cast<std::size_t>(predictor.columns);
    row.pixel = std::max<std::size_t>(1, row.colors * row.bits / 8);
    row.bytes = (row.colors * row.bits * row.columns + 7) / 8;
    if (png)
        undoPNG(row, data);
    else
        undoTIFF(row, data);
    return true;
}

} // namespace quillmark::PDF
