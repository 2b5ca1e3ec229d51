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

//! \brief What is around the list: the transfers, the information, and the questions that they have.
class Panels : public QObject
{
    Q_OBJECT

public:
    //! \param workspace and \a window must outlive this
    //! \param editBar for the question about changed files
    Panels(Workspace *workspace, MessageBar *editBar, QMainWindow *window);

    //! Shows what is selected.
    void showDocuments(const QList<VellDocument> &documents);

    //! The actions that show and hide the panels, for the menu.
    QAction *informationAction() const;
    QAction *transfersAction() const;

    //! One line about the transfers; empty if none is under way.
    QString transferSummary() const;
    //! 0 to 100.
    int transferPercent() const;

    void showTransfers();
    void showVersions(const VellDocument &document);
    void showShareDialog(const QList<VellDocument> &documents);
    void showShares();

Q_SIGNALS:
    void transfersChanged();
    //! \param text a sentence about something that has been done
    void done(const QString &text);
    //! \param text a sentence about something that has failed
    void failed(const QString &text);

private:
    QDockWidget *addDock(QWidget *panel, const QString &title, const QString &name, int area);
    void tellEnd(const QString &text, int failedCount);

    Workspace *const m_workspace;
    QMainWindow *const m_window;
    TransferPanel *m_transfers;
    InformationPanel *m_information;
    ConflictDesk *m_conflicts;
    QDockWidget *m_transferDock;
    QDockWidget *m_informationDock;
    QSystemTrayIcon *m_tray = nullptr; // where the system has a place for it
};

} // namespace desktop
