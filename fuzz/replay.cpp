// Runs a fuzz harness over files: every file in the folders named on the command line. The seeds'
// folder comes first and must hold some; a folder of findings may be missing.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::size_t replay(const std::filesystem::path& folder)
{
    std::size_t count = 0;
    if (!std::filesystem::is_directory(folder)) return count;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        std::ifstream file(entry.path(), std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
        ++count;
    }
    return count;
}

} // namespace

int main(int argc, char** argv)
{
    std::size_t count = 0;
    for (int i = 1; i < argc; ++i) {
        const std::size_t found = replay(argv[i]);
        if (i == 1 && found == 0) {
            std::fprintf(stderr, "no seeds in %s\n", argv[i]);
            return EXIT_FAILURE;
        }
        count += found;
    }
    std::printf("%zu inputs replayed\n", count);
    return EXIT_SUCCESS;
}
