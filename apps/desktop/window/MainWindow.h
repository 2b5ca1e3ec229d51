#pragma once

#include <desktop/window/Location.h>
#include <desktop/window/NavigationHistory.h>

#include <session/VellSession.h>

#include <QMainWindow>
#include <QPointer>

#include <memory>

class QLabel;
class VellChangePoll;
class VellOperation;
struct VellDocument;

namespace desktop {

class Actions;
class Commands;
class DocumentPane;
class FirstSteps;
class MessageBar;
class Panels;
class PathBar;
class PlacesPanel;
class SearchBar;
class TaskbarProgress;
class Workspace;
enum class ActionId;

//! \brief The main window: places and folders on the left, entries in the middle, path and search above.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    //! \param workspace must outlive the window
    explicit MainWindow(Workspace *workspace, QWidget *parent = nullptr);
    ~MainWindow() override;

    //! Shows \a location, and adds it to the history.
    //! \param selectedId the entry to be selected
    void navigate(const Location &location, const QString &selectedId = {});
    const Location &location() const { return m_location; }

    DocumentPane *pane() const { return m_pane; }
    Actions *actionTable() const { return m_actions; }

    //! Shows a message above the list, until the user closes it or another one is shown.
    void say(const QString &text);

Q_SIGNALS:
    void connectRequested();
    void settingsRequested();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void buildCenter();
    void buildMenus();
    void connectPane();
    void connectChanges();
    void connectSession();
    void connectPanels();
    void restoreLooks();
    void showLocation(const Location &location, const QString &selectedId);
    void run(ActionId action);
    void goUp();
    void open(const VellDocument &document);
    void showContextMenu(const QPoint &globalPosition);
    void showFolderMenu(const QString &id, const QPoint &globalPosition);
    void askForUploadRight();
    void saveSearch(const SearchTerms &terms);
    void updateActions();
    void updateStatus();
    void updateOffline(VellSession::State state);
    QString rootTitle() const;

    Workspace *const m_workspace;
    DocumentPane *m_pane;
    Actions *m_actions;
    Commands *m_commands;
    PathBar *m_path;
    SearchBar *m_search;
    PlacesPanel *m_places;
    MessageBar *m_offline;
    MessageBar *m_message;
    MessageBar *m_edits;
    Panels *m_panels;
    FirstSteps *m_firstSteps;
    QLabel *m_transferState;
    QLabel *m_counts;
    QLabel *m_who;
    VellChangePoll *m_poll;
    const std::unique_ptr<TaskbarProgress> m_taskbar;
    Location m_location;
    Location m_beforeSearch;
    NavigationHistory m_history;
    QPointer<VellOperation> m_rightQuestion;
    bool m_mayUpload = true;
};

} // namespace desktop
