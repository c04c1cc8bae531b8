// The one window: sources on the left, their fonts in the middle, one font's details on the right.
#pragma once

#include "model/UserPlaces.h"
#include "ui/WindowSettings.h"

#include <QMainWindow>
#include <QPointer>

class QSplitter;
class QStackedWidget;

namespace quillmark {

class AppModel;
class Commands;
class DocumentDropView;
class DocumentHeader;
class EmptyState;
class FontDetailView;
class FontListView;
class HelpDialog;
class ListHeading;
class ProgressPanel;
class SearchField;
class SidebarView;
class StatusLine;

/// Shows the model and forwards to it what the user asks for. The model has to outlive the window,
/// and may be started after the window is on the screen.
class MainWindow final : public QMainWindow {
    Q_OBJECT
public:
    MainWindow(AppModel& model, UserPlaces places, QWidget* parent = nullptr);
    ~MainWindow() override;

Q_SIGNALS:
    /// The user wants to know whether there is a newer version.
    void checkForUpdatesRequested();

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void createMenus();
    void createToolBar();
    void createPanes();
    void setUpSplitter();
    void connectModel();
    void connectPanes();
    void restore();
    void remember();

    void followList();
    void followSelectedRow();
    void followPage();
    void followHelp();

    AppModel& m_model;
    UserPlaces m_places;
    WindowSettings m_settings;
    Commands* m_commands;

    SearchField* m_search;
    QSplitter* m_splitter;
    SidebarView* m_sidebar;
    QStackedWidget* m_pages;
    EmptyState* m_nothing;
    ProgressPanel* m_reading;
    DocumentDropView* m_dropPage;
    FontListView* m_list;
    ListHeading* m_heading;
    DocumentHeader* m_documentHeader;
    FontDetailView* m_detail;
    StatusLine* m_status;
    QPointer<HelpDialog> m_help;
};

} // namespace quillmark
