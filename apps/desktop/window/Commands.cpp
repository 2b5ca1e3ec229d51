#include <desktop/window/Commands.h>

#include <desktop/app/Workspace.h>
#include <desktop/changes/DocumentMime.h>
#include <desktop/lists/DocumentPane.h>

#include <documents/VellDocumentStore.h>

#include <QClipboard>
#include <QFileDialog>
#include <QGuiApplication>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QStandardPaths>

#include <algorithm>

namespace desktop {

Commands::Commands(Workspace *workspace, DocumentPane *pane, QWidget *window)
    : QObject(window), m_workspace(workspace), m_pane(pane), m_window(window)
{}

void Commands::setLocation(const Location &location)
{
    m_folderId = location.kind == Location::Kind::Folder ? location.folderId : QString();
    m_isFrequentPlace = location.kind == Location::Kind::Frequent;
}

bool Commands::run(ActionId action)
{
    DocumentChanges &changes = m_workspace->changes;
    switch (action) {
    case ActionId::NewFolder:
        changes.createFolder(m_folderId);
        return true;
    case ActionId::UploadFiles:
        chooseFiles();
        return true;
    case ActionId::UploadFolder:
        chooseFolder();
        return true;
    case ActionId::Download:
        download();
        return true;
    case ActionId::Rename:
        m_pane->editName(m_pane->selection().constFirst()._id);
        return true;
    case ActionId::Cut:
        cut();
        return true;
    case ActionId::Paste:
        paste();
        return true;
    case ActionId::Delete:
        changes.remove(m_pane->selection());
        return true;
    case ActionId::Restore:
        changes.restore(m_pane->selection());
        return true;
    case ActionId::EmptyRecycleBin:
        confirmEmptying();
        return true;
    case ActionId::Undo:
        changes.undo();
        return true;
    case ActionId::SelectAll:
        m_pane->selectAll();
        return true;
    case ActionId::MarkFavorite:
        toggleFavorite();
        return true;
    case ActionId::MarkFrequent:
        changes.setFrequent(m_pane->selection(), !m_isFrequentPlace);
        return true;
    default:
        return false;
    }
}

void Commands::move(const QStringList &ids, const QString &folderId)
{
    QList<VellDocument> documents;
    for (const QString &id : ids) {
        if (const auto document = m_workspace->documents.store()->document(id))
            documents.append(*document);
    }
    m_workspace->changes.move(documents, folderId);
}

void Commands::upload(const QStringList &paths, const QString &folderId)
{
    if (paths.isEmpty())
        return;
    const int batch = m_workspace->queue.addBatch(VellConflictPolicy::Ask);
    for (const QString &path : paths)
        m_workspace->queue.upload(path, folderId, batch);
    Q_EMIT transfersStarted();
}

void Commands::chooseFiles()
{
    auto *const dialog = new QFileDialog(m_window, tr("Upload Files"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFiles);
    connect(dialog, &QFileDialog::filesSelected, this,
            [this, folder = m_folderId](const QStringList &paths) { upload(paths, folder); });
    dialog->open();
}

void Commands::chooseFolder()
{
    auto *const dialog = new QFileDialog(m_window, tr("Upload Folder"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    connect(dialog, &QFileDialog::filesSelected, this,
            [this, folder = m_folderId](const QStringList &paths) { upload(paths, folder); });
    dialog->open();
}

void Commands::download()
{
    auto *const dialog =
        new QFileDialog(m_window, tr("Download To"),
                        QStandardPaths::writableLocation(QStandardPaths::DownloadLocation));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setObjectName(QStringLiteral("downloadInto"));
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    connect(dialog, &QFileDialog::fileSelected, this,
            [this, documents = m_pane->selection()](const QString &folder) {
                const int batch = m_workspace->queue.addBatch(VellConflictPolicy::Ask);
                for (const VellDocument &document : documents)
                    m_workspace->queue.download(document, folder, batch);
                Q_EMIT transfersStarted();
            });
    dialog->open();
}

void Commands::cut()
{
    QStringList ids;
    const QList<VellDocument> documents = m_pane->selection();
    for (const VellDocument &document : documents)
        ids.append(document._id);
    QGuiApplication::clipboard()->setMimeData(
        document_mime::make(m_workspace->session.projectId(), ids));
}

void Commands::paste()
{
    QClipboard *const clipboard = QGuiApplication::clipboard();
    const QStringList ids =
        document_mime::ids(clipboard->mimeData(), m_workspace->session.projectId());
    if (ids.isEmpty()) {
        upload(document_mime::localPaths(clipboard->mimeData()), m_folderId);
        return;
    }
    move(ids, m_folderId);
    clipboard->clear(); // cut documents can be pasted only once
}

void Commands::confirmEmptying()
{
    VellDocumentConditon condition = VellDocumentSource::recycleBin().condition();
    m_workspace->documents.count(condition)->then(
        this,
        [this](int count) {
            auto *const box = new QMessageBox(
                QMessageBox::Warning, tr("Empty Recycle Bin"),
                tr("Permanently delete %n entries of the recycle bin with all their contents?",
                   nullptr, count),
                QMessageBox::Cancel, m_window);
            box->setAttribute(Qt::WA_DeleteOnClose);
            QPushButton *const confirm =
                box->addButton(tr("&Delete Permanently"), QMessageBox::DestructiveRole);
            confirm->setObjectName(QStringLiteral("confirm"));
            box->setDefaultButton(QMessageBox::Cancel);
            connect(confirm, &QPushButton::clicked, this,
                    [this] { m_workspace->changes.emptyRecycleBin(); });
            box->open();
        },
        [this](const VellError &error) {
            Q_EMIT m_workspace->changes.failed(
                tr("The number of entries in the recycle bin could not be requested.")
                    + QLatin1Char(' ') + error.text,
                error);
        });
}

void Commands::toggleFavorite()
{
    const QList<VellDocument> documents = m_pane->selection();
    const bool areAll = std::all_of(documents.begin(), documents.end(),
                                    [](const VellDocument &document) { return document.favorite; });
    m_workspace->changes.setFavorite(documents, !areAll);
}

} // namespace desktop
