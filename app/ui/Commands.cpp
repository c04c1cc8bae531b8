#include "ui/Commands.h"

#include "assessment/Brand.h"
#include "model/AppModel.h"
#include "model/QtText.h"
#include "ui/Symbols.h"

#include <QApplication>
#include <QKeyEvent>
#include <QKeySequence>

#include <algorithm>

namespace quillmark {

using namespace Qt::Literals::StringLiterals;

Commands::Commands(AppModel& model, QObject* parent) : QObject(parent), m_model(model)
{
    const QString brand = qtText(Brand);

    scanFolder = add(u"Scan a Font Folder…"_s, Qt::CTRL | Qt::Key_O);
    scanFolder->setIcon(symbolIcon(u"folder.badge.plus"_s));
    checkDocument = add(u"Check a Document…"_s, Qt::CTRL | Qt::SHIFT | Qt::Key_O);
    checkDocument->setIcon(symbolIcon(u"doc.text.magnifyingglass"_s));
    rescanFonts = add(u"Rescan Fonts"_s);
    rescanFonts->setShortcuts({Qt::CTRL | Qt::Key_R, Qt::Key_F5});
    rescanFonts->setIcon(symbolIcon(u"arrow.clockwise"_s));
    exportCsv = add(u"Export as CSV…"_s, Qt::CTRL | Qt::Key_E);
    exportPdf = add(u"Export as PDF…"_s, Qt::CTRL | Qt::SHIFT | Qt::Key_E);
    quit = add(u"Quit"_s, Qt::CTRL | Qt::Key_Q);
    quit->setMenuRole(QAction::QuitRole);

    find = add(u"Find"_s, Qt::CTRL | Qt::Key_F);
    find->setIcon(symbolIcon(u"magnifyingglass"_s));

    showDetails = add(u"Details"_s);
    showDetails->setCheckable(true);
    showDetails->setChecked(true);
    showDetails->setIcon(symbolIcon(u"sidebar.right"_s));
    showDetails->setToolTip(u"Show or hide the font's details"_s);
    showSidebar = add(u"Sidebar"_s);
    showSidebar->setCheckable(true);
    showSidebar->setChecked(true);
    showSidebar->setIcon(symbolIcon(u"sidebar.left"_s));

    help = add(u"How %1 Decides"_s.arg(brand));
    checkForUpdates = add(u"Check for Updates…"_s);
    checkForUpdates->setMenuRole(QAction::ApplicationSpecificRole);
    about = add(u"About %1"_s.arg(brand));
    about->setMenuRole(QAction::AboutRole);

    rescan = add(u"Rescan"_s);
    rescan->setIcon(symbolIcon(u"arrow.clockwise"_s));
    rescan->setToolTip(u"Read the installed fonts and your folders again"_s);
    checkAgain = add(u"Check Again"_s);
    checkAgain->setIcon(symbolIcon(u"arrow.clockwise"_s));
    checkAgain->setToolTip(u"Check this PDF again (after scanning a font folder, for example)"_s);

    connect(scanFolder, &QAction::triggered, &m_model, &AppModel::chooseFolder);
    connect(checkDocument, &QAction::triggered, &m_model, &AppModel::chooseDocuments);
    for (QAction* const action : {rescanFonts, rescan})
        connect(action, &QAction::triggered, &m_model, &AppModel::rescanAll);
    connect(checkAgain, &QAction::triggered, &m_model, [this] {
        if (m_model.list() && m_model.list()->document) m_model.recheck(*m_model.list()->document);
    });
    connect(exportCsv, &QAction::triggered, &m_model,
            [this] { m_model.export_(ExportFormat::csv); });
    connect(exportPdf, &QAction::triggered, &m_model,
            [this] { m_model.export_(ExportFormat::pdf); });
    connect(help, &QAction::triggered, &m_model, [this] { m_model.setShowHelp(true); });
    connect(&m_model, &AppModel::listChanged, this, &Commands::followModel);
    followModel();
    qApp->installEventFilter(this);
}

QAction* Commands::add(const QString& text, const QKeySequence& shortcut)
{
    auto* const action = new QAction(text, this);
    // Text that ends in three dots would otherwise become a tool tip without them.
    action->setToolTip(text);
    if (!shortcut.isEmpty()) action->setShortcut(shortcut);
    m_claiming.push_back(action);
    return action;
}

void Commands::followModel()
{
    const std::optional<AuditList>& list = m_model.list();
    const bool isDocument = list && list->document;
    checkAgain->setVisible(isDocument);
    rescan->setVisible(!isDocument);
    exportCsv->setEnabled(list.has_value());
    exportPdf->setEnabled(list.has_value());
}

bool Commands::claims(const QKeyEvent& key) const
{
    const QKeySequence pressed(key.keyCombination());
    return std::any_of(m_claiming.begin(), m_claiming.end(), [&](const QAction* action) {
        return action->isEnabled() && action->shortcuts().contains(pressed);
    });
}

bool Commands::eventFilter(QObject* watched, QEvent* event)
{
    // A dialog in front keeps its keys: the commands are not to be had behind it.
    if (event->type() != QEvent::ShortcutOverride || QApplication::activeModalWidget() != nullptr ||
        !claims(*static_cast<QKeyEvent*>(event)))
        return QObject::eventFilter(watched, event);
    event->ignore();
    return true;
}

} // namespace quillmark
