// Saving over files of notes that were changed at random: what they said must still be on the disk.

#include "Faults.h"

#include "Saver.h"
#include "mutants/Mutation.h"
#include "support/TemporaryFolder.h"
#include "text/IsoDate.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillmark::faults {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

constexpr std::string_view whole = R"({
  "format": 2,
  "notes": {
    "Brook-Bold": {
      "attachment": "0A1B2C3D-a.pdf", "attachmentName": "a.pdf", "boughtFrom": "A \"shop\"",
      "license": "web", "seats": [1, -2, 0.5e3, {"a": null, "b": [true, "x"]}],
      "text": "one\ntwo é ü 例 \u00e9", "updated": "2026-03-14T10:26:53+01:00", "url": ""
    },
    "Cedar": {
      "boughtFrom": "", "license": "desktop", "text": "Two seats.",
      "updated": "2026-01-02T03:04:05Z", "url": "https://example.org/1"
    },
    "Dogwood": {
      "attachment": null, "boughtFrom": "x", "license": "notSet", "text": "",
      "updated": "2026-01-02T03:04:05Z", "url": ""
    }
  },
  "zoom": {"window": [1, 2, 3]}
}
)";

const std::array<std::string, 16> words{
    "{",
    "}",
    "[",
    "]",
    ",",
    ":",
    "\"",
    "\\u0000",
    "\\ud800",
    "null",
    "1e400",
    "0.12345678901234567890",
    "\"notes\": {}",
    "\"text\": \"twice\"",
    "\xC3\x28",
    "\xEF\xBB\xBF",
};

std::string mutant(std::uint64_t number)
{
    fuzz::Random random(number + 1);
    if (random.oneIn(2)) {
        // Most of what is done to a text leaves no JSON; this mostly does.
        std::string text(whole);
        text[random.below(text.size())] = static_cast<char>(' ' + random.below(256 - ' '));
        return text;
    }
    const auto bytes = std::as_bytes(std::span(whole));
    const auto changed =
        fuzz::mutated(random, test::Bytes(bytes.begin(), bytes.end()), bytes, words);
    return {reinterpret_cast<const char*>(changed.data()), changed.size()};
}

/// The value of a text that says everything once, in well-formed UTF-8.
std::optional<json> plainValue(const std::string& text)
{
    std::size_t met = 0;
    const auto count = [&met](int /*depth*/, json::parse_event_t event, json& /*parsed*/) {
        met += event == json::parse_event_t::key ? 1 : 0;
        return true;
    };
    if (text.find('\0') != std::string::npos) return std::nullopt;
    json value = json::parse(text, count, false);
    if (value.is_discarded()) return std::nullopt;
    std::size_t kept = 0;
    std::vector<const json*> rest{&value};
    while (!rest.empty()) {
        const json& next = *rest.back();
        rest.pop_back();
        if (next.is_object()) kept += next.size();
        if (next.is_structured())
            for (const json& part : next)
                rest.push_back(&part);
    }
    return kept == met ? std::optional(value) : std::nullopt;
}

/// Whether a note says the same, whoever wrote it.
bool saysTheSame(const json& one, const json& other)
{
    json first = one;
    json second = other;
    for (json* note : {&first, &second}) {
        if (!note->is_object()) return false;
        for (const char* name : {"attachment", "attachmentName"})
            if (note->contains(name) && (*note)[name].is_null()) note->erase(name);
        if (!note->contains("updated") || !(*note)["updated"].is_string()) return false;
        const auto time = parseIsoDate((*note)["updated"].get<std::string>());
        if (!time) return false;
        (*note)["updated"] = isoDate(*time);
    }
    return first == second;
}

/// Whether all of `former` but the note that was edited is in `later`.
bool isIn(const json& former, const json& later, const std::string& edited)
{
    for (const auto& [key, value] : former.items())
        if (key != "notes" && (!later.contains(key) || later[key] != value)) return false;
    for (const auto& [key, note] : former["notes"].items())
        if (key != edited &&
            (!later["notes"].contains(key) || !saysTheSame(note, later["notes"][key])))
            return false;
    return true;
}

bool isKept(const fs::path& folder, const std::string& bytes)
{
    return std::ranges::any_of(fs::directory_iterator(folder), [&](const auto& entry) {
        return entry.is_regular_file() && contentOf(entry.path()) == bytes;
    });
}

} // namespace

Tally mutants(int count)
{
    Tally tally;
    int aside = 0;
    int carried = 0;
    const std::string edited = "Mine";
    for (; tally.trials < count; ++tally.trials) {
        const test::TemporaryFolder folder(inMemory());
        const std::string text = mutant(static_cast<std::uint64_t>(tally.trials));
        folder.write("notes.json", text);
        {
            Saver saver(folder.path());
            saver.type(edited, "typed");
            if (const auto failure = saver.save()) {
                ++tally.refused;
                if (contentOf(notesFile(folder.path())) != text)
                    tally.lose("mutant " + std::to_string(tally.trials) +
                               " was changed by a save that failed: " + *failure);
                continue;
            }
        }
        const auto later = contentOf(notesFile(folder.path())).value_or("");
        const json saved = json::parse(later, nullptr, false);
        const std::string name = "mutant " + std::to_string(tally.trials);
        if (saved.is_discarded() || !saved.contains("notes") || !saved["notes"].contains(edited)) {
            tally.lose(name + " is not followed by the notes that were saved");
            continue;
        }
        if (isKept(folder.path(), text)) {
            ++aside;
            continue;
        }
        ++carried;
        const auto former = plainValue(text);
        if (!former || !former->contains("notes") || !(*former)["notes"].is_object() ||
            !isIn(*former, saved, edited))
            tally.lose(name + " said something that is gone");
    }
    tally.remarks.push_back(std::to_string(aside) + " kept under another name, " +
                            std::to_string(carried) + " read whole and carried along");
    if (count >= 100 && (aside == 0 || carried == 0)) tally.lose("all mutants are of one kind");
    return tally;
}

} // namespace quillmark::faults
