// Does to the saving of notes what disks, users and other programs do. Run by ../../scripts/faults
// and, with smaller numbers, by CTest.
//
// usage: faults kills ROUNDS | calls | disks | mutants COUNT | programs NOTES

#include "Faults.h"

#include <charconv>
#include <cstdio>
#include <exception>
#include <optional>
#include <string_view>

namespace {

using namespace quillmark;

std::optional<int> numberIn(std::string_view text)
{
    int number = 0;
    const char* const end = text.data() + text.size();
    const auto [last, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && last == end && number > 0 ? std::optional(number) : std::nullopt;
}

std::optional<faults::Tally> run(std::string_view what, std::optional<int> count)
{
    if (what == "kills" && count) return faults::kills(*count);
    if (what == "calls" && !count) return faults::failingCalls();
    if (what == "disks" && !count) return faults::fullDisks();
    if (what == "mutants" && count) return faults::mutants(*count);
    if (what == "programs" && count) return faults::twoPrograms(*count);
    return std::nullopt;
}

int report(std::string_view what, const faults::Tally& tally)
{
    constexpr int skipped = 77;
    constexpr std::size_t mostShown = 20;
    if (tally.isSkipped) {
        std::printf("%.*s: this system does not let it be tried\n", static_cast<int>(what.size()),
                    what.data());
        return skipped;
    }
    std::printf("%.*s: %d trials, %d of them reported as failed, %zu losses\n",
                static_cast<int>(what.size()), what.data(), tally.trials, tally.refused,
                tally.losses.size());
    for (const auto& remark : tally.remarks)
        std::printf("  %s\n", remark.c_str());
    for (std::size_t i = 0; i < tally.losses.size() && i < mostShown; ++i)
        std::printf("  LOST: %s\n", tally.losses[i].c_str());
    return tally.losses.empty() ? 0 : 1;
}

} // namespace

int main(int count, char** arguments)
{
    try {
        const std::string_view what = count > 1 ? arguments[1] : "";
        const auto number = count > 2 ? numberIn(arguments[2]) : std::nullopt;
        const auto tally = count > 3 ? std::nullopt : run(what, number);
        if (tally) return report(what, *tally);
        std::fputs("usage: faults kills ROUNDS | calls | disks | mutants COUNT | programs NOTES\n",
                   stderr);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "faults: %s\n", error.what());
    }
    return 2;
}
