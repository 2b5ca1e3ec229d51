#pragma once

#include <velldoc/transfer/UploadTask.h>

#include <VellNetwork/NetworkFailure.h>

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <optional>

class AsyncCreateDocument;

namespace velldoc {

class Session;

//! \brief One try at storing one file: a job of the library, and a watch over it.
//!
//! A job can end without a word; after a time in which nothing moves the try counts as ended. So it does when the
//! service asks for the same chunk again and again.
class UploadAttempt : public QObject
{
    Q_OBJECT

public:
    enum class Outcome {
        Running,
        Stored, //!< document() is what the service answered
        Failed, //!< failure() says why
        Silent, //!< nothing moved any more
    };

    UploadAttempt(Session &session, const UploadTask &task);
    ~UploadAttempt() override;

    //! Of a large file this returns once it has been hashed and its first chunk is under way.
    void start();

    Outcome outcome() const { return m_outcome; }
    const VellDocument &document() const { return m_document; }
    const std::optional<NetworkFailure> &failure() const { return m_failure; }

    //! What has been sent, at most one byte less than the file until it is stored.
    qint64 sentBytes() const;

    //! Whether the file is being hashed, and how far that is.
    bool isHashing() const { return m_isHashing; }
    qint64 hashedBytes() const;

Q_SIGNALS:
    void progressed();
    void ended(); //!< once

private:
    void end(Outcome outcome);
    void noteProgress(qint64 sentBytes, qint64 totalBytes);
    void countRepeats(qint64 sentBytes);

    Session &m_session;
    const UploadTask m_task;
    AsyncCreateDocument *m_job;
    QTimer m_watch;
    QTimer m_hashWatch;
    Outcome m_outcome = Outcome::Running;
    VellDocument m_document;
    std::optional<NetworkFailure> m_failure;
    qint64 m_sentBytes = 0;
    qint64 m_lastChunk = 0;
    int m_repeats = 0; //!< chunks that were sent again since one was kept
    bool m_isHashing = false;
};

} // namespace velldoc
