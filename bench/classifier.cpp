// What judging one font costs, and writing it as JSON: a scan does both for every face it finds.

#include "assessment/Classifier.h"
#include "assessment/AppleFonts.h"
#include "assessment/LicenseKind.h"
#include "coding/JsonWriter.h"
#include "coding/RecordCoding.h"
#include "pdf/AuditRow.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace quillmark {
namespace {

constexpr std::size_t longLicense = 4000; // bytes; about the length of the OFL's whole text

/// Sentences in the manner of licences, which name none, to a length of `size` bytes.
std::string terms(std::size_t size)
{
    constexpr std::string_view sentence =
        "The licensee may install the font software on up to five devices in one location. Its "
        "reproduction or distribution in whole or in part, for any purpose, is not permitted "
        "without the prior written consent of the foundry.\n";
    std::string text;
    while (text.size() < size)
        text += sentence;
    text.resize(size);
    return text;
}

FontFacts fontWithoutLicense()
{
    FontFacts facts;
    facts.postScriptName = "ExampleSans-BoldItalic";
    facts.family = "Example Sans";
    facts.style = "Bold Italic";
    facts.fullName = "Example Sans Bold Italic";
    facts.copyright = "Copyright 2020 The Example Sans Project Authors (https://example.com/sans)";
    facts.trademark = "Example Sans is a trademark of the Example Foundry.";
    facts.manufacturer = "Example Foundry";
    facts.designer = "A. Designer";
    facts.vendorURL = "https://example.com";
    facts.os2 = OS2Info{.version = 4, .fsType = 0, .vendorID = "EXMP"};
    facts.filePath = "/usr/share/fonts/truetype/example/ExampleSans-BoldItalic.ttf";
    facts.format = "TrueType";
    facts.origin = FontOrigin::folder;
    return facts;
}

FontFacts shortOFL()
{
    FontFacts facts = fontWithoutLicense();
    facts.licenseDescription = "This Font Software is licensed under the SIL Open Font License, "
                               "Version 1.1. This license is available with a FAQ at: "
                               "https://scripts.sil.org/OFL";
    facts.licenseURL = "https://scripts.sil.org/OFL";
    return facts;
}

/// With a copyright sign, as most have one: its texts are no longer plain ASCII.
FontFacts shortTerms()
{
    FontFacts facts = fontWithoutLicense();
    facts.copyright = "© 2020 Example Foundry. All rights reserved.";
    facts.licenseDescription = terms(200);
    facts.licenseURL = "https://example.com/eula";
    return facts;
}

FontFacts longOFL()
{
    FontFacts facts = fontWithoutLicense();
    facts.licenseDescription =
        "This Font Software is licensed under the SIL Open Font License, Version 1.1.\n" +
        terms(longLicense);
    return facts;
}

FontFacts longApache()
{
    FontFacts facts = fontWithoutLicense();
    facts.licenseDescription = "Apache License, Version 2.0\n" + terms(longLicense);
    return facts;
}

FontFacts longTerms()
{
    FontFacts facts = fontWithoutLicense();
    facts.licenseDescription = terms(longLicense);
    return facts;
}

/// With a copyright sign amid a long text.
FontFacts longTermsBeyondAscii()
{
    FontFacts facts = fontWithoutLicense();
    facts.licenseDescription = "© 2020 Example Foundry\n" + terms(longLicense);
    return facts;
}

void detectingTheLicense(benchmark::State& state, const FontFacts& facts)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(detectLicense(facts));
}

void findingAppleFonts(benchmark::State& state, const FontFacts& facts)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(AppleFonts::origin(facts));
}

void assessing(benchmark::State& state, const FontFacts& facts)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(Classifier::assess(facts));
}

void encodingARow(benchmark::State& state, const FontFacts& facts)
{
    const AuditRow row = auditRow(facts);
    std::string output;
    for (auto _ : state) {
        output.clear();
        JsonWriter writer(output);
        encode(writer, row);
        benchmark::DoNotOptimize(output.data());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(output.size()) * state.iterations());
}

void decodingARow(benchmark::State& state, const FontFacts& facts)
{
    std::string json;
    JsonWriter writer(json);
    encode(writer, auditRow(facts));
    for (auto _ : state)
        benchmark::DoNotOptimize(decode<AuditRow>(json));
    state.SetBytesProcessed(static_cast<std::int64_t>(json.size()) * state.iterations());
}

BENCHMARK_CAPTURE(detectingTheLicense, withoutLicense, fontWithoutLicense());
BENCHMARK_CAPTURE(detectingTheLicense, shortOFL, shortOFL());
BENCHMARK_CAPTURE(detectingTheLicense, shortTerms, shortTerms());
BENCHMARK_CAPTURE(detectingTheLicense, longOFL, longOFL());
BENCHMARK_CAPTURE(detectingTheLicense, longApache, longApache());
BENCHMARK_CAPTURE(detectingTheLicense, longTerms, longTerms());
BENCHMARK_CAPTURE(detectingTheLicense, longTermsBeyondAscii, longTermsBeyondAscii());

BENCHMARK_CAPTURE(findingAppleFonts, plainCopyright, fontWithoutLicense());
BENCHMARK_CAPTURE(findingAppleFonts, copyrightSign, shortTerms());

BENCHMARK_CAPTURE(assessing, withoutLicense, fontWithoutLicense());
BENCHMARK_CAPTURE(assessing, shortOFL, shortOFL());
BENCHMARK_CAPTURE(assessing, shortTerms, shortTerms());
BENCHMARK_CAPTURE(assessing, longOFL, longOFL());
BENCHMARK_CAPTURE(assessing, longApache, longApache());
BENCHMARK_CAPTURE(assessing, longTerms, longTerms());
BENCHMARK_CAPTURE(assessing, longTermsBeyondAscii, longTermsBeyondAscii());

BENCHMARK_CAPTURE(encodingARow, shortOFL, shortOFL());
BENCHMARK_CAPTURE(encodingARow, longTerms, longTerms());
BENCHMARK_CAPTURE(decodingARow, shortOFL, shortOFL());
BENCHMARK_CAPTURE(decodingARow, longTerms, longTerms());

} // namespace
} // namespace quillmark
