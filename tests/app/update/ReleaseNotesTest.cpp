#include "update/ReleaseNotes.h"
#include "update/Limits.h"

#include <gtest/gtest.h>

#include <array>

namespace quillmark {
namespace {

struct Case {
    const char* situation;
    const char* html;
    const char* expected;
};

constexpr std::array cases{
    Case{"paragraphs, lists and emphasis stay",
         "<h2>New</h2><ul><li><b>One</b></li><li>Two</li></ul><p>Done.</p>",
         "<h2>New</h2><ul><li><b>One</b></li><li>Two</li></ul><p>Done.</p>"},
    Case{"attributes go", "<p style='color:white' onclick=\"x()\">a</p>", "<p>a</p>"},
    Case{"names in capitals are the same", "<P>a<BR>b</P>", "<p>a<br>b</p>"},
    Case{"a picture goes", "<p>a<img src='https://example.org/x.png'>b</p>", "<p>ab</p>"},
    Case{"a script goes with its text", "<p>a</p><script>alert('<p>')</script><p>b</p>",
         "<p>a</p><p>b</p>"},
    Case{"a style that never ends takes the rest", "<p>a<style>p {}", "<p>a</p>"},
    Case{"a whole page loses its head",
         "<!DOCTYPE html><html><head><title>T</title></head><body><p>a</p></body></html>",
         "<p>a</p>"},
    Case{"comments go", "<p>a<!-- <p>x</p> -->b</p>", "<p>ab</p>"},
    Case{"tables become lines", "<table><tr><td>a</td><td>b</td></tr></table>", "<br> a b"},
    Case{"paragraphs without an end are separate", "<p>a<p>b<p>c", "<p>a</p><p>b</p><p>c</p>"},
    Case{"list items without an end are separate", "<ul><li>a<li>b</ul>",
         "<ul><li>a</li><li>b</li></ul>"},
    Case{"a list ends the paragraph before it", "<p>a<ul><li>b</ul>",
         "<p>a</p><ul><li>b</li></ul>"},
    Case{"what was never opened is not closed", "</p>a</b>", "a"},
    Case{"closing the outer closes the inner", "<ul><li><b>a</ul>b", "<ul><li><b>a</b></li></ul>b"},
    Case{"a secure link stays", "<a href=\"https://example.org/?a=1&amp;b=2\" target=x>a</a>",
         "<a href=\"https://example.org/?a=1&amp;b=2\">a</a>"},
    Case{"an address without quotes is one", "<a href=https://example.org/>a</a>",
         "<a href=\"https://example.org/\">a</a>"},
    Case{"other links lose their address",
         "<a href='http://example.org/'>a</a><a href='javascript:x()'>b</a>"
         "<a href='file:///etc/passwd'>c</a><a href='/d'>d</a>",
         "abcd"},
    Case{"a lonely sign is text", "<p>1 < 2 <3</p>", "<p>1 &lt; 2 &lt;3</p>"},
    Case{"a tag that never ends is dropped", "<p>a</p><a href='x", "<p>a</p>"},
    Case{"entities are left to the viewer", "<p>&lt;b&gt; &copy;</p>", "<p>&lt;b&gt; &copy;</p>"},
    Case{"text without any tag keeps its lines", "a & b\r\nc", "a &amp; b<br>c"},
};

TEST(ReleaseNotes, AreReducedToSimpleMarkup)
{
    for (const Case& row : cases)
        EXPECT_EQ(simpleHtml(QString::fromUtf8(row.html)).toStdString(), row.expected)
            << row.situation;
}

TEST(ReleaseNotes, ReducingThemTwiceChangesNothing)
{
    for (const Case& row : cases) {
        const QString once = simpleHtml(QString::fromUtf8(row.html));
        if (!once.contains(u'<')) continue;
        EXPECT_EQ(simpleHtml(once), once) << row.situation;
    }
}

TEST(ReleaseNotes, MarkupThatIsTooDeepIsDroppedAndItsTextStays)
{
    QString html;
    for (int depth = 0; depth < 1000; ++depth)
        html += QStringLiteral("<blockquote>");
    const QString reduced = simpleHtml(html + QStringLiteral("deep"));
    EXPECT_EQ(reduced.count(QStringLiteral("<blockquote>")),
              static_cast<qsizetype>(FeedLimits::notesDepth));
    EXPECT_EQ(reduced.count(QStringLiteral("</blockquote>")),
              static_cast<qsizetype>(FeedLimits::notesDepth));
    EXPECT_TRUE(reduced.contains(QStringLiteral("deep")));
}

TEST(ReleaseNotes, LongOnesAreCut)
{
    const QString most(static_cast<qsizetype>(FeedLimits::notesCharacters), u'x');
    EXPECT_EQ(htmlOfPlainText(most), most);
    EXPECT_EQ(htmlOfPlainText(most + u'y'), most + u'…');
    EXPECT_FALSE(simpleHtml(QStringLiteral("<p>") + most).contains(most));
}

TEST(ReleaseNotes, PlainTextStaysPlain)
{
    EXPECT_EQ(htmlOfPlainText(QStringLiteral("<b>a</b>\nb")).toStdString(),
              "&lt;b&gt;a&lt;/b&gt;<br>b");
}

} // namespace
} // namespace quillmark
