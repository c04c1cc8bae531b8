#include "update/UpdateSettings.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <QSettings>
#include <QString>
#include <QStringList>

#include <array>
#include <fstream>
#include <iterator>

namespace quillmark::test {
namespace {

using namespace std::chrono_literals;

constexpr std::chrono::sys_seconds now{std::chrono::seconds(1'800'000'000)};

class UpdateSettingsTest : public testing::Test {
protected:
    [[nodiscard]] std::string content() const
    {
        std::ifstream stream(file);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    TemporaryFolder folder;
    std::filesystem::path file{folder.path() / "config" / "settings.ini"};
};

TEST_F(UpdateSettingsTest, WithoutAFileNobodyHasBeenAskedYet)
{
    const UpdateSettings settings = UpdateSettings::load(file);
    EXPECT_EQ(settings, UpdateSettings{});
    EXPECT_EQ(settings.automaticChecks, std::nullopt);
    EXPECT_EQ(settings.checkInterval, 24h);
}

TEST_F(UpdateSettingsTest, ComeBackAsTheyWereSaved)
{
    const UpdateSettings settings{
        .automaticChecks = false,
        .lastCheck = now,
        .checkInterval = 2h,
        .skippedVersion = "1.3, \"b\"",
        .launches = 3,
    };
    settings.save(file);
    EXPECT_EQ(UpdateSettings::load(file), settings);
}

TEST_F(UpdateSettingsTest, HaveKeysThatPeopleCanRead)
{
    UpdateSettings{
        .automaticChecks = true,
        .lastCheck = now,
        .checkInterval = 2h,
        .skippedVersion = "1.3",
        .launches = 3,
    }
        .save(file);
    EXPECT_EQ(content(), "[updates]\nautomaticChecks=true\ncheckInterval=7200\n"
                         "lastCheck=2027-01-15T08:00:00Z\nlaunches=3\nskippedVersion=1.3\n");
}

TEST_F(UpdateSettingsTest, WhatBecomesAbsentIsTakenOut)
{
    UpdateSettings{.automaticChecks = true, .skippedVersion = "1.3", .launches = 1}.save(file);
    UpdateSettings{.launches = 2}.save(file);
    EXPECT_EQ(content(), "[updates]\nlaunches=2\n");
}

TEST_F(UpdateSettingsTest, LeaveEverythingElseInTheFile)
{
    const QString path = QString::fromStdString(file.native());
    const QStringList folders{QStringLiteral("/fonts/a, b")};
    QSettings(path, QSettings::IniFormat).setValue("fontFolders", folders);
    UpdateSettings{.launches = 1}.save(file);
    EXPECT_EQ(QSettings(path, QSettings::IniFormat).value("fontFolders").toStringList(), folders);
}

TEST_F(UpdateSettingsTest, WhatMakesNoSenseIsAsGoodAsAbsent)
{
    folder.write("config/settings.ini",
                 std::string_view("[updates]\nautomaticChecks=perhaps\nlastCheck=yesterday\n"
                                  "checkInterval=soon\nlaunches=-5\nskippedVersion=\n"));
    EXPECT_EQ(UpdateSettings::load(file), UpdateSettings{});
}

TEST_F(UpdateSettingsTest, TheIntervalStaysBetweenAnHourAndAYear)
{
    for (const auto& [text, expected] : {
             std::pair<const char*, std::chrono::seconds>{"3599", 1h},
             {"3601", 3601s},
             {"-1", 1h},
             {"0", 1h},
             {"31536001", 31536000s},
             {"9223372036854775807", 31536000s},
         }) {
        // Qt does not notice that a file of the same size was written within a moment.
        const auto own = folder.write(std::string(text) + ".ini",
                                      "[updates]\ncheckInterval=" + std::string(text) + "\n");
        EXPECT_EQ(UpdateSettings::load(own).checkInterval, expected) << text;
    }
}

struct Due {
    const char* situation;
    UpdateSettings settings;
    bool due;
};

const std::array situations{
    Due{"nobody was asked", {.lastCheck = now - 1000h}, false},
    Due{"the user declined", {.automaticChecks = false, .lastCheck = now - 1000h}, false},
    Due{"there was no check yet", {.automaticChecks = true}, true},
    Due{"one second is missing", {.automaticChecks = true, .lastCheck = now - 24h + 1s}, false},
    Due{"the interval has passed", {.automaticChecks = true, .lastCheck = now - 24h}, true},
    Due{"the last was just now", {.automaticChecks = true, .lastCheck = now}, false},
    Due{"the last is in the future", {.automaticChecks = true, .lastCheck = now + 1s}, true},
    Due{"a shorter interval has passed",
        {.automaticChecks = true, .lastCheck = now - 2h, .checkInterval = 2h},
        true},
};

TEST(UpdateSchedule, ACheckIsDueWithConsentAndWhenTheIntervalHasPassed)
{
    for (const Due& row : situations)
        EXPECT_EQ(isCheckDue(row.settings, now), row.due) << row.situation;
}

} // namespace
} // namespace quillmark::test
