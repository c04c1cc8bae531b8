#include "ui/DroppedFiles.h"

#include "model/QtText.h"

#include <QByteArray>
#include <QDropEvent>
#include <QMimeData>
#include <QString>

#include <optional>
#include <string>
#include <string_view>

namespace quillmark {

using namespace Qt::Literals::StringLiterals;

namespace {

/// What leaves the files alone.
std::optional<Qt::DropAction> harmlessAction(const QDropEvent& event)
{
    for (const Qt::DropAction action : {Qt::CopyAction, Qt::LinkAction})
        if (event.possibleActions().testFlag(action)) return action;
    return std::nullopt;
}

} // namespace

std::vector<std::filesystem::path> droppedFiles(const QDropEvent& event)
{
    if (!harmlessAction(event)) return {};
    // The bytes themselves: a QUrl would lose those of names that are not UTF-8.
    std::vector<std::filesystem::path> files;
    for (const QByteArray& line : event.mimeData()->data(u"text/uri-list"_s).split('\n')) {
        const QByteArray url = line.trimmed();
        // RFC 2483 has comments.
        if (url.isEmpty() || url.startsWith('#')) continue;
        const auto path =
            pathOfFileURL(std::string_view(url.constData(), static_cast<std::size_t>(url.size())));
        if (path) files.emplace_back(*path);
    }
    return files;
}

void acceptFiles(QDropEvent& event)
{
    if (const auto action = harmlessAction(event)) event.setDropAction(*action);
    event.accept();
}

} // namespace quillmark
