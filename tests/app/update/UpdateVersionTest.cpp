#include "update/UpdateVersion.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace quillmark {
namespace {

struct Pair {
    const char* left;
    const char* order; // "<" or "="
    const char* right;
};

constexpr std::array pairs{
    Pair{"1.0", "=", "1.0"},
    Pair{"1.0", "=", "1.0.0"},
    Pair{"1", "=", "1.0.0.0"},
    Pair{"", "=", "0"},
    Pair{"01.002", "=", "1.2"},
    Pair{"1.0-rc1", "=", "1.0"},
    Pair{"1.0-9", "=", "1.0-2"},
    Pair{"1.0 b3", "=", "1.0b3"},
    Pair{"1,2", "=", "1.2"},
    Pair{"1.0", "<", "1.0.1"},
    Pair{"1.9", "<", "1.10"},
    Pair{"1.99", "<", "2"},
    Pair{"9", "<", "10"},
    Pair{"1.0b3", "<", "1.0"},
    Pair{"1.0b3", "<", "1.0.0"},
    Pair{"1.0b3", "<", "1.0b4"},
    Pair{"1.0b9", "<", "1.0b10"},
    Pair{"1.0a9", "<", "1.0b1"},
    Pair{"1.0b", "<", "1.0b1"},
    Pair{"1.0.b", "<", "1.0.1"},
    Pair{"0.9", "<", "1.0b1"},
    Pair{"2.0b1-5", "<", "2.0-1"},
    Pair{"v1.1", "<", "v1.2"},
    Pair{"99999999999999999999998", "<", "99999999999999999999999"},
    Pair{"9999999999", "<", "10000000000000000000000"},
    Pair{"20240101", "<", "20240102"},
};

TEST(UpdateVersion, NumbersLettersAndWhatIsMissingHaveTheirOrder)
{
    for (const Pair& pair : pairs) {
        const auto order = compareVersions(pair.left, pair.right);
        const bool equal = std::string(pair.order) == "=";
        EXPECT_EQ(order, equal ? std::weak_ordering::equivalent : std::weak_ordering::less)
            << pair.left << ' ' << pair.order << ' ' << pair.right;
        EXPECT_EQ(compareVersions(pair.right, pair.left),
                  equal ? std::weak_ordering::equivalent : std::weak_ordering::greater)
            << pair.right << " against " << pair.left;
    }
}

TEST(UpdateVersion, TheOrderNeverTurnsInACircle)
{
    std::vector<std::string> versions;
    for (const Pair& pair : pairs)
        versions.insert(versions.end(), {pair.left, pair.right});
    for (const std::string& a : versions)
        for (const std::string& b : versions)
            for (const std::string& c : versions)
                if (compareVersions(a, b) <= 0 && compareVersions(b, c) <= 0) {
                    EXPECT_TRUE(compareVersions(a, c) <= 0) << a << ", " << b << ", " << c;
                }
}

} // namespace
} // namespace quillmark
