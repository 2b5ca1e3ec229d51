#include <desktop/editing/EditedFiles.h>

#include <documents/VellDocuments.h>
#include <session/VellSession.h>
#include <transfer/VellTransferQueue.h>

#include <QCryptographicHash>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrl>

#include <algorithm>

namespace desktop {

namespace {

constexpr int KeptDays = 7; // for files without changes

} // namespace

EditedFiles::EditedFiles(VellDocuments *documents, VellTransferQueue *queue, const QString &folder,
                         QObject *parent)
    : QObject(parent), m_documents(documents), m_queue(queue), m_folder(folder),
      m_files(edited_file_list::read(listPath()))
{
    connect(queue, &VellTransferQueue::ended, this,
            [this](const VellTransfer &transfer, const VellDocument &document) {
                if (const Ended then = m_waiting.take(transfer.id))
                    then(transfer, document);
            });
    connect(&m_watch, &VellFileWatch::changed, this, [this](const QString &path) {
        m_changed.insert(path);
        Q_EMIT changed(path);
    });
    connect(documents->session(), &VellSession::projectChanged, this, [this](const QString &id) {
        if (!id.isEmpty())
            load();
    });
}

QString EditedFiles::listPath() const
{
    return m_folder + QStringLiteral("/opened.json");
}

void EditedFiles::load()
{
    const VellSession *const session = m_documents->session();
    const QDateTime oldest = QDateTime::currentDateTime().addDays(-KeptDays);
    const auto isOver = [&oldest](const EditedFile &file) {
        return !QFileInfo(file.path).isFile() || (!file.isChanged() && file.localTime < oldest);
    };
    for (const EditedFile &file : qAsConst(m_files)) {
        if (isOver(file))
            QFile::remove(file.path);
    }
    m_files.erase(std::remove_if(m_files.begin(), m_files.end(), isOver), m_files.end());
    save();
    const QList<EditedFile> files = m_files;
    for (const EditedFile &file : files) {
        if (file.address != session->connection().address
            || file.document.projectId != session->projectId() || m_changed.contains(file.path))
            continue;
        m_watch.add(file.path, file.document);
        if (file.isChanged()) { // while this program was not running
            m_changed.insert(file.path);
            Q_EMIT changed(file.path);
        }
    }
}

void EditedFiles::save()
{
    if (!edited_file_list::write(listPath(), m_files)) {
        Q_EMIT failed(tr("The list of opened files cannot be written. Changes of opened files are "
                         "only detected while the program is running."),
                      VellError::of(VellError::Kind::LocalFile, {}, listPath()));
    }
}

EditedFile *EditedFiles::find(const QString &path)
{
    const auto found = std::find_if(m_files.begin(), m_files.end(),
                                    [&path](const EditedFile &f) { return f.path == path; });
    return found == m_files.end() ? nullptr : &*found;
}

EditedFile *EditedFiles::findDocument(const QString &id)
{
    const VellSession *const session = m_documents->session();
    const auto found = std::find_if(m_files.begin(), m_files.end(), [&](const EditedFile &file) {
        return file.document._id == id && file.document.projectId == session->projectId()
            && file.address == session->connection().address;
    });
    return found == m_files.end() ? nullptr : &*found;
}

QStringList EditedFiles::changedPaths() const
{
    QStringList paths = m_changed.values();
    paths.sort();
    return paths;
}

void EditedFiles::whenEnded(qint64 transfer, const Ended &then)
{
    m_ownTransfers.insert(transfer);
    m_waiting.insert(transfer, then);
}

void EditedFiles::open(const VellDocument &document)
{
    const EditedFile *const file = findDocument(document._id);
    const bool isThere = file && QFileInfo(file->path).isFile();
    const bool isLocalChanged = isThere && (m_changed.contains(file->path) || file->isChanged());
    const bool isLatest = isThere && file->document.fileId == document.fileId;
    if (isThere && (isLocalChanged || isLatest))
        show(file->path);
    else
        fetch(document);
}

//! Returns the folder for the file of the document \a id. Names of the service are not used, because they may be unsafe as paths.
QString EditedFiles::folderOf(const QString &id) const
{
    const VellSession *const session = m_documents->session();
    const QString key = session->connection().address + QLatin1Char(' ') + session->projectId()
        + QLatin1Char(' ') + id;
    const QByteArray name =
        QCryptographicHash::hash(key.toUtf8(), QCryptographicHash::Sha256).toHex().left(32);
    return m_folder + QLatin1Char('/') + QString::fromLatin1(name);
}

void EditedFiles::fetch(const VellDocument &document)
{
    const qint64 id =
        m_queue->download(document, folderOf(document._id), VellConflictPolicy::Replace);
    whenEnded(id, [this](const VellTransfer &transfer, const VellDocument &fetched) {
        if (transfer.state != VellTransferState::Done) {
            if (transfer.state == VellTransferState::Failed)
                Q_EMIT failed(tr("“%1” could not be opened.").arg(transfer.name) + QLatin1Char(' ')
                                  + transfer.error.text,
                              transfer.error);
            return;
        }
        EditedFile file;
        file.path = QFileInfo(transfer.localPath).absoluteFilePath();
        file.address = m_documents->session()->connection().address;
        file.document = fetched;
        file.document.projectId = m_documents->session()->projectId();
        file.noteLocalState();
        follow(file);
        m_queue->remove(transfer.id);
        show(file.path);
    });
}

//! Watches \a file instead of an earlier one with the same path.
void EditedFiles::follow(const EditedFile &file)
{
    const auto isSame = [&file](const EditedFile &other) {
        return other.path == file.path
            || (other.document._id == file.document._id && other.address == file.address);
    };
    for (const EditedFile &other : qAsConst(m_files)) {
        if (isSame(other))
            m_watch.remove(other.path);
    }
    m_files.erase(std::remove_if(m_files.begin(), m_files.end(), isSame), m_files.end());
    m_files.append(file);
    m_changed.remove(file.path);
    save();
    m_watch.add(file.path, file.document);
}

void EditedFiles::show(const QString &path)
{
    if (QDesktopServices::openUrl(QUrl::fromLocalFile(path)))
        Q_EMIT opened(path);
    else
        Q_EMIT failed(
            tr("There is no program for “%1” on this computer.").arg(QFileInfo(path).fileName()),
            VellError::of(VellError::Kind::LocalFile, {}, path));
}

void EditedFiles::store(const QString &path)
{
    const EditedFile sent = asSent(path);
    const qint64 id = m_watch.queueVersion(path, m_queue);
    if (id == 0)
        return;
    whenEnded(id, [this, path, sent](const VellTransfer &transfer, const VellDocument &document) {
        if (transfer.state == VellTransferState::Done) {
            onStored(sent, document);
        } else if (transfer.error.kind == VellError::Kind::ChangedMeanwhile) {
            m_queue->remove(transfer.id); // the decision starts another transfer
            lookForConflict(path);
        } else if (transfer.state == VellTransferState::Failed) {
            Q_EMIT failed(tr("The changes of “%1” could not be stored.").arg(transfer.name)
                              + QLatin1Char(' ') + transfer.error.text,
                          transfer.error);
        }
    });
}

//! Returns the state of the file \a path when its upload starts.
EditedFile EditedFiles::asSent(const QString &path)
{
    const EditedFile *const known = find(path);
    EditedFile file = known ? *known : EditedFile();
    file.path = path;
    file.noteLocalState();
    return file;
}

void EditedFiles::onStored(EditedFile sent, const VellDocument &document)
{
    const QString projectId = sent.document.projectId;
    sent.document = document;
    sent.document.projectId = projectId;
    follow(sent);
    Q_EMIT stored(sent.path, document);
    if (sent.isChanged()) { // saved again during the upload
        m_changed.insert(sent.path);
        Q_EMIT changed(sent.path);
    }
}

void EditedFiles::lookForConflict(const QString &path)
{
    const QString id = m_watch.document(path)._id;
    m_documents->document(id)->then(
        this,
        [this, path](const VellDocument &current) {
            Q_EMIT conflictFound(path, current.recycle == 0 ? current : VellDocument());
        },
        [this, path](const VellError &error) {
            if (error.kind == VellError::Kind::NotFound)
                Q_EMIT conflictFound(path, VellDocument());
            else
                Q_EMIT failed(
                    tr("The changes of “%1” could not be stored.").arg(QFileInfo(path).fileName())
                        + QLatin1Char(' ') + error.text,
                    error);
        });
}

void EditedFiles::resolve(const QString &path, const VellDocument &current, Way way)
{
    const VellDocument base = m_watch.document(path);
    if (way == Way::DiscardMine && !current._id.isEmpty()) {
        m_changed.remove(path);
        fetch(current);
        return;
    }
    const EditedFile sent = asSent(path);
    const bool isOnTop = way == Way::NewVersion && !current._id.isEmpty();
    const qint64 id = isOnTop ? m_queue->uploadVersion(path, current)
                              : m_queue->upload(path, base.parentId, VellConflictPolicy::KeepBoth);
    whenEnded(id, [this, path, sent](const VellTransfer &transfer, const VellDocument &document) {
        if (transfer.state == VellTransferState::Done)
            onStored(sent, document);
        else if (transfer.error.kind == VellError::Kind::ChangedMeanwhile)
            lookForConflict(path);
        else if (transfer.state == VellTransferState::Failed)
            Q_EMIT failed(tr("The changes of “%1” could not be stored.").arg(transfer.name)
                              + QLatin1Char(' ') + transfer.error.text,
                          transfer.error);
    });
}

} // namespace desktop
