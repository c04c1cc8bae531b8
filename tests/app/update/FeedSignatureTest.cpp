#include "update/FeedSignature.h"

#include "Publisher.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>
#include <QStringList>

namespace quillmark::test {
namespace {

class FeedSignatureTest : public testing::Test {
protected:
    [[nodiscard]] QByteArray signatureOf(const QByteArray& text) const
    {
        return publisher.signatureOf(text);
    }
    [[nodiscard]] QByteArray withSignature(const QByteArray& text) const
    {
        return publisher.withSignature(text);
    }

    const Publisher publisher;
    const QByteArray publicKey{publisher.publicKey()};
    QByteArray feed{"<rss><channel/></rss>\n"};
};

TEST_F(FeedSignatureTest, ASignedListIsReadWithoutItsSignature)
{
    EXPECT_EQ(signedPart(withSignature(feed), publicKey), feed);
}

TEST_F(FeedSignatureTest, ALineEndOfAnotherSystemDoesNoHarm)
{
    QByteArray text = withSignature(feed);
    const qsizetype begin = feed.size();
    text = text.left(begin) + text.mid(begin).replace("\n", "\r\n");
    EXPECT_EQ(signedPart(text, publicKey), feed);
}

TEST_F(FeedSignatureTest, AChangedByteAnywhereInTheListIsNoticed)
{
    const QByteArray text = withSignature(feed);
    for (qsizetype at = 0; at < feed.size(); ++at) {
        QByteArray changed = text;
        changed[at] = static_cast<char>(changed[at] ^ 1);
        EXPECT_EQ(signedPart(changed, publicKey), std::nullopt) << at;
    }
}

TEST_F(FeedSignatureTest, WhatWasPutBehindTheSignedPartIsNotRead)
{
    const QByteArray text =
        feed + "<rss>forged</rss>" + Publisher::comment(signatureOf(feed), feed.size());
    EXPECT_EQ(signedPart(text, publicKey), feed);
    EXPECT_EQ(signedPart(withSignature(feed) + "<rss>forged</rss>", publicKey), feed);
}

TEST_F(FeedSignatureTest, AListWithoutASignatureIsRefused)
{
    EXPECT_EQ(signedPart(feed, publicKey), std::nullopt);
    EXPECT_EQ(signedPart({}, publicKey), std::nullopt);
}

TEST_F(FeedSignatureTest, TheSignatureOfAnotherKeyIsRefused)
{
    const QByteArray text = withSignature(feed);
    EXPECT_EQ(signedPart(text, Publisher().publicKey()), std::nullopt);
}

TEST_F(FeedSignatureTest, WithoutAUsableKeyNothingHolds)
{
    const QByteArray text = withSignature(feed);
    for (const QByteArray& key :
         {QByteArray(), QByteArray("not base64!"), QByteArray(43, 'A'), publicKey + publicKey})
        EXPECT_EQ(signedPart(text, key), std::nullopt) << key.toStdString();
}

/// The output of a program, which has to succeed.
QByteArray outputOf(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished(60'000) && process.exitCode() == 0) << qPrintable(program);
    return process.readAllStandardOutput();
}

TEST_F(FeedSignatureTest, WhatTheScriptSignsHoldsAlsoWhenItIsSignedAgain)
{
    const TemporaryFolder folder;
    const QString key = QString::fromStdString((folder.path() / "key.pem").native());
    outputOf(QStringLiteral("openssl"), {QStringLiteral("genpkey"), QStringLiteral("-algorithm"),
                                         QStringLiteral("ed25519"), QStringLiteral("-out"), key});
    const QString script = QStringLiteral("" SIGN_FEED "");
    const QByteArray scriptsKey = outputOf(script, {QStringLiteral("--public-key"), key}).trimmed();
    for (const char* const list : {"<rss><channel/></rss>\n", "<rss><channel/></rss>"}) {
        const QString file =
            QString::fromStdString(folder.write("feed.xml", std::string_view(list)).native());
        for (int round = 0; round < 2; ++round) {
            outputOf(script, {key, file});
            QFile signedFile(file);
            ASSERT_TRUE(signedFile.open(QIODevice::ReadOnly));
            const QByteArray text = signedFile.readAll();
            EXPECT_EQ(signedPart(text, scriptsKey), feed);
            EXPECT_EQ(text.count("sparkle-signatures"), 1);
        }
    }
}

TEST_F(FeedSignatureTest, ADamagedCommentIsRefused)
{
    const QByteArray good = signatureOf(feed);
    const qsizetype size = feed.size();
    for (const QByteArray& text : {
             feed + Publisher::comment("", size),
             feed + Publisher::comment("AAAA", size),
             feed + Publisher::comment(good, 0),
             feed + Publisher::comment(good, -1),
             feed + Publisher::comment(good, size - 1),
             feed + Publisher::comment(good, size + 1),
             feed + Publisher::comment(good, size + 1000),
             feed + QByteArray("<!-- sparkle-signatures:\nedSignature: ") + good,
             feed + QByteArray("<!-- sparkle-signatures:-->"),
         })
        EXPECT_EQ(signedPart(text, publicKey), std::nullopt) << text.toStdString();
}

} // namespace
} // namespace quillmark::test
