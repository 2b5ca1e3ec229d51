#include <desktop/editing/EditDesk.h>

#include <desktop/editing/EditedFiles.h>
#include <desktop/editing/VersionConflictDialog.h>
#include <desktop/settings/AppSettings.h>
#include <desktop/window/MessageBar.h>

#include <session/VellSession.h>

#include <QFileInfo>

namespace desktop {

EditDesk::EditDesk(EditedFiles *files, AppSettings *settings, VellSession *session, MessageBar *bar,
                   QWidget *window)
    : QObject(window), m_files(files), m_settings(settings), m_session(session), m_bar(bar),
      m_window(window)
{
    connect(files, &EditedFiles::changed, this, &EditDesk::onChanged);
    connect(files, &EditedFiles::conflictFound, this, &EditDesk::showConflict);
    connect(files, &EditedFiles::failed, this, [this](const QString &text) {
        Q_EMIT failed(text);
        ask(); // its changes have not been uploaded yet
    });
    connect(files, &EditedFiles::stored, this,
            [this](const QString &, const VellDocument &document) {
                Q_EMIT done(tr("“%1” has been stored.").arg(document.name));
                ask();
            });
    connect(files, &EditedFiles::opened, this, &EditDesk::ask);
    connect(bar, &MessageBar::accepted, this, &EditDesk::storeAll);
    ask();
}

void EditDesk::onChanged(const QString &path)
{
    if (m_settings->isSavedWithoutAsking())
        m_files->store(path);
    else
        ask();
}

void EditDesk::ask()
{
    const QStringList paths = m_files->changedPaths();
    if (paths.isEmpty()) {
        m_bar->hide();
        return;
    }
    const QString text = paths.size() == 1
        ? tr("You have changed “%1” on this computer.")
              .arg(QFileInfo(paths.constFirst()).fileName())
        : tr("You have changed %n opened files on this computer.", nullptr, paths.size());
    m_bar->say(MessageBar::Kind::Note, text, tr("&Make New Version"));
}

void EditDesk::storeAll()
{
    m_bar->hide();
    const QStringList paths = m_files->changedPaths();
    for (const QString &path : paths)
        m_files->store(path);
}

void EditDesk::showConflict(const QString &path, const VellDocument &current)
{
    auto *const dialog =
        new VersionConflictDialog(path, current, m_session->userName(current.updatedBy), m_window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this,
            [this, dialog, path, current] { m_files->resolve(path, current, dialog->way()); });
    connect(dialog, &QDialog::rejected, this, &EditDesk::ask);
    dialog->open();
}

} // namespace desktop
