#include <desktop/transfers/BatchWatch.h>

namespace desktop {

BatchWatch::BatchWatch(VellTransferQueue *queue, QObject *parent) : QObject(parent), m_queue(queue)
{
    connect(queue, &VellTransferQueue::added, this, &BatchWatch::add);
    connect(queue, &VellTransferQueue::changed, this, &BatchWatch::add); // started again
    connect(queue, &VellTransferQueue::ended, this, &BatchWatch::end);
}

void BatchWatch::add(const QVector<qint64> &ids)
{
    for (const qint64 id : ids) {
        const VellTransfer transfer = m_queue->transfer(id);
        if (transfer.id != 0 && !transfer.isEnded())
            m_batches[transfer.batch].open.insert(id);
    }
}

void BatchWatch::end(const VellTransfer &transfer)
{
    const auto found = m_batches.find(transfer.batch);
    if (found == m_batches.end() || !found->open.remove(transfer.id))
        return;
    if (transfer.state == VellTransferState::Failed)
        ++found->failedCount;
    else if (transfer.isSkipped)
        ++found->skippedCount;
    else if (transfer.state == VellTransferState::Done && !transfer.isFolder)
        ++(transfer.direction == VellTransferDirection::Upload ? found->uploadCount
                                                               : found->downloadCount);
    if (!found->open.isEmpty())
        return;
    const Batch batch = *found;
    m_batches.erase(found);
    const QString words = text(batch);
    if (!words.isEmpty())
        Q_EMIT batchEnded(words, batch.failedCount);
}

QString BatchWatch::text(const Batch &batch)
{
    QStringList parts;
    if (batch.uploadCount > 0)
        parts.append(tr("%n files uploaded", nullptr, batch.uploadCount));
    if (batch.downloadCount > 0)
        parts.append(tr("%n files downloaded", nullptr, batch.downloadCount));
    if (batch.skippedCount > 0)
        parts.append(tr("%n skipped", nullptr, batch.skippedCount));
    if (batch.failedCount > 0)
        parts.append(tr("%n failed", nullptr, batch.failedCount));
    return parts.join(QStringLiteral(", "));
}

} // namespace desktop
