#include "ui/SingleInstance.h"

#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QCoreApplication>
#include <QDialog>
#include <QLocalSocket>
#include <QMessageBox>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <sys/types.h>
#include <vector>

namespace quillmark::test {
namespace {

namespace fs = std::filesystem;

constexpr int timeLimit = 30'000; // milliseconds; only a failing test takes that long

/// A process that runs instance.cpp.
class Start {
public:
    Start(const fs::path& runtime, const fs::path& data, const std::vector<std::string>& more = {},
          int patience = 10'000)
    {
        QStringList arguments{QString::fromStdString(runtime.native()),
                              QString::fromStdString(data.native()), QString::number(patience)};
        for (const std::string& argument : more)
            arguments += QString::fromStdString(argument);
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/instance"),
                        arguments);
    }
    ~Start()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    Start(const Start&) = delete;
    Start& operator=(const Start&) = delete;

    /// The next line that it says.
    std::string line()
    {
        while (!m_process.canReadLine())
            if (!m_process.waitForReadyRead(timeLimit)) return "nothing";
        return m_process.readLine().trimmed().toStdString();
    }
    void signal(int number) const { ::kill(static_cast<pid_t>(m_process.processId()), number); }
    void kill()
    {
        m_process.kill();
        m_process.waitForFinished(timeLimit);
    }
    void leave() { m_process.closeWriteChannel(); }
    int exitCode()
    {
        m_process.waitForFinished(timeLimit);
        return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
    }

private:
    QProcess m_process;
};

class Starts : public testing::Test {
protected:
    [[nodiscard]] fs::path only(const char* extension) const
    {
        fs::path found;
        for (const auto& entry : fs::directory_iterator(runtime.path()))
            if (entry.path().extension() == extension) found = entry.path();
        return found;
    }
    TemporaryFolder runtime;
    TemporaryFolder data;
};

TEST_F(Starts, TheSecondHandsOverItsFilesAndItsTokenAndIsDone)
{
    Start first(runtime.path(), data.path());
    ASSERT_EQ(first.line(), "first");
    Start second(runtime.path(), data.path(), {"token-1", "/a b.pdf", "/ü"});
    EXPECT_EQ(second.line(), "handed over");
    EXPECT_EQ(second.exitCode(), 0);
    EXPECT_EQ(first.line(), "token token-1 file /a b.pdf file /ü");
    Start third(runtime.path(), data.path());
    EXPECT_EQ(third.line(), "handed over");
    EXPECT_EQ(first.line(), "token");
}

TEST_F(Starts, PathsThatAreNotUtf8ArriveAsTheyAre)
{
    SingleInstance first(runtime.path(), data.path());
    ASSERT_EQ(first.enter({}), SingleInstance::Role::first);
    first.listen();
    std::vector<StartRequest> requests;
    QObject::connect(&first, &SingleInstance::requested, &first,
                     [&](const StartRequest& request) { requests.push_back(request); });
    const StartRequest sent{"", {"/b\xFC.pdf", "/"}};
    QProcess second;
    // A shell makes the byte that a QString cannot hold.
    second.start(
        QStringLiteral("/bin/sh"),
        {QStringLiteral("-c"),
         QStringLiteral("exec \"$0\" \"$1\" \"$2\" 10000 '' \"$(printf '/b\\374.pdf')\" /"),
         QCoreApplication::applicationDirPath() + QStringLiteral("/instance"),
         QString::fromStdString(runtime.path().native()),
         QString::fromStdString(data.path().native())});
    EXPECT_TRUE(QTest::qWaitFor([&] { return !requests.empty(); }, timeLimit));
    EXPECT_TRUE(second.state() == QProcess::NotRunning || second.waitForFinished(timeLimit));
    EXPECT_EQ(second.readAllStandardOutput(), "handed over\n");
    EXPECT_THAT(requests, testing::ElementsAre(sent));
}

TEST_F(Starts, WhatAKilledOneLeavesBehindBlocksNobody)
{
    for (int round = 0; round < 3; ++round) {
        Start first(runtime.path(), data.path());
        ASSERT_EQ(first.line(), "first");
        first.kill();
        EXPECT_TRUE(fs::exists(only(".lock")));
        EXPECT_TRUE(fs::exists(only(".socket")));
    }
}

TEST_F(Starts, OneThatHasEndedLeavesNoSocket)
{
    Start first(runtime.path(), data.path());
    ASSERT_EQ(first.line(), "first");
    first.leave();
    EXPECT_EQ(first.exitCode(), 0);
    EXPECT_EQ(only(".socket"), fs::path());
}

TEST_F(Starts, AtTheSameMomentMakeOneInstance)
{
    for (int round = 0; round < 5; ++round) {
        std::vector<std::unique_ptr<Start>> starts;
        for (int i = 0; i < 6; ++i)
            starts.push_back(std::make_unique<Start>(runtime.path(), data.path()));
        std::vector<std::string> said;
        for (const auto& start : starts)
            said.push_back(start->line());
        EXPECT_EQ(std::ranges::count(said, "first"), 1);
        EXPECT_EQ(std::ranges::count(said, "handed over"), 5);
    }
}

TEST_F(Starts, WhileTheFirstOneEndsTheNextTakesItsPlace)
{
    for (int round = 0; round < 5; ++round) {
        Start first(runtime.path(), data.path());
        ASSERT_EQ(first.line(), "first");
        first.leave();
        Start second(runtime.path(), data.path());
        // It may come in time to be taken, or else it is the first one itself.
        const std::string said = second.line();
        EXPECT_TRUE(said == "first" || (said == "handed over" && first.line() == "token")) << said;
    }
}

TEST_F(Starts, AnUnresponsiveFirstOneMakesTheSecondGiveUp)
{
    Start first(runtime.path(), data.path());
    ASSERT_EQ(first.line(), "first");
    first.signal(SIGSTOP);
    Start second(runtime.path(), data.path(), {}, 200);
    EXPECT_EQ(second.line(), "no answer");
    first.signal(SIGCONT);
    Start third(runtime.path(), data.path());
    EXPECT_EQ(third.line(), "handed over");
}

TEST_F(Starts, OfDifferentDataFoldersKnowNothingOfEachOther)
{
    const TemporaryFolder otherData;
    Start first(runtime.path(), data.path());
    ASSERT_EQ(first.line(), "first");
    Start other(runtime.path(), otherData.path());
    EXPECT_EQ(other.line(), "first");
}

TEST_F(Starts, OneDataFolderIsTheSameByEveryPath)
{
    const fs::path link = runtime.path() / "link";
    fs::create_directory_symlink(data.path(), link);
    Start first(runtime.path(), data.path() / "Quillmark");
    ASSERT_EQ(first.line(), "first");
    Start second(runtime.path(), link / "." / "Quillmark" / "");
    EXPECT_EQ(second.line(), "handed over");
}

TEST_F(Starts, WithoutAPlaceForLocksOneIsNotKeptFromStarting)
{
    Start only(runtime.path() / "gone", data.path());
    EXPECT_EQ(only.line(), "first");
}

TEST_F(Starts, TheSocketIsForItsOwnerAlone)
{
    Start first(runtime.path(), data.path());
    ASSERT_EQ(first.line(), "first");
    for (const char* extension : {".socket", ".lock"}) {
        struct stat status {};
        ASSERT_EQ(stat(only(extension).c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 0777, 0600U);
    }
}

/// What somebody writes to the socket who is none of ours.
class Hostile : public Starts {
protected:
    void SetUp() override
    {
        ASSERT_EQ(first.enter({}), SingleInstance::Role::first);
        first.listen();
        QObject::connect(&first, &SingleInstance::requested, &first, [this] { ++requests; });
    }
    std::unique_ptr<QLocalSocket> connected()
    {
        auto socket = std::make_unique<QLocalSocket>();
        socket->connectToServer(QString::fromStdString(only(".socket").native()));
        EXPECT_TRUE(socket->waitForConnected(timeLimit));
        return socket;
    }
    /// Whether the first one hangs up on somebody who writes this.
    bool isRefused(const std::string& bytes)
    {
        const auto socket = connected();
        socket->write(bytes.data(), static_cast<qint64>(bytes.size()));
        return QTest::qWaitFor([&] { return socket->state() == QLocalSocket::UnconnectedState; },
                               timeLimit) &&
               socket->bytesAvailable() == 0;
    }
    SingleInstance first{runtime.path(), data.path()};
    int requests{};
};

TEST_F(Hostile, ContentIsIgnored)
{
    using namespace std::string_literals;
    EXPECT_TRUE(isRefused("\xFF\xFF\xFF\xFFxxxx"s)); // longer than anything may be
    EXPECT_TRUE(isRefused("\0\0\0\0"s));             // not even a token
    EXPECT_TRUE(isRefused("\0\0\0\5hello"s));        // nothing closed
    EXPECT_TRUE(isRefused("\0\0\0\7\0a.pdf\0"s));    // a relative path
    EXPECT_TRUE(isRefused("\0\0\0\2\0\0"s));         // an empty one
    EXPECT_TRUE(isRefused("\0\0\0\1\0more than was announced"s));
    EXPECT_EQ(requests, 0);
}

TEST_F(Hostile, SilenceKeepsNobodyFromHandingOver)
{
    std::vector<std::unique_ptr<QLocalSocket>> silent;
    for (int i = 0; i < 20; ++i)
        silent.push_back(connected());
    Start second(runtime.path(), data.path(), {}, 60'000);
    EXPECT_TRUE(QTest::qWaitFor([&] { return requests == 1; }, timeLimit));
    EXPECT_EQ(second.line(), "handed over");
}

TEST_F(Hostile, AMessageInSmallPiecesIsWhole)
{
    const auto socket = connected();
    const std::string sound = std::string("\0\0\0\5x\0/a\0", 9);
    for (const char byte : sound) {
        socket->write(&byte, 1);
        socket->flush();
        QCoreApplication::processEvents();
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return socket->bytesAvailable() == 1; }, timeLimit));
    EXPECT_EQ(requests, 1);
}

class RuntimeFolder : public testing::Test {
protected:
    ~RuntimeFolder() override { qputenv("XDG_RUNTIME_DIR", m_before); }

private:
    QByteArray m_before = qgetenv("XDG_RUNTIME_DIR");
};

TEST(ComingToFront, GivesTheKeyboardToTheDialogThatBlocksTheWindow)
{
    QWidget window;
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    {
        QDialog sheet(&window);
        sheet.open();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&sheet));
        comeToFront(window, {});
        QCoreApplication::processEvents();
        EXPECT_EQ(QApplication::activeWindow(), &sheet);
        QMessageBox question(&sheet);
        question.open();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&question));
        comeToFront(window, {});
        QCoreApplication::processEvents();
        EXPECT_EQ(QApplication::activeWindow(), &question);
    }
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    comeToFront(window, {});
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
}

TEST_F(RuntimeFolder, IsTheOneThatIsNamed)
{
    const TemporaryFolder folder;
    fs::permissions(folder.path(), fs::perms::owner_all);
    qputenv("XDG_RUNTIME_DIR", folder.path().c_str());
    EXPECT_EQ(runtimeFolder(), folder.path());
}

TEST_F(RuntimeFolder, IsNoneThatOthersCanChange)
{
    const TemporaryFolder folder;
    fs::permissions(folder.path(), fs::perms::owner_all | fs::perms::others_write);
    for (const std::string& named : {folder.path().native(), std::string("relative"), std::string(),
                                     folder.path().native() + "/gone"}) {
        qputenv("XDG_RUNTIME_DIR", named.c_str());
        const auto chosen = runtimeFolder();
        ASSERT_TRUE(chosen);
        EXPECT_NE(*chosen, named);
        EXPECT_TRUE(chosen->is_absolute());
        struct stat status {};
        ASSERT_EQ(lstat(chosen->c_str(), &status), 0);
        EXPECT_EQ(status.st_uid, geteuid());
        EXPECT_EQ(status.st_mode & 0077, 0U);
    }
}

} // namespace
} // namespace quillmark::test
