#include "update/Appcast.h"
#include "update/Limits.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <string>

namespace quillmark {
namespace {

constexpr std::string_view head =
    R"(<?xml version="1.0" encoding="utf-8"?>
<rss version="2.0" xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle"><channel>)";
constexpr std::string_view tail = "</channel></rss>";

std::variant<Appcast, AppcastDamage> parsed(std::string_view text)
{
    return parseAppcast(QByteArray(text.data(), static_cast<qsizetype>(text.size())), "linux-x64");
}

/// A list of these items. Fails the test when it is none.
Appcast listOf(const std::string& items)
{
    const auto result = parsed(std::string(head) + items + std::string(tail));
    if (const auto* damage = std::get_if<AppcastDamage>(&result)) {
        ADD_FAILURE() << damage->reason;
        return {};
    }
    return std::get<Appcast>(result);
}

std::string damageOf(std::string_view text)
{
    const auto result = parsed(text);
    const auto* const damage = std::get_if<AppcastDamage>(&result);
    return damage != nullptr ? damage->reason : "";
}

std::string item(const std::string& content)
{
    return "<item>" + content + "</item>";
}

std::string version(const std::string& version)
{
    return "<sparkle:version>" + version + "</sparkle:version>";
}

TEST(Appcast, AnItemSaysWhatItOffers)
{
    const Appcast list = listOf(R"(<link>https://example.org/</link>
<item>
 <title> Version 1.3 </title>
 <link>https://example.org/1.3</link>
 <pubDate>Sat, 14 Mar 2026 09:26:53 +0100</pubDate>
 <sparkle:version>42</sparkle:version>
 <sparkle:shortVersionString>1.3</sparkle:shortVersionString>
 <sparkle:releaseNotesLink>https://example.org/notes</sparkle:releaseNotesLink>
 <description><![CDATA[<p>News &amp; fixes</p>]]></description>
 <sparkle:criticalUpdate/>
 <enclosure url="https://example.org/q.deb" length="1" type="application/octet-stream"/>
</item>)");
    AppcastItem expected;
    expected.version = "42";
    expected.shortVersion = "1.3";
    expected.title = "Version 1.3";
    expected.link = "https://example.org/1.3";
    expected.releaseNotesLink = "https://example.org/notes";
    expected.description = "<p>News &amp; fixes</p>";
    expected.published = std::chrono::sys_seconds(std::chrono::seconds(1773476813));
    expected.critical = true;
    ASSERT_EQ(list.items.size(), 1);
    EXPECT_EQ(list.items[0], expected);
    EXPECT_EQ(list.link, "https://example.org/");
    EXPECT_EQ(list.items[0].displayVersion(), "1.3");
}

TEST(Appcast, TheHighestVersionIsTheNewestWhereverItStands)
{
    const Appcast list =
        listOf(item(version("1.9")) + item(version("1.10")) + item(version("1.2")));
    ASSERT_NE(list.newest(), nullptr);
    EXPECT_EQ(list.newest()->version, "1.10");
    EXPECT_EQ(list.newest()->displayVersion(), "1.10");
}

TEST(Appcast, AnEmptyListHasNoNewest)
{
    EXPECT_EQ(listOf("").newest(), nullptr);
}

TEST(Appcast, TheVersionMayStandAtTheEnclosure)
{
    const Appcast list = listOf(
        item(R"(<enclosure url="x" sparkle:version="7" sparkle:shortVersionString="1.7"/>)"));
    ASSERT_EQ(list.items.size(), 1);
    EXPECT_EQ(list.items[0].version, "7");
    EXPECT_EQ(list.items[0].displayVersion(), "1.7");
}

TEST(Appcast, AnElementsVersionWinsOverTheEnclosures)
{
    const Appcast list = listOf(item(version("8") + R"(<enclosure url="x" sparkle:version="7"/>)"));
    EXPECT_EQ(list.items.at(0).version, "8");
}

TEST(Appcast, TheNamespaceCountsAndNotItsPrefix)
{
    const auto result = parsed(
        R"(<rss version="2.0" xmlns:s="http://www.andymatuschak.org/xml-namespaces/sparkle"
 xmlns:sparkle="urn:other"><channel><item><s:version>2</s:version>
<sparkle:version>3</sparkle:version></item></channel></rss>)");
    EXPECT_EQ(std::get<Appcast>(result).items.at(0).version, "2");
}

TEST(Appcast, ItemsWithoutAVersionAreLeftOut)
{
    EXPECT_TRUE(listOf(item("<title>1.3</title>")).items.empty());
    EXPECT_TRUE(listOf(item(version("  "))).items.empty());
    EXPECT_TRUE(listOf(item(version(std::string(65, '1')))).items.empty());
}

TEST(Appcast, ItemsOfAChannelOfTheirOwnAreLeftOut)
{
    EXPECT_TRUE(
        listOf(item(version("2") + "<sparkle:channel>beta</sparkle:channel>")).items.empty());
    EXPECT_EQ(listOf(item(version("2") + "<sparkle:channel/>")).items.size(), 1);
}

struct Systems {
    const char* enclosures;
    bool ours;
};

constexpr std::array systems{
    Systems{"", true},
    Systems{"<enclosure/>", true},
    Systems{"<enclosure sparkle:os='linux'/>", true},
    Systems{"<enclosure sparkle:os='linux-x64'/>", true},
    Systems{"<enclosure sparkle:os='linux-arm64'/>", false},
    Systems{"<enclosure sparkle:os='lin'/>", false},
    Systems{"<enclosure sparkle:os='macos'/>", false},
    Systems{"<enclosure sparkle:os='windows'/>", false},
    Systems{"<enclosure sparkle:os='macos'/><enclosure sparkle:os='linux'/>", true},
    Systems{"<enclosure sparkle:os='macos'/><enclosure sparkle:os='windows-x64'/>", false},
};

TEST(Appcast, ItemsForOtherSystemsAreLeftOut)
{
    for (const Systems& row : systems)
        EXPECT_EQ(listOf(item(version("2") + row.enclosures)).items.size(), row.ours ? 1U : 0U)
            << row.enclosures;
}

TEST(Appcast, TheVersionIsThatOfTheEnclosureForThisSystem)
{
    const Appcast list = listOf(item("<enclosure sparkle:os='macos' sparkle:version='9'/>"
                                     "<enclosure sparkle:os='linux' sparkle:version='8'/>"));
    EXPECT_EQ(list.items.at(0).version, "8");
}

TEST(Appcast, EnclosuresInsideOtherElementsAreNotTheItems)
{
    const Appcast list = listOf(item(
        version("8") +
        "<sparkle:deltas><enclosure sparkle:os='macos' sparkle:version='9'/></sparkle:deltas>"));
    EXPECT_EQ(list.items.at(0).version, "8");
}

TEST(Appcast, AnUpdateCanBeCriticalForOldVersionsOnly)
{
    const Appcast list =
        listOf(item(version("3") + "<sparkle:criticalUpdate sparkle:version='2.0'/>") +
               item(version("4") + "<sparkle:criticalUpdate/>") + item(version("5")));
    EXPECT_TRUE(list.items.at(0).isCriticalFor("1.9"));
    EXPECT_FALSE(list.items.at(0).isCriticalFor("2.0"));
    EXPECT_TRUE(list.items.at(1).isCriticalFor("2.0"));
    EXPECT_FALSE(list.items.at(2).isCriticalFor("1.0"));
}

TEST(Appcast, NotesSayWhetherTheyArePlainText)
{
    const auto format = [](const std::string& attribute) {
        return listOf(item(version("2") + "<description " + attribute + ">x</description>"))
            .items.at(0)
            .notesFormat;
    };
    EXPECT_EQ(format(""), AppcastItem::NotesFormat::html);
    EXPECT_EQ(format("sparkle:descriptionFormat='html'"), AppcastItem::NotesFormat::html);
    EXPECT_EQ(format("sparkle:descriptionFormat='plain-text'"),
              AppcastItem::NotesFormat::plainText);
    EXPECT_EQ(format("sparkle:descriptionFormat='markdown'"), AppcastItem::NotesFormat::plainText);
}

TEST(Appcast, EnglishNotesArePreferred)
{
    const Appcast list = listOf(item(version("2") + R"(<description xml:lang="de">Neu</description>
<description xml:lang="en">New</description><description>Other</description>
<sparkle:releaseNotesLink xml:lang="fr">https://example.org/fr</sparkle:releaseNotesLink>
<sparkle:releaseNotesLink>https://example.org/all</sparkle:releaseNotesLink>)"));
    EXPECT_EQ(list.items.at(0).description, "New");
    EXPECT_EQ(list.items.at(0).releaseNotesLink, "https://example.org/all");
}

TEST(Appcast, ADateMayHaveAnOffsetOrBeInGreenwich)
{
    for (const char* const date : {"Fri, 15 Jan 2027 09:30:00 +0130", "15 Jan 2027 08:00 +0000",
                                   "Fri, 15 Jan 2027 08:00:00 GMT"})
        EXPECT_EQ(
            listOf(item(version("2") + "<pubDate>" + date + "</pubDate>")).items.at(0).published,
            std::chrono::sys_seconds(std::chrono::seconds(1'800'000'000)))
            << date;
}

TEST(Appcast, ADateThatIsNoneIsAbsent)
{
    EXPECT_EQ(listOf(item(version("2") + "<pubDate>soon</pubDate>")).items.at(0).published,
              std::nullopt);
}

TEST(Appcast, ADocumentTypeIsRefused)
{
    EXPECT_EQ(damageOf("<!DOCTYPE rss [<!ENTITY a 'x'>]><rss><channel/></rss>"),
              "it has a document type");
    EXPECT_EQ(damageOf("<!-- --><!doctype rss><rss><channel/></rss>"), "it has a document type");
}

TEST(Appcast, WhatOnlyLooksLikeADocumentTypeIsNone)
{
    EXPECT_EQ(damageOf("<rss><channel><title><![CDATA[<!DOCTYPE]]></title>"
                       "<!-- <!DOCTYPE --><?x <!DOCTYPE ?></channel></rss>"),
              "");
}

TEST(Appcast, BadXmlIsAnErrorAndNeverAnEmptyList)
{
    for (const std::string_view text : {
             "",
             "not the web",
             "<rss>",
             "<rss><channel>",
             "<rss><channel/></rss><rss/>",
             "<rss><channel><item></channel></rss>",
             "<rss><channel>&undefined;</channel></rss>",
             "<rss><channel><s:x/></channel></rss>",
             "<rss><channel a='1' a='2'/></rss>",
             "<rss><channel/>",
             "<html><body>Sign in</body></html>",
             "<feed xmlns='http://www.w3.org/2005/Atom'/>",
             "<rss/>",
         })
        EXPECT_NE(damageOf(text), "") << text;
}

TEST(Appcast, AnErrorNamesItsLineAndRepeatsNothingOfTheList)
{
    EXPECT_EQ(damageOf("<rss><channel>\n&" + std::string(10'000, 'x') + ";</channel></rss>"),
              "it is damaged in line 2");
}

TEST(Appcast, AListCutAnywhereIsAnError)
{
    const std::string whole = std::string(head) + item(version("2")) + std::string(tail);
    for (std::size_t size = 0; size < whole.size(); ++size)
        EXPECT_NE(damageOf(whole.substr(0, size)), "") << size;
    EXPECT_EQ(damageOf(whole), "");
}

TEST(Appcast, OtherEncodingsThanUtf8AreRefused)
{
    EXPECT_EQ(damageOf("<rss><channel><title>\xE9</title></channel></rss>"), "it is not in UTF-8");
    using namespace std::string_view_literals;
    EXPECT_NE(damageOf("\xFF\xFE<\0r\0s\0s\0/\0>\0"sv), "");
    EXPECT_NE(damageOf("<\0r\0s\0s\0/\0>\0"sv), "");
}

TEST(Appcast, AByteOrderMarkIsNothingWrong)
{
    EXPECT_EQ(damageOf("\xEF\xBB\xBF<rss><channel/></rss>"), "");
}

TEST(Appcast, AListMayBeAsLargeAsTheLimitAndNoLarger)
{
    std::string list = std::string(head) + std::string(tail) + "<!--";
    list += std::string(FeedLimits::feedBytes - list.size() - 3, ' ') + "-->";
    EXPECT_EQ(damageOf(list), "");
    EXPECT_EQ(damageOf(list + " "), "it is too large");
}

TEST(Appcast, AListMayHaveAsManyItemsAsTheLimitAndNoMore)
{
    std::string items;
    for (std::size_t count = 0; count < FeedLimits::feedItems; ++count)
        items += item(version("1"));
    EXPECT_EQ(listOf(items).items.size(), FeedLimits::feedItems);
    EXPECT_EQ(damageOf(std::string(head) + items + item("") + std::string(tail)),
              "it has too many items");
}

TEST(Appcast, ElementsMayBeAsDeepAsTheLimitAndNoDeeper)
{
    const auto nested = [](std::size_t depth) { // below rss and channel
        std::string text;
        for (std::size_t count = 2; count < depth; ++count)
            text += "<a>";
        text += "<b/>";
        for (std::size_t count = 2; count < depth; ++count)
            text += "</a>";
        return std::string(head) + text + std::string(tail);
    };
    EXPECT_EQ(damageOf(nested(FeedLimits::feedDepth)), "");
    EXPECT_EQ(damageOf(nested(FeedLimits::feedDepth + 1)),
              "too many elements are inside one another");
}

TEST(Appcast, AnElementMayHaveAsManyAttributesAsTheLimitAndNoMore)
{
    const auto attributes = [](std::size_t count) {
        std::string text = "<a";
        for (std::size_t number = 0; number < count; ++number)
            text += " n" + std::to_string(number) + "='=>'";
        return std::string(head) + text + "/>" + std::string(tail);
    };
    EXPECT_EQ(damageOf(attributes(FeedLimits::feedAttributes)), "");
    EXPECT_EQ(damageOf(attributes(FeedLimits::feedAttributes + 1)),
              "an element has too many attributes");
}

TEST(Appcast, AHostileListTakesNoTime)
{
    std::string attributes = "<rss";
    for (int number = 0; attributes.size() < FeedLimits::feedBytes - 100; ++number)
        attributes += " n" + std::to_string(number) + "=''";
    std::string depth = "<rss xmlns:q='u'>";
    for (int number = 0; depth.size() < FeedLimits::feedBytes - 100; ++number)
        depth += "<q:a xmlns:p" + std::to_string(number) + "='u'>";
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_NE(damageOf(attributes + "/>"), "");
    EXPECT_NE(damageOf(depth), "");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
}

TEST(Appcast, ThisSystemHasANameThatListsUse)
{
#ifdef __linux__
    EXPECT_TRUE(runningSystem().starts_with("linux-")) << runningSystem();
#endif
    EXPECT_EQ(runningSystem().find('_'), std::string::npos);
}

} // namespace
} // namespace quillmark
