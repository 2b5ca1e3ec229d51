#include <desktop/transfers/BatchWatch.h>

#include <utility>

namespace desktop {

BatchWatch::BatchWatch(VellTransferQueue *queue, std::function<bool(qint64)> isReportedElsewhere,
                       QObject *parent)
    : QObject(parent), m_queue(queue), m_isReportedElsewhere(std::move(isReportedElsewhere))
{
    connect(queue, &VellTransferQueue::added, this, &BatchWatch::add);
    connect(queue, &VellTransferQueue::changed, this, &BatchWatch::add); // started again
    connect(queue, &VellTransferQueue::ended, this, &BatchWatch::end);
}

void BatchWatch::add(const QVector<qint64> &ids)
{
    for (const qint64 id : ids) {
        const VellTransfer transfer = m_queue->transfer(id);
        if (transfer.id != 0 && !transfer.isEnded() && !m_isReportedElsewhere(id))
            m_batches[transfer.batch].open.insert(id);
    }
}

void BatchWatch::end(const VellTransfer &transfer)
{
    if (m_isReportedElsewhere(transfer.id))
        return;
    // A transfer that fails at once ends before it is announced.
    Batch &batch = m_batches[transfer.batch];
    batch.open.remove(transfer.id);
    if (transfer.state == VellTransferState::Failed)
        ++batch.failedCount;
    else if (transfer.isSkipped)
        ++batch.skippedCount;
    else if (transfer.state == VellTransferState::Done && !transfer.isFolder)
        ++(transfer.direction == VellTransferDirection::Upload ? batch.uploadCount
                                                               : batch.downloadCount);
    if (!batch.open.isEmpty())
        return;
    const Batch ended = m_batches.take(transfer.batch);
    const QString words = text(ended);
    if (!words.isEmpty())
        Q_EMIT batchEnded(words, ended.failedCount);
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
