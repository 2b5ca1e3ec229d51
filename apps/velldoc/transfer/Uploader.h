#pragma once

#include <velldoc/Failure.h>
#include <velldoc/output/Progress.h>
#include <velldoc/transfer/UploadTask.h>

#include <QEventLoop>
#include <QList>
#include <QPair>

#include <memory>
#include <optional>
#include <vector>

namespace velldoc {

class Context;
class UploadAttempt;

//! \brief Stores a list of files: small ones a few at a time, large ones alone, each until the service has it.
//!
//! A try that failed is followed by another, a bounded number of times in a row without progress; before it
//! the service is asked whether the document is there all the same, because its answer may have been lost.
class Uploader
{
public:
    struct Stored
    {
        UploadTask task;
        VellDocument document;
    };

    Uploader(Context &context, qint64 totalBytes);
    ~Uploader();
    Q_DISABLE_COPY(Uploader)

    //! \throws Failure when it is of no use to go on with the files that are left: no connection, no
    //! permission, no room, Ctrl-C. What was stored until then is in stored().
    void run(const QList<UploadTask> &tasks);

    const QList<Stored> &stored() const { return m_stored; }

    //! The files that could not be stored, each with the reason.
    const QList<QPair<UploadTask, Failure>> &failed() const { return m_failed; }

private:
    struct Entry
    {
        UploadTask task;
        int failuresInRow = 0;
        qint64 farthestChunk = 0;
        std::unique_ptr<UploadAttempt> attempt;
    };

    void startMore();
    bool mayStart(const UploadTask &next) const;
    void startFirst();
    void waitForAnEnd();
    void collect();
    void judge(Entry entry);
    void accept(Entry entry, const VellDocument &document);
    void tryAgain(Entry entry, const Failure &reason);
    std::optional<VellDocument> findStored(const UploadTask &task);
    std::optional<VellDocument> lookUp(const UploadTask &task);
    Failure reasonOf(const UploadAttempt &attempt) const;
    void showProgress(const UploadAttempt &attempt, const UploadTask &task);
    QString label() const;

    Context &m_context;
    const qint64 m_totalBytes;
    qint64 m_doneBytes = 0;
    int m_fileCount = 0;
    QString m_firstName;
    Progress m_progress;
    const UploadAttempt *m_hashing = nullptr;
    std::vector<Entry> m_waiting; //!< the next one is the last
    std::vector<Entry> m_running;
    QEventLoop m_loop;
    QList<Stored> m_stored;
    QList<QPair<UploadTask, Failure>> m_failed;
};

} // namespace velldoc
