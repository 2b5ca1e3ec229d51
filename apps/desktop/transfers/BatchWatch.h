#pragma once

#include <transfer/VellTransferQueue.h>

#include <QHash>
#include <QObject>
#include <QSet>

#include <functional>

namespace desktop {

//! \brief Reports when all transfers of a batch have ended.
class BatchWatch : public QObject
{
    Q_OBJECT

public:
    //! \param queue must outlive this object
    //! \param isReportedElsewhere returns true if another object reports the end of the transfer with this identifier
    BatchWatch(VellTransferQueue *queue, std::function<bool(qint64)> isReportedElsewhere,
               QObject *parent = nullptr);

Q_SIGNALS:
    //! \param text the result of the transfers, for the user
    //! \param failedCount the number of failed transfers
    void batchEnded(const QString &text, int failedCount);

private:
    struct Batch
    {
        QSet<qint64> open;
        int uploadCount = 0;
        int downloadCount = 0;
        int skippedCount = 0;
        int failedCount = 0;
    };

    void add(const QVector<qint64> &ids);
    void end(const VellTransfer &transfer);
    static QString text(const Batch &batch);

    VellTransferQueue *const m_queue;
    const std::function<bool(qint64)> m_isReportedElsewhere;
    QHash<int, Batch> m_batches;
};

} // namespace desktop
