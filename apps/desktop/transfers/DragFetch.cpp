#include <desktop/transfers/DragFetch.h>

#include <transfer/VellTransferQueue.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QPointer>
#include <QProgressDialog>
#include <QSet>

namespace desktop {

namespace {

constexpr int DialogDelayMs = 500;

class FetchText
{
    Q_DECLARE_TR_FUNCTIONS(desktop::DragFetch)

public:
    static QString fetching(int count)
    {
        return tr("Downloading %n entries for the other program…", nullptr, count);
    }
    static QString cancel() { return tr("Cancel"); }
};

//! Waits for the end of all transfers of a batch, including the entries of folders.
class BatchEnd
{
public:
    BatchEnd(VellTransferQueue *queue, int batch) : m_queue(queue), m_batch(batch)
    {
        QObject::connect(queue, &VellTransferQueue::added, &m_loop,
                         [this](const QVector<qint64> &ids) { add(ids); });
        QObject::connect(queue, &VellTransferQueue::ended, &m_loop,
                         [this](const VellTransfer &transfer) { end(transfer); });
        QObject::connect(queue, &QObject::destroyed, &m_loop, &QEventLoop::quit);
    }

    void add(const QVector<qint64> &ids)
    {
        for (const qint64 id : ids) {
            const VellTransfer transfer = m_queue->transfer(id);
            if (transfer.batch == m_batch && !transfer.isEnded())
                m_open.insert(id);
        }
    }

    void cancel()
    {
        const QSet<qint64> open = m_open;
        for (const qint64 id : open)
            m_queue->cancel(id);
    }

    //! \return true if all have succeeded
    bool wait()
    {
        if (!m_open.isEmpty())
            m_loop.exec();
        return m_open.isEmpty() && !m_isFailed;
    }

private:
    void end(const VellTransfer &transfer)
    {
        if (transfer.batch != m_batch)
            return;
        m_open.remove(transfer.id);
        m_isFailed = m_isFailed || transfer.state != VellTransferState::Done;
        if (m_open.isEmpty())
            m_loop.quit();
    }

    VellTransferQueue *const m_queue;
    const int m_batch;
    QSet<qint64> m_open;
    bool m_isFailed = false;
    QEventLoop m_loop;
};

} // namespace

QStringList DragFetch::fetch(const QList<VellDocument> &documents, QWidget *window)
{
    const QString folder = m_folder.filePath(QString::number(++m_count));
    const int batch = m_queue->addBatch(VellConflictPolicy::KeepBoth);
    BatchEnd end(m_queue, batch);
    QVector<qint64> ids;
    for (const VellDocument &document : documents)
        ids.append(m_queue->download(document, folder, batch));
    end.add(ids);
    QProgressDialog dialog(FetchText::fetching(documents.size()), FetchText::cancel(), 0, 0,
                           window);
    dialog.setWindowModality(Qt::WindowModal);
    dialog.setMinimumDuration(DialogDelayMs);
    dialog.setValue(0);
    QObject::connect(&dialog, &QProgressDialog::canceled, &dialog, [&end] { end.cancel(); });
    const QPointer<VellTransferQueue> queue(m_queue);
    if (!end.wait() || !queue)
        return {};
    QStringList paths;
    for (const qint64 id : qAsConst(ids))
        paths.append(m_queue->transfer(id).localPath);
    return paths;
}

} // namespace desktop
