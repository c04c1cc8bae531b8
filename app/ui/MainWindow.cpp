#include "ui/MainWindow.h"

#include "assessment/Brand.h"
#include "model/AppModel.h"
#include "model/QtText.h"
#include "text/Printable.h"
#include "ui/AboutDialog.h"
#include "ui/Alerts.h"
#include "ui/ApplicationIcon.h"
#include "ui/Commands.h"
#include "ui/DocumentDropView.h"
#include "ui/DocumentHeader.h"
#include "ui/DroppedFiles.h"
#include "ui/EditMenu.h"
#include "ui/EmptyState.h"
#include "ui/FontDetailView.h"
#include "ui/FontListView.h"
#include "ui/HelpDialog.h"
#include "ui/ListHeading.h"
#include "ui/ProgressPanel.h"
#include "ui/SearchField.h"
#include "ui/SidebarView.h"
#include "ui/StatusLine.h"
#include "ui/Symbols.h"

#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMenuBar>
#include <QShortcut>
#include <QSplitter>
#include <QStackedWidget>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

#include <utility>

namespace quillmark {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QSize defaultSize{1280, 780};
constexpr int inspectorWidth = 340;
constexpr int headingMargin = 12;

} // namespace

MainWindow::MainWindow(AppModel& model, UserPlaces places, QWidget* parent)
    : QMainWindow(parent), m_model(model), m_places(std::move(places)),
      m_settings(WindowSettings::load(m_places.settingsFile)),
      m_commands(new Commands(model, this)), m_search(new SearchField), m_splitter(new QSplitter),
      m_sidebar(new SidebarView(model)), m_pages(new QStackedWidget),
      m_nothing(new EmptyState(u"textformat"_s, u"Nothing selected"_s)),
      m_reading(new ProgressPanel(u"Reading every installed font…"_s)),
      m_dropPage(new DocumentDropView(model)), m_list(new FontListView), m_heading(new ListHeading),
      m_documentHeader(new DocumentHeader), m_detail(new FontDetailView(model)),
      m_status(new StatusLine(model))
{
    // The name by which sessions and window managers know it from one run to the next.
    setObjectName(u"main"_s);
    setWindowIcon(applicationIcon());
    setAcceptDrops(true);
    setUnifiedTitleAndToolBarOnMac(true);
    createMenus();
    createToolBar();
    createPanes();
    setStatusBar(m_status);
    new Alerts(m_model, this);
    connectModel();
    connectPanes();
    restore();
    followList();
    followHelp();
}

MainWindow::~MainWindow() = default;

void MainWindow::createMenus()
{
    QMenu* const file = menuBar()->addMenu(u"&File"_s);
    file->addAction(m_commands->scanFolder);
    file->addAction(m_commands->checkDocument);
    file->addAction(m_commands->rescanFonts);
    file->addSeparator();
    file->addAction(m_commands->exportCsv);
    file->addAction(m_commands->exportPdf);
    file->addSeparator();
    file->addAction(m_commands->quit);

    auto* const edit = new EditMenu(this);
    edit->addSeparator();
    edit->addAction(m_commands->find);
    menuBar()->addMenu(edit);

    QMenu* const view = menuBar()->addMenu(u"&View"_s);
    view->addAction(m_commands->showDetails);
    view->addAction(m_commands->showSidebar);

    QMenu* const help = menuBar()->addMenu(u"&Help"_s);
    help->addAction(m_commands->help);
    help->addSeparator();
    help->addAction(m_commands->checkForUpdates);
    help->addAction(m_commands->about);
    connect(m_commands->checkForUpdates, &QAction::triggered, this,
            &MainWindow::checkForUpdatesRequested);

    // Qt has Alt for this, but desktops' own programs F10 as well.
    auto* const openMenus = new QShortcut(Qt::Key_F10, this);
    connect(openMenus, &QShortcut::activated, file, [this, file] {
        menuBar()->setActiveAction(file->menuAction());
        file->setActiveAction(file->actions().constFirst());
    });
}

void MainWindow::createToolBar()
{
    QToolBar* const bar = addToolBar(u"Toolbar"_s);
    bar->setObjectName(u"toolbar"_s);
    bar->setMovable(false);
    // Its own menu would only offer to hide it, and nobody finds a hidden toolbar again.
    bar->setContextMenuPolicy(Qt::PreventContextMenu);
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    bar->setIconSize(QSize(18, 18));
    bar->addAction(m_commands->rescan);
    bar->addAction(m_commands->checkAgain);

    auto* const exportButton = new QToolButton;
    exportButton->setText(u"Export"_s);
    exportButton->setIcon(symbolIcon(u"square.and.arrow.up"_s));
    exportButton->setToolTip(u"Export this list as a CSV or PDF audit"_s);
    exportButton->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    exportButton->setPopupMode(QToolButton::InstantPopup);
    auto* const formats = new QMenu(exportButton);
    formats->addAction(m_commands->exportCsv);
    formats->addAction(m_commands->exportPdf);
    exportButton->setMenu(formats);
    exportButton->setEnabled(m_commands->exportCsv->isEnabled());
    connect(m_commands->exportCsv, &QAction::enabledChanged, exportButton, &QWidget::setEnabled);
    bar->addWidget(exportButton);
    bar->addAction(m_commands->showDetails);

    auto* const gap = new QWidget;
    gap->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    bar->addWidget(gap);
    bar->addWidget(m_search);
    // Out of the way of a toolbar's keyboard by default, but half of the program is in it.
    for (QAction* const action : bar->actions())
        if (QWidget* const widget = bar->widgetForAction(action);
            qobject_cast<QToolButton*>(widget))
            widget->setFocusPolicy(Qt::TabFocus);
}

void MainWindow::createPanes()
{
    auto* const header = new QWidget;
    auto* const headers = new QVBoxLayout(header);
    headers->setContentsMargins(headingMargin, headingMargin, headingMargin, 0);
    headers->addWidget(m_heading);
    headers->addWidget(m_documentHeader);
    m_documentHeader->hide();
    m_list->setHeader(header);
    m_pages->addWidget(m_nothing);
    m_pages->addWidget(m_reading);
    m_pages->addWidget(m_dropPage);
    m_pages->addWidget(m_list);

    m_sidebar->setMinimumWidth(SidebarView::minimumColumnWidth);
    m_sidebar->setMaximumWidth(SidebarView::maximumColumnWidth);
    m_detail->setMinimumWidth(300);
    m_detail->setMaximumWidth(520);
    setUpSplitter();
    m_splitter->addWidget(m_sidebar);
    m_splitter->addWidget(m_pages);
    m_splitter->addWidget(m_detail);
    // A splitter stacks each pane below the former ones, and screen readers go from the bottom up.
    for (QWidget* const pane : {static_cast<QWidget*>(m_detail), static_cast<QWidget*>(m_pages),
                                static_cast<QWidget*>(m_sidebar)})
        pane->lower();
    m_splitter->setStretchFactor(0, 0);
    m_splitter->setStretchFactor(1, 1);
    m_splitter->setStretchFactor(2, 0);
    setCentralWidget(m_splitter);
}

void MainWindow::setUpSplitter()
{
    m_splitter->setOrientation(Qt::Horizontal);
    m_splitter->setChildrenCollapsible(false);
    m_splitter->setOpaqueResize(true);
    m_splitter->setHandleWidth(1); // a line; Qt lets it be grabbed beside it
}

void MainWindow::connectModel()
{
    connect(&m_model, &AppModel::listChanged, this, &MainWindow::followList);
    connect(&m_model, &AppModel::selectionChanged, this, &MainWindow::followPage);
    connect(&m_model, &AppModel::scanningInstalledChanged, this, &MainWindow::followPage);
    connect(&m_model, &AppModel::showHelpChanged, this, &MainWindow::followHelp);
}

void MainWindow::connectPanes()
{
    connect(m_commands->about, &QAction::triggered, this,
            [this] { (new AboutDialog(this))->open(); });
    connect(m_commands->quit, &QAction::triggered, this, &QWidget::close);
    connect(m_commands->find, &QAction::triggered, m_search, [this] {
        m_search->setFocus(Qt::ShortcutFocusReason);
        m_search->selectAll();
    });
    connect(m_commands->showSidebar, &QAction::toggled, m_sidebar, &QWidget::setVisible);
    connect(m_commands->showDetails, &QAction::toggled, this, &MainWindow::followPage);

    connect(m_search, &QLineEdit::textChanged, m_list, &FontListView::setSearch);
    connect(m_search, &SearchField::left, m_list, &FontListView::focusTable);
    connect(m_list, &FontListView::searchChanged, m_search, &QLineEdit::setText);
    connect(m_list, &FontListView::selectedRowChanged, this, &MainWindow::followSelectedRow);
    connect(m_list, &FontListView::shownRowsChanged, m_status, &StatusLine::setShownRows);
    connect(m_list, &FontListView::revealRequested, &m_model,
            [this](const std::string& path) { m_model.showInFinder(path); });
}

void MainWindow::followList()
{
    const std::optional<AuditList>& list = m_model.list();
    if (list) {
        const bool isDocument = list->document != nullptr;
        if (isDocument)
            m_documentHeader->setAudit(*list->document);
        else
            m_heading->setTexts(qtText(printable(list->title)), qtText(printable(list->subtitle)));
        m_documentHeader->setVisible(isDocument);
        m_heading->setVisible(!isDocument);
    }
    m_list->setList(list);
    followPage();
}

void MainWindow::followSelectedRow()
{
    const std::optional<AuditRow> row = m_list->selectedRow();
    const bool hadKeyboard = m_detail->isAncestorOf(focusWidget());
    m_detail->setRow(row ? &*row : nullptr);
    // The pane without a font would have it next, and could not show it.
    if (!row && hadKeyboard) m_sidebar->focusTree();
}

void MainWindow::followPage()
{
    const std::optional<SidebarItem>& selection = m_model.selection();
    QWidget* page = m_list;
    if (selection == SidebarItem::checkDocument())
        page = m_dropPage;
    else if (!m_model.list())
        page = m_nothing;
    else if (selection == SidebarItem::installed() && m_model.installed().empty() &&
             m_model.scanningInstalled())
        page = m_reading;
    m_pages->setCurrentWidget(page);

    const bool listed = page == m_list;
    m_detail->setVisible(listed && m_commands->showDetails->isChecked());
    m_commands->showDetails->setEnabled(listed);
    m_search->setEnabled(listed);
    m_commands->find->setEnabled(listed);
    setWindowTitle(page == m_dropPage ? u"Check a Document"_s : qtText(Brand));
}

void MainWindow::followHelp()
{
    if (m_model.showHelp() != m_help.isNull()) return;
    if (m_help) {
        m_help->close();
        return;
    }
    m_help = new HelpDialog(this);
    m_help->setAttribute(Qt::WA_DeleteOnClose);
    connect(m_help, &QDialog::finished, &m_model, [this] {
        // It is still on its way out: to be asked for again it has to be made anew.
        m_help.clear();
        m_model.setShowHelp(false);
    });
    m_help->open();
}

void MainWindow::restore()
{
    resize(defaultSize);
    restoreGeometry(m_settings.geometry);
    m_splitter->setSizes({SidebarView::idealColumnWidth,
                          defaultSize.width() - SidebarView::idealColumnWidth - inspectorWidth,
                          inspectorWidth});
    m_splitter->restoreState(m_settings.splitter);
    // All but the widths is not for the file to say, and a damaged one could say anything.
    setUpSplitter();
    m_list->restoreColumns(m_settings.listColumns);
    m_commands->showDetails->setChecked(m_settings.showsDetails);
    m_commands->showSidebar->setChecked(m_settings.showsSidebar);
    // By itself it would be a button of the toolbar's, unseen, and the next key would press it.
    m_sidebar->focusTree();
}

void MainWindow::remember()
{
    m_settings.geometry = saveGeometry();
    m_settings.splitter = m_splitter->saveState();
    m_settings.listColumns = m_list->saveColumns();
    m_settings.showsDetails = m_commands->showDetails->isChecked();
    m_settings.showsSidebar = m_commands->showSidebar->isChecked();
    m_settings.save(m_places.settingsFile);
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    remember();
    QMainWindow::closeEvent(event);
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event)
{
    if (!droppedFiles(*event).empty()) acceptFiles(*event);
}

void MainWindow::dropEvent(QDropEvent* event)
{
    m_model.checkDocuments(droppedFiles(*event));
    acceptFiles(*event);
}

} // namespace quillmark
