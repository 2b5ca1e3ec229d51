#pragma once

#include <velldoc/Failure.h>
#include <velldoc/output/Progress.h>

#include <transfer/VellTransferQueue.h>

#include <QEventLoop>
#include <QList>
#include <QSet>
#include <QTimer>
#include <QVector>

#include <optional>

namespace velldoc {

class Context;

//! \brief The transfers of one command: a queue, its progress on the terminal, and when to give up.
class Transfers
{
public:
    struct Done
    {
        qint64 id = 0;
        VellDocument document; //!< what an upload has made, or the source of a download
    };

    struct Failed
    {
        qint64 id = 0;
        Failure reason;
    };

    //! \param totalBytes of all that will be transferred
    Transfers(Context &context, qint64 totalBytes);
    ~Transfers();
    Q_DISABLE_COPY(Transfers)

    //! To add transfers to, before run().
    VellTransferQueue &queue() { return m_queue; }
    //! For transfers whose conflicts are settled: one that arises later makes the transfer fail.
    int batch() const { return m_batch; }

    //! Waits until each transfer has ended, and says which are tried again.
    //! \param firstName for the progress of a single file
    //! \throws Failure if it is of no use to go on with those that are left: no connection, no permission, no room, Ctrl-C. done()
    //! and failed() have what had ended by then.
    void run(const QString &firstName);

    const QVector<Done> &done() const { return m_done; }
    const QList<Failed> &failed() const { return m_failed; }
    qint64 doneBytes() const;

private:
    void note(const QVector<qint64> &ids);
    void takeEnd(const VellTransfer &transfer, const VellDocument &document);
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
    QTimer m_patience; // while the service cannot be reached
    int m_count = 0;
    int m_endedCount = 0;
    QString m_firstName;
    qint64 m_hashing = 0; // the transfer whose file is being read
    bool m_isHashingShown = false;
    QSet<qint64> m_retried; // that have been told of
    QSet<qint64> m_taken; // whose names have been taken meanwhile
    VellError m_lastError;
    std::optional<Failure> m_fatal;
    QVector<Done> m_done;
    QList<Failed> m_failed;
};

} // namespace velldoc
