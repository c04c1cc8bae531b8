#include "assessment/LicenseKind.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace quillmark {
namespace {

/// The fields that are read; the others are empty.
struct Fields {
    std::optional<std::string> copyright{};
    std::optional<std::string> trademark{};
    std::optional<std::string> licenseDescription{};
    std::optional<std::string> licenseURL{};
};

LicenseKind detect(Fields fields)
{
    FontFacts facts;
    facts.copyright = std::move(fields.copyright);
    facts.trademark = std::move(fields.trademark);
    facts.licenseDescription = std::move(fields.licenseDescription);
    facts.licenseURL = std::move(fields.licenseURL);
    return detectLicense(facts);
}

Fields described(std::string description)
{
    return {.licenseDescription = std::move(description)};
}

Fields withURL(std::string url)
{
    return {.licenseURL = std::move(url)};
}

Fields withCopyright(std::string copyright)
{
    return {.copyright = std::move(copyright)};
}

Fields withTrademark(std::string trademark)
{
    return {.trademark = std::move(trademark)};
}

struct KindRow {
    LicenseKind kind;
    std::string_view raw;
    std::string_view label;
    bool open;
};

constexpr auto kinds = std::to_array<KindRow>({
    {LicenseKind::ofl, "ofl", "SIL Open Font License", true},
    {LicenseKind::apache, "apache", "Apache License", true},
    {LicenseKind::ufl, "ufl", "Ubuntu Font Licence", true},
    {LicenseKind::mit, "mit", "MIT License", true},
    {LicenseKind::publicDomain, "publicDomain", "Public domain / CC0", true},
    {LicenseKind::bitstreamVera, "bitstreamVera", "Bitstream Vera license", true},
    {LicenseKind::gpl, "gpl", "GNU GPL", false},
    {LicenseKind::named, "named", "Own license terms", false},
    {LicenseKind::none, "none", "No license text", false},
});

class LicenseKinds : public testing::TestWithParam<KindRow> {};

TEST_P(LicenseKinds, HasItsLabel)
{
    EXPECT_EQ(label(GetParam().kind), GetParam().label);
}

TEST_P(LicenseKinds, IsOpenOrNot)
{
    EXPECT_EQ(isOpen(GetParam().kind), GetParam().open);
}

TEST_P(LicenseKinds, IsStoredByItsRawValue)
{
    EXPECT_EQ(rawValue(GetParam().kind), GetParam().raw);
    EXPECT_EQ(fromRawValue<LicenseKind>(GetParam().raw), GetParam().kind);
}

INSTANTIATE_TEST_SUITE_P(LicenseKind, LicenseKinds, testing::ValuesIn(kinds),
                         [](const auto& test) { return std::string(test.param.raw); });

TEST(LicenseKind, ThereAreNineInThisOrder)
{
    ASSERT_EQ(allCases<LicenseKind>.size(), 9U);
    for (std::size_t i = 0; i < kinds.size(); ++i)
        EXPECT_EQ(allCases<LicenseKind>[i], kinds[i].kind);
}

TEST(LicenseKind, AnUnknownRawValueIsNoKind)
{
    EXPECT_EQ(fromRawValue<LicenseKind>("OFL"), std::nullopt);
    EXPECT_EQ(fromRawValue<LicenseKind>("lgpl"), std::nullopt);
    EXPECT_EQ(fromRawValue<LicenseKind>(""), std::nullopt);
}

struct NeedleRow {
    std::string_view name;
    std::string_view needle;
    LicenseKind kind;
    LicenseKind inNotices; // what the needle gives in a copyright or trademark line
};

constexpr auto needles = std::to_array<NeedleRow>({
    {"OpenFontLicense", "open font license", LicenseKind::ofl, LicenseKind::ofl},
    {"OpenFontLicence", "open font licence", LicenseKind::ofl, LicenseKind::ofl},
    {"SilScriptsAddress", "scripts.sil.org/ofl", LicenseKind::ofl, LicenseKind::ofl},
    {"OflSiteAddress", "openfontlicense.org", LicenseKind::ofl, LicenseKind::ofl},
    {"SilOfl", "sil ofl", LicenseKind::ofl, LicenseKind::ofl},
    {"OflHyphenVersion", "ofl-1.1", LicenseKind::ofl, LicenseKind::ofl},
    {"OflSpaceVersion", "ofl 1.1", LicenseKind::ofl, LicenseKind::ofl},
    {"ApacheLicense", "apache license", LicenseKind::apache, LicenseKind::apache},
    {"ApacheAddress", "apache.org/licenses", LicenseKind::apache, LicenseKind::apache},
    {"ApacheIdentifier", "apache-2.0", LicenseKind::apache, LicenseKind::apache},
    {"UbuntuFontLicence", "ubuntu font licence", LicenseKind::ufl, LicenseKind::ufl},
    {"UbuntuFontLicense", "ubuntu font license", LicenseKind::ufl, LicenseKind::ufl},
    {"BitstreamVera", "bitstream vera", LicenseKind::bitstreamVera, LicenseKind::none},
    {"GnomeFontsAddress", "gnome.org/fonts", LicenseKind::bitstreamVera, LicenseKind::none},
    {"MitLicense", "mit license", LicenseKind::mit, LicenseKind::none},
    {"MitAddress", "opensource.org/licenses/mit", LicenseKind::mit, LicenseKind::none},
    {"PublicDomain", "public domain", LicenseKind::publicDomain, LicenseKind::none},
    {"CC0", "cc0", LicenseKind::publicDomain, LicenseKind::none},
    {"PublicDomainAddress", "creativecommons.org/publicdomain", LicenseKind::publicDomain,
     LicenseKind::none},
    {"GnuGeneralPublicLicense", "gnu general public license", LicenseKind::gpl, LicenseKind::none},
    {"GplAddress", "gnu.org/licenses/gpl", LicenseKind::gpl, LicenseKind::none},
    {"Gpl", "gpl", LicenseKind::gpl, LicenseKind::none},
});

class Needles : public testing::TestWithParam<NeedleRow> {
protected:
    std::string needle{GetParam().needle};
};

TEST_P(Needles, DecidesInTheDescription)
{
    EXPECT_EQ(detect(described(needle)), GetParam().kind);
    EXPECT_EQ(detect(described("Under the " + needle + ", see there.")), GetParam().kind);
}

TEST_P(Needles, DecidesInTheURL)
{
    EXPECT_EQ(detect(withURL("https://www." + needle + "/index.html")), GetParam().kind);
}

TEST_P(Needles, DecidesInCapitals)
{
    std::string capitals = needle;
    for (char& character : capitals)
        if (character >= 'a' && character <= 'z') character = static_cast<char>(character - 32);
    EXPECT_EQ(detect(described(capitals)), GetParam().kind);
}

TEST_P(Needles, DecidesInNoticesOnlyForTheFirstLicences)
{
    EXPECT_EQ(detect(withCopyright("Copyright 2020, " + needle)), GetParam().inNotices);
    EXPECT_EQ(detect(withTrademark(needle + " is a trademark")), GetParam().inNotices);
}

TEST_P(Needles, DecidesNothingWithoutItsLastCharacter)
{
    EXPECT_EQ(detect(described(needle.substr(0, needle.size() - 1))), LicenseKind::named);
}

TEST_P(Needles, DecidesNothingWhenCutByALineEnd)
{
    // Its last character then stands in the next field.
    EXPECT_EQ(detect({.licenseDescription = needle.substr(0, needle.size() - 1),
                      .licenseURL = needle.substr(needle.size() - 1)}),
              LicenseKind::named);
}

INSTANTIATE_TEST_SUITE_P(LicenseKind, Needles, testing::ValuesIn(needles),
                         [](const auto& test) { return std::string(test.param.name); });

struct TextRow {
    std::string_view name;
    std::string_view description;
    LicenseKind kind;
};

class Precedence : public testing::TestWithParam<TextRow> {};

TEST_P(Precedence, TheEarlierLicenceWins)
{
    EXPECT_EQ(detect(described(std::string(GetParam().description))), GetParam().kind);
}

INSTANTIATE_TEST_SUITE_P(
    LicenseKind, Precedence,
    testing::ValuesIn(std::to_array<TextRow>({
        {"OflOverApache", "Apache License or Open Font License", LicenseKind::ofl},
        {"OflOverUbuntu", "Ubuntu Font Licence or OFL 1.1", LicenseKind::ofl},
        {"OflOverVera", "Bitstream Vera, changes under the SIL OFL", LicenseKind::ofl},
        {"OflOverMit", "MIT License or ofl-1.1", LicenseKind::ofl},
        {"OflOverPublicDomain", "CC0 or OFL-1.1", LicenseKind::ofl},
        {"OflOverGpl", "GPL or Open Font License", LicenseKind::ofl},
        {"ApacheOverUbuntu", "Ubuntu Font Licence or Apache-2.0", LicenseKind::apache},
        {"ApacheOverUbuntuAddress", "ubuntu.com/font-licence or Apache-2.0", LicenseKind::apache},
        {"ApacheOverVera", "Bitstream Vera or Apache-2.0", LicenseKind::apache},
        {"ApacheOverMit", "MIT License or Apache License", LicenseKind::apache},
        {"ApacheOverPublicDomain", "CC0 or Apache-2.0", LicenseKind::apache},
        {"ApacheOverGpl", "GPL or Apache-2.0", LicenseKind::apache},
        {"UbuntuOverVera", "Bitstream Vera or Ubuntu Font Licence", LicenseKind::ufl},
        {"UbuntuOverMit", "MIT License or Ubuntu Font License", LicenseKind::ufl},
        {"UbuntuOverGpl", "GPL or Ubuntu Font License", LicenseKind::ufl},
        {"UbuntuAddressOverVera", "Bitstream Vera; ubuntu.com/font-licence", LicenseKind::ufl},
        {"UbuntuAddressOverMit", "MIT License; ubuntu.com/font-licence", LicenseKind::ufl},
        {"UbuntuAddressOverGpl", "GPL; ubuntu.com/font-licence", LicenseKind::ufl},
        {"VeraOverMit", "MIT License for parts, Bitstream Vera", LicenseKind::bitstreamVera},
        {"VeraOverPublicDomain", "Bitstream Vera; changes are in the public domain",
         LicenseKind::bitstreamVera},
        {"VeraOverGpl", "GPL; Bitstream Vera", LicenseKind::bitstreamVera},
        {"MitOverPublicDomain", "Public domain or MIT License", LicenseKind::mit},
        {"MitOverGpl", "GPL or MIT License", LicenseKind::mit},
        {"PublicDomainOverGpl", "GPL or public domain", LicenseKind::publicDomain},
        {"GplOverOwnTerms", "Our terms, and the GPL", LicenseKind::gpl},
    })),
    [](const auto& test) { return std::string(test.param.name); });

TEST(LicenseKind, ANoticeNamingAnEarlierLicenceBeatsTheLicenceFields)
{
    EXPECT_EQ(detect({.copyright = "SIL OFL", .licenseDescription = "Apache License"}),
              LicenseKind::ofl);
    EXPECT_EQ(detect({.copyright = "Apache-2.0", .licenseDescription = "MIT License"}),
              LicenseKind::apache);
    EXPECT_EQ(detect({.trademark = "Ubuntu Font Licence", .licenseDescription = "GPL"}),
              LicenseKind::ufl);
}

TEST(LicenseKind, AnOflFontThatMentionsApacheInItsCopyrightIsOfl)
{
    EXPECT_EQ(detect({.copyright = "Parts under the Apache License",
                      .licenseDescription = "SIL Open Font License"}),
              LicenseKind::ofl);
}

TEST(LicenseKind, UbuntuAndFontLicenceMayStandInDifferentFieldsAndInAnyOrder)
{
    EXPECT_EQ(detect({.trademark = "Ubuntu is a trademark", .licenseURL = "/font-licence"}),
              LicenseKind::ufl);
    EXPECT_EQ(detect({.copyright = "font-licence of Ubuntu"}), LicenseKind::ufl);
}

TEST(LicenseKind, UbuntuAloneAndFontLicenceAloneAreOwnTerms)
{
    EXPECT_EQ(detect(described("Made for Ubuntu")), LicenseKind::named);
    EXPECT_EQ(detect(withURL("https://example.com/font-licence")), LicenseKind::named);
}

TEST(LicenseKind, WordsOfDifferentFieldsDoNotJoinIntoOneName)
{
    EXPECT_EQ(detect({.licenseDescription = "Open Font", .licenseURL = "License"}),
              LicenseKind::named);
    EXPECT_EQ(detect({.copyright = "License", .licenseDescription = "Apache "}),
              LicenseKind::named);
    EXPECT_EQ(detect({.copyright = "SIL", .trademark = "OFL"}), LicenseKind::none);
}

TEST(LicenseKind, TextOutsideAsciiIsLoweredToo)
{
    EXPECT_EQ(detect(withCopyright("© 2020 ÉCOLE, SIL OPEN FONT LICENSE")), LicenseKind::ofl);
    EXPECT_EQ(detect(described("“PUBLIC DOMAIN”")), LicenseKind::publicDomain);
}

TEST(LicenseKind, ADottedCapitalIIsNoPlainI)
{
    EXPECT_EQ(detect(described("MİT LİCENSE")), LicenseKind::named);
}

TEST(LicenseKind, ALicenceDeepInALongTextIsFound)
{
    const std::string terms(100'000, 'x');
    EXPECT_EQ(detect(described(terms + " MIT License")), LicenseKind::mit);
    EXPECT_EQ(detect(described(terms)), LicenseKind::named);
}

TEST(LicenseKind, NoFieldsAtAllIsNone)
{
    EXPECT_EQ(detect({}), LicenseKind::none);
}

TEST(LicenseKind, ADescriptionNamingTheOflInAnyMixOfCaseIsOfl)
{
    EXPECT_EQ(detect(described(
                  "This Font Software is licensed under the SIL Open Font License, Version 1.1.")),
              LicenseKind::ofl);
    EXPECT_EQ(detect(described(
                  "THIS FONT SOFTWARE IS LICENSED UNDER THE SIL OPEN FONT LICENSE, VERSION 1.1.")),
              LicenseKind::ofl);
    EXPECT_EQ(detect(described("sil oPEN fONT lICENSE, version 1.1")), LicenseKind::ofl);
}

TEST(LicenseKind, ACopyrightLineNamingApacheIsApacheWithoutLicenceFields)
{
    EXPECT_EQ(
        detect(withCopyright("Copyright 2015. Licensed under the Apache License, Version 2.0.")),
        LicenseKind::apache);
}

TEST(LicenseKind, ACopyrightLineNamingMitIsNoneWithoutLicenceFields)
{
    EXPECT_EQ(detect(withCopyright("Copyright 2015, MIT License")), LicenseKind::none);
}

TEST(LicenseKind, TheUbuntuFontLicencePageIsUfl)
{
    EXPECT_EQ(detect(withURL("https://ubuntu.com/legal/font-licence")), LicenseKind::ufl);
}

TEST(LicenseKind, GplWithTheFontExceptionIsGpl)
{
    EXPECT_EQ(detect(described("GPLv3 with font exception")), LicenseKind::gpl);
}

TEST(LicenseKind, ADescriptionOfSpacesAndLineFeedsIsNone)
{
    EXPECT_EQ(detect(described(" \n \n  ")), LicenseKind::none);
    EXPECT_EQ(detect({.licenseDescription = "", .licenseURL = "\n"}), LicenseKind::none);
    EXPECT_EQ(detect(described("\u00A0\u2028")), LicenseKind::none);
}

TEST(LicenseKind, ADescriptionPointingToACommercialAgreementIsNamed)
{
    EXPECT_EQ(detect(described("Use is governed by the end-user license agreement at "
                               "https://example.com/eula.")),
              LicenseKind::named);
}

TEST(LicenseKind, TheOflIdentifierInCapitalsIsOfl)
{
    EXPECT_EQ(detect(described("OFL-1.1")), LicenseKind::ofl);
}

} // namespace
} // namespace quillmark
