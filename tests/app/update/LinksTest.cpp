#include "update/Links.h"

#include <gtest/gtest.h>

#include <array>

namespace quillmark {
namespace {

struct Address {
    const char* text;
    bool opens;
};

constexpr std::array addresses{
    Address{"https://example.org/quillmark", true},
    Address{"HTTPS://example.org", true},
    Address{" https://example.org/\n", true},
    Address{"http://127.0.0.1:8080/a", true},
    Address{"http://127.9.8.7/a", true},
    Address{"http://localhost/a", true},
    Address{"http://example.org/", false},
    Address{"http://127.example.org/", false},
    Address{"http://127.0.0.1.example.org/", false},
    Address{"http://localhost.example.org/", false},
    Address{"https://user@example.org/", false},
    Address{"http://localhost@example.org/", false},
    Address{"https:///a", false},
    Address{"ftp://example.org/", false},
    Address{"file:///etc/passwd", false},
    Address{"javascript:alert(1)", false},
    Address{"example.org", false},
    Address{"", false},
};

TEST(Links, OnlySecureOnesAndThoseOfThisComputerOpen)
{
    for (const Address& address : addresses)
        EXPECT_EQ(pageAddress(address.text).has_value(), address.opens) << address.text;
}

TEST(Links, KeepTheirAddress)
{
    EXPECT_EQ(pageAddress("https://example.org/a?b=c#d"), "https://example.org/a?b=c#d");
}

} // namespace
} // namespace quillmark
