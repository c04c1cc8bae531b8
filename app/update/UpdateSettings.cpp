#include "update/UpdateSettings.h"

#include "text/IsoDate.h"

#include <QSettings>
#include <QString>
#include <QVariant>

#include <algorithm>

namespace quillmark {

using namespace Qt::Literals::StringLiterals;

namespace {

/// Puts a value into the file, or takes it out when it is absent.
void keep(QSettings& settings, const QString& key, const std::optional<QVariant>& value)
{
    if (value)
        settings.setValue(key, *value);
    else
        settings.remove(key);
}

} // namespace

UpdateSettings UpdateSettings::load(const std::filesystem::path& file)
{
    QSettings kept(QString::fromStdString(file.native()), QSettings::IniFormat);
    kept.beginGroup(u"updates"_s);
    UpdateSettings settings;
    const QString automatic = kept.value(u"automaticChecks"_s).toString();
    if (automatic == "true"_L1 || automatic == "false"_L1)
        settings.automaticChecks = automatic == "true"_L1;
    settings.lastCheck = parseIsoDate(kept.value(u"lastCheck"_s).toString().toStdString());
    bool isNumber = false;
    const qlonglong interval = kept.value(u"checkInterval"_s).toLongLong(&isNumber);
    if (isNumber)
        settings.checkInterval =
            std::clamp(std::chrono::seconds(interval), leastInterval, mostInterval);
    const QString skipped = kept.value(u"skippedVersion"_s).toString();
    if (!skipped.isEmpty()) settings.skippedVersion = skipped.toStdString();
    settings.launches = std::max(0, kept.value(u"launches"_s).toInt());
    return settings;
}

void UpdateSettings::save(const std::filesystem::path& file) const
{
    QSettings kept(QString::fromStdString(file.native()), QSettings::IniFormat);
    kept.beginGroup(u"updates"_s);
    const auto text = [](const std::string& value) {
        return QVariant(QString::fromStdString(value));
    };
    keep(kept, u"automaticChecks"_s, automaticChecks);
    keep(kept, u"lastCheck"_s, lastCheck ? std::optional(text(isoDate(*lastCheck))) : std::nullopt);
    // The usual one may change with a later version.
    keep(kept, u"checkInterval"_s,
         checkInterval == usualInterval
             ? std::nullopt
             : std::optional(QVariant(static_cast<qlonglong>(checkInterval.count()))));
    keep(kept, u"skippedVersion"_s,
         skippedVersion ? std::optional(text(*skippedVersion)) : std::nullopt);
    keep(kept, u"launches"_s, QVariant(launches));
}

bool isCheckDue(const UpdateSettings& settings, std::chrono::sys_seconds now)
{
    if (settings.automaticChecks != true) return false;
    if (!settings.lastCheck || *settings.lastCheck > now) return true;
    return now - *settings.lastCheck >= settings.checkInterval;
}

} // namespace quillmark
