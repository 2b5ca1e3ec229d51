#include <transfer/VellTransferQueue.h>

#include <transfer/TransferQueue.h>

#include <QDir>
#include <QFileInfo>

namespace {

//! Does not access the disk.
void setLocalPath(TransferRecord &record, const QString &path)
{
    const QString clean = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    const int slash = clean.lastIndexOf(QLatin1Char('/'));
    record.localFolder = clean.left(slash);
    record.localName = clean.mid(slash + 1);
}

TransferRecord uploadRecord(const QString &path, const QString &folderId, int batch)
{
    TransferRecord record;
    record.direction = VellTransferDirection::Upload;
    setLocalPath(record, path);
    record.name = record.localName;
    record.folderId = folderId;
    record.batch = batch;
    return record;
}

//! The caller sets its local path.
TransferRecord downloadRecord(const VellDocument &document, int batch)
{
    TransferRecord record;
    record.direction = VellTransferDirection::Download;
    record.name = document.name;
    record.documentId = document._id;
    record.isFolder = document.type == QLatin1String("dir");
    record.sizeBytes = record.isFolder ? -1 : document.fileSize;
    record.batch = batch;
    return record;
}

} // namespace

VellTransferQueue::VellTransferQueue(QObject *parent)
    : QObject(parent), d(std::make_unique<TransferQueue>(this))
{
    qRegisterMetaType<QVector<qint64>>();
}

VellTransferQueue::~VellTransferQueue() = default;

void VellTransferQueue::open(const QString &path)
{
    d->open(path);
}

void VellTransferQueue::attach(VellDocuments *documents)
{
    d->attach(documents);
}

int VellTransferQueue::addBatch(VellConflictPolicy policy, const QString &category)
{
    return d->addBatch(policy, category);
}

qint64 VellTransferQueue::upload(const QString &path, const QString &folderId, int batch)
{
    return d->add(uploadRecord(path, folderId, batch));
}

qint64 VellTransferQueue::upload(const QString &path, const QString &folderId,
                                 VellConflictPolicy policy)
{
    return upload(path, folderId, addBatch(policy));
}

qint64 VellTransferQueue::uploadAs(const QString &path, const QString &folderId,
                                   const QString &name, int batch)
{
    TransferRecord record = uploadRecord(path, folderId, batch);
    record.name = name;
    return d->add(std::move(record));
}

qint64 VellTransferQueue::uploadVersion(const QString &path, const VellDocument &document)
{
    TransferRecord record =
        uploadRecord(path, document.parentId, addBatch(VellConflictPolicy::Replace));
    record.name = document.name;
    record.base = ReplaceBase::of(document);
    return d->add(std::move(record));
}

qint64 VellTransferQueue::download(const VellDocument &document, const QString &folder, int batch)
{
    TransferRecord record = downloadRecord(document, batch);
    record.localFolder = QDir::cleanPath(QFileInfo(folder).absoluteFilePath());
    record.localName = document.name;
    return d->add(std::move(record));
}

qint64 VellTransferQueue::download(const VellDocument &document, const QString &folder,
                                   VellConflictPolicy policy)
{
    return download(document, folder, addBatch(policy));
}

qint64 VellTransferQueue::downloadAs(const VellDocument &document, const QString &path, int batch)
{
    TransferRecord record = downloadRecord(document, batch);
    setLocalPath(record, path);
    return d->add(std::move(record));
}

qint64 VellTransferQueue::downloadVersion(const VellDocument &version, const QString &path,
                                          int batch)
{
    TransferRecord record = downloadRecord(version, batch);
    setLocalPath(record, path);
    record.isFolder = false;
    record.contentId = version.fileId;
    // Histories do not contain the sizes of large contents.
    record.sizeBytes = version.fileSize > 0 ? version.fileSize : -1;
    return d->add(std::move(record));
}

void VellTransferQueue::pause(qint64 id)
{
    d->command(TransferQueue::Command::Pause, id);
}

void VellTransferQueue::resume(qint64 id)
{
    d->command(TransferQueue::Command::Resume, id);
}

void VellTransferQueue::cancel(qint64 id)
{
    d->command(TransferQueue::Command::Cancel, id);
}

void VellTransferQueue::retry(qint64 id)
{
    d->command(TransferQueue::Command::Retry, id);
}

void VellTransferQueue::moveToFront(qint64 id)
{
    d->moveToFront(id);
}

void VellTransferQueue::pauseAll()
{
    d->commandAll(TransferQueue::Command::Pause);
}

void VellTransferQueue::resumeAll()
{
    d->commandAll(TransferQueue::Command::Resume);
}

void VellTransferQueue::cancelAll()
{
    d->commandAll(TransferQueue::Command::Cancel);
}

void VellTransferQueue::retryAll()
{
    d->commandAll(TransferQueue::Command::RetryFailed);
}

bool VellTransferQueue::remove(qint64 id)
{
    d->command(TransferQueue::Command::Remove, id);
    return d->list().find(id) == nullptr;
}

void VellTransferQueue::removeEnded()
{
    d->commandAll(TransferQueue::Command::Remove);
}

void VellTransferQueue::answer(qint64 id, VellConflictPolicy decision)
{
    d->answer(id, decision);
}

void VellTransferQueue::answerAll(qint64 id, VellConflictPolicy decision)
{
    d->answerAll(id, decision);
}

void VellTransferQueue::setSpeedLimits(qint64 sentPerSecond, qint64 receivedPerSecond)
{
    d->setSpeedLimits(sentPerSecond, receivedPerSecond);
}

void VellTransferQueue::setAttemptLimit(int attempts)
{
    d->setAttemptLimit(attempts);
}

void VellTransferQueue::setTransfersAtOnce(int count)
{
    d->setTransfersAtOnce(count);
}

void VellTransferQueue::setResumesParts(bool resumes)
{
    d->setResumesParts(resumes);
}

VellTransfer VellTransferQueue::transfer(qint64 id) const
{
    return d->snapshot(id);
}

QVector<qint64> VellTransferQueue::ids() const
{
    QVector<qint64> ids;
    ids.reserve(count());
    for (const auto &item : d->list().items())
        ids.append(item.first);
    return ids;
}

int VellTransferQueue::count() const
{
    return int(d->list().items().size());
}

VellTransferTotals VellTransferQueue::totals() const
{
    return d->totals();
}

VellTransferQuestion VellTransferQueue::question(qint64 id) const
{
    return d->question(id);
}
