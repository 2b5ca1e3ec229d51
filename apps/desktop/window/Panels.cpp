#include <desktop/window/Panels.h>

#include <desktop/app/Workspace.h>
#include <desktop/editing/EditDesk.h>
#include <desktop/information/InformationPanel.h>
#include <desktop/shares/ShareDialog.h>
#include <desktop/shares/SharesDialog.h>
#include <desktop/transfers/BatchWatch.h>
#include <desktop/transfers/ConflictDesk.h>
#include <desktop/transfers/TransferPanel.h>
#include <desktop/versions/VersionsDialog.h>

#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QMainWindow>
#include <QSystemTrayIcon>

namespace desktop {

namespace {

constexpr int TransferHeight = 170;
constexpr int InformationWidth = 260;

void openDialog(QDialog *dialog)
{
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

} // namespace

Panels::Panels(Workspace *workspace, MessageBar *editBar, QMainWindow *window)
    : QObject(window), m_workspace(workspace), m_window(window),
      m_transfers(new TransferPanel(&workspace->queue)),
      m_information(new InformationPanel(&workspace->documents)),
      m_conflicts(new ConflictDesk(&workspace->queue, &workspace->session, window)),
      m_transferDock(addDock(m_transfers, tr("Transfers"), QStringLiteral("transferDock"),
                             Qt::BottomDockWidgetArea)),
      m_informationDock(addDock(m_information, tr("Information"), QStringLiteral("informationDock"),
                                Qt::RightDockWidgetArea))
{
    m_transferDock->hide();
    window->setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);
    window->resizeDocks({m_transferDock}, {TransferHeight}, Qt::Vertical);
    window->resizeDocks({m_informationDock}, {InformationWidth}, Qt::Horizontal);
    informationAction()->setShortcut(Qt::ALT + Qt::Key_Return);
    transfersAction()->setShortcut(Qt::CTRL + Qt::Key_J);
    connect(m_transfers, &TransferPanel::answerRequested, m_conflicts, &ConflictDesk::showList);
    connect(m_transfers, &TransferPanel::summaryChanged, this, &Panels::transfersChanged);
    connect(&workspace->queue, &VellTransferQueue::asked, this, &Panels::showTransfers);
    connect(m_information, &InformationPanel::versionsRequested, this, &Panels::showVersions);
    connect(m_information, &InformationPanel::remarkChanged, &workspace->changes,
            &DocumentChanges::setRemark);
    auto *const batches = new BatchWatch(
        &workspace->queue, [workspace](qint64 id) { return workspace->edited.isOwnTransfer(id); },
        this);
    connect(batches, &BatchWatch::batchEnded, this, &Panels::reportEnd);
    auto *const edits = new EditDesk(&workspace->edited, &workspace->settings, &workspace->session,
                                     editBar, window);
    connect(edits, &EditDesk::done, this, &Panels::done);
    connect(edits, &EditDesk::failed, this, &Panels::failed);
    if (QSystemTrayIcon::isSystemTrayAvailable()) {
        m_tray = new QSystemTrayIcon(QApplication::windowIcon(), this);
        connect(m_tray, &QSystemTrayIcon::messageClicked, window, &QWidget::activateWindow);
    }
}

QDockWidget *Panels::addDock(QWidget *panel, const QString &title, const QString &name, int area)
{
    auto *const dock = new QDockWidget(title, m_window);
    dock->setObjectName(name);
    dock->setWidget(panel);
    dock->setFeatures(QDockWidget::DockWidgetClosable | QDockWidget::DockWidgetMovable);
    m_window->addDockWidget(Qt::DockWidgetArea(area), dock);
    return dock;
}

void Panels::showDocuments(const QList<VellDocument> &documents)
{
    m_information->showDocuments(documents);
}

void Panels::showTransfers()
{
    m_transferDock->show();
}

QAction *Panels::informationAction() const
{
    return m_informationDock->toggleViewAction();
}

QAction *Panels::transfersAction() const
{
    return m_transferDock->toggleViewAction();
}

QString Panels::transferSummary() const
{
    return m_transfers->summary();
}

int Panels::transferPercent() const
{
    return m_transfers->percent();
}

void Panels::showVersions(const VellDocument &document)
{
    openDialog(
        new VersionsDialog(&m_workspace->documents, &m_workspace->queue, document, m_window));
}

void Panels::showShareDialog(const QList<VellDocument> &documents)
{
    openDialog(new ShareDialog(&m_workspace->documents, documents, m_window));
}

void Panels::showShares()
{
    openDialog(new SharesDialog(&m_workspace->documents, m_window));
}

void Panels::reportEnd(const QString &text, int failedCount)
{
    if (failedCount > 0)
        Q_EMIT failed(tr("%1. See the list of transfers for the reasons.").arg(text));
    else
        Q_EMIT done(text);
    if (m_window->isActiveWindow())
        return;
    QApplication::alert(m_window);
    if (!m_tray)
        return;
    m_tray->show(); // required for messages
    m_tray->showMessage(tr("Transfers have ended"), text,
                        failedCount > 0 ? QSystemTrayIcon::Warning : QSystemTrayIcon::Information);
}

} // namespace desktop
