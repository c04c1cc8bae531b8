#include "ui/WindowSettings.h"

#include "model/QtText.h"

#include <QSettings>

namespace quillmark {

using namespace Qt::Literals::StringLiterals;

namespace {

/// Calls `visit` with the key and the member of everything that is kept.
template <typename Settings, typename Visit>
void forEachValue(Settings& settings, Visit visit)
{
    visit(u"window/geometry"_s, settings.geometry);
    visit(u"window/splitter"_s, settings.splitter);
    visit(u"window/listColumns"_s, settings.listColumns);
    visit(u"window/showsDetails"_s, settings.showsDetails);
    visit(u"window/showsSidebar"_s, settings.showsSidebar);
}

} // namespace

WindowSettings WindowSettings::load(const std::filesystem::path& file)
{
    const QSettings kept(qtText(file.native()), QSettings::IniFormat);
    WindowSettings settings;
    forEachValue(settings, [&](const QString& key, auto& value) {
        using Value = std::remove_reference_t<decltype(value)>;
        value = kept.value(key, QVariant::fromValue(value)).template value<Value>();
    });
    return settings;
}

void WindowSettings::save(const std::filesystem::path& file) const
{
    QSettings kept(qtText(file.native()), QSettings::IniFormat);
    forEachValue(*this, [&](const QString& key, const auto& value) {
        kept.setValue(key, QVariant::fromValue(value));
    });
}

} // namespace quillmark
