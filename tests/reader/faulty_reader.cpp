// A reader program that reads like the real one, except files with certain words in their names.

#include "reader/Descriptors.h"
#include "reader/Service.h"

#include <array>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

namespace {

using quillmark::reader::Begun;
using quillmark::reader::Descriptors::channel;

Begun* begun; // what the parent sees

void takeAllMemory()
{
    constexpr std::size_t piece = std::size_t{64} << 20U;
    std::vector<std::vector<char>> pieces;
    for (;;)
        pieces.emplace_back(piece);
}

volatile std::size_t deepest = std::numeric_limits<std::size_t>::max();

// NOLINTNEXTLINE(misc-no-recursion): that is what it is for
std::size_t recurse(std::size_t depth)
{
    if (depth == deepest) return depth;
    std::array<volatile char, 4096> frame{};
    frame[depth % frame.size()] = 1;
    return recurse(depth + 1) + static_cast<std::size_t>(frame[0]);
}

[[noreturn]] void loop()
{
    for (;;)
        static_cast<void>(::getppid());
}

void send(std::string_view bytes)
{
    static_cast<void>(!::write(channel, bytes.data(), bytes.size()));
}

struct Fault {
    std::string_view word;
    void (*happen)();
};

constexpr std::array faults{
    Fault{"crash", [] { static_cast<void>(std::raise(SIGSEGV)); }},
    Fault{"memory", takeAllMemory},
    Fault{"overflow", [] { std::exit(static_cast<int>(recurse(0))); }},
    Fault{"silent", loop},
    Fault{"garbage", [] { send(std::string(1000, '\x5A')); }},
    Fault{"endless-message",
          [] {
              using namespace std::string_view_literals;
              send("\0\0\0\0\xFF\xFF\xFF\xFF"sv);
              loop();
          }},
    Fault{"misnamed",
          [] {
              begun->store(std::numeric_limits<std::uint64_t>::max());
              std::abort();
          }},
    Fault{"forgetful",
          [] {
              begun->store(0);
              std::abort();
          }},
    Fault{"talkative",
          [] {
              // Answers nobody has asked for: empty ends.
              using namespace std::string_view_literals;
              for (int i = 0; i < 100; ++i)
                  send("\x03\0\0\0\4\0\0\0\0\0\0\0"sv);
          }},
};

void happenOver(std::string_view path)
{
    const std::string_view name = path.substr(path.rfind('/') + 1);
    for (const Fault& fault : faults)
        if (name.find(fault.word) != std::string_view::npos) fault.happen();
}

} // namespace

int main()
{
    using namespace quillmark;
    void* shared = ::mmap(nullptr, sizeof(Begun), PROT_READ | PROT_WRITE, MAP_SHARED,
                          reader::Descriptors::begun, 0);
    if (shared == MAP_FAILED) return EXIT_FAILURE;
    begun = static_cast<Begun*>(shared);
    const reader::FileReading ordinary = reader::ordinaryReading();
    reader::FileReading faulty = ordinary;
    faulty.faces = [&](const std::string& path, Faces which) {
        happenOver(path);
        return ordinary.faces(path, which);
    };
    faulty.installedFiles = []() -> std::vector<InstalledFile> { std::abort(); };
    faulty.document = [&](const std::filesystem::path& path) {
        happenOver(path.native());
        return ordinary.document(path);
    };
    return reader::runReader(faulty);
}
