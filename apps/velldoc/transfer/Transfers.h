#pragma once

#include <velldoc/output/Progress.h>
#include <velldoc/program/Failure.h>

#include <transfer/VellTransferQueue.h>

#include <QEventLoop>
#include <QList>
#include <QSet>
#include <QTimer>
#include <QVector>

#include <optional>

namespace velldoc {

class Context;

//! \brief The transfers of one command: a queue with progress on the terminal.
class Transfers
{
public:
    struct Done
    {
        qint64 id = 0;
        VellDocument document; //!< the result of an upload, or the source of a download
    };

    struct Failed
    {
        qint64 id = 0;
        Failure reason;
    };

    //! \param totalBytes the size of all transfers
    Transfers(Context &context, qint64 totalBytes);
    ~Transfers();
    Q_DISABLE_COPY(Transfers)

    //! Returns the queue. Add transfers before run().
    VellTransferQueue &queue() { return m_queue; }
    //! Returns the batch for transfers without conflicts: if there is a conflict nevertheless, the transfer fails.
    int batch() const { return m_batch; }

    //! Waits until all transfers have ended, and reports retries.
    //! \param firstName for the progress of a single file
    //! \throws Failure if the remaining transfers would fail, too: no connection, no permission, disk full, Ctrl-C. done()
    //! and failed() contain the transfers that have ended before.
    void run(const QString &firstName);

    const QVector<Done> &done() const { return m_done; }
    const QList<Failed> &failed() const { return m_failed; }
    qint64 doneBytes() const;

private:
    void note(const QVector<qint64> &ids);
    void onEnded(const VellTransfer &transfer, const VellDocument &document);
    void giveUp(const Failure &reason);
    void watchConnection();
    void showProgress();
    QString label() const;

    Context &m_context;
    const qint64 m_totalBytes;
    Progress m_progress;
    VellTransferQueue m_queue;
    const int m_batch;
    QEventLoop m_loop;
    QTimer m_giveUp; // running while the service cannot be reached
    int m_count = 0;
    int m_endedCount = 0;
    QString m_firstName;
    qint64 m_hashing = 0; // the transfer whose file is being read
    bool m_isHashingShown = false;
    QSet<qint64> m_retried; // whose retries have been reported
    QSet<qint64> m_taken; // whose names are no longer free
    VellError m_lastError;
    std::optional<Failure> m_fatal;
    QVector<Done> m_done;
    QList<Failed> m_failed;
};

} // namespace velldoc
