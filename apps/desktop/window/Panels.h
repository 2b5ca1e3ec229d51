#pragma once

#include <document_model/VellDocument.h>

#include <QList>
#include <QObject>
#include <QPointer>

class QAction;
class QDockWidget;
class QMainWindow;
class QSystemTrayIcon;

namespace desktop {

class ConflictDesk;
class InformationPanel;
class MessageBar;
class TransferPanel;
class Workspace;

//! \brief The panels around the list: transfers and information, with their dialogs.
class Panels : public QObject
{
    Q_OBJECT

public:
    //! \param workspace and \a window must outlive this object
    //! \param editBar for the question about changed files
    Panels(Workspace *workspace, MessageBar *editBar, QMainWindow *window);

    //! Shows the selection.
    void showDocuments(const QList<VellDocument> &documents);

    //! Returns the actions that show and hide the panels, for the menu.
    QAction *informationAction() const;
    QAction *transfersAction() const;

    //! Returns one line about the transfers; empty if none is running.
    QString transferSummary() const;
    //! Returns the progress, 0 to 100.
    int transferPercent() const;

    void showTransfers();
    void showVersions(const VellDocument &document);
    void showShareDialog(const QList<VellDocument> &documents);
    void showShares();

Q_SIGNALS:
    void transfersChanged();
    //! \param text a sentence about a success
    void done(const QString &text);
    //! \param text a sentence about a failure
    void failed(const QString &text);

private:
    QDockWidget *addDock(QWidget *panel, const QString &title, const QString &name, int area);
    void reportEnd(const QString &text, int failedCount);

    Workspace *const m_workspace;
    QMainWindow *const m_window;
    TransferPanel *m_transfers;
    InformationPanel *m_information;
    ConflictDesk *m_conflicts;
    QDockWidget *m_transferDock;
    QDockWidget *m_informationDock;
    QSystemTrayIcon *m_tray = nullptr; // null if the system has no tray
};

} // namespace desktop
