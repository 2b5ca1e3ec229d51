#include <velldoc/transfer/UploadAttempt.h>

#include <async_ops/AsyncCreateDocument.h>
#include <async_ops/VellUploadLimits.h>
#include <document_model/DocumentConversions.h>
#include <velldoc/Session.h>
#include <velldoc/output/Terminal.h>

#include <VellNetwork/NetworkSettings.h>

namespace velldoc {

namespace {

using namespace std::chrono_literals;

// The transport has its own time-out; only when even that has said nothing the job is given up.
constexpr std::chrono::milliseconds Patience = 5s;
constexpr std::chrono::milliseconds HashInterval = 100ms;
constexpr int MostRepeats = 8;

} // namespace

UploadAttempt::UploadAttempt(Session &session, const UploadTask &task)
    : m_session(session), m_task(task), m_job(new AsyncCreateDocument(this))
{
    connect(m_job, &AsyncCreateDocument::createDocumentFinish, this,
            [this](const VellDocument &document) {
                m_document = document;
                end(Outcome::Stored);
            });
    connect(m_job, &AsyncCreateDocument::error, this, [this] {
        m_failure = m_session.lastFailure();
        end(Outcome::Failed);
    });
    connect(m_job, &AsyncCreateDocument::uploadProgress, this, &UploadAttempt::noteProgress);
    m_watch.setSingleShot(true);
    m_watch.setInterval(NetworkSettings::instance().stallTimeout() + Patience);
    connect(&m_watch, &QTimer::timeout, this, [this] { end(Outcome::Silent); });
    m_hashWatch.setInterval(HashInterval);
    connect(&m_hashWatch, &QTimer::timeout, this, &UploadAttempt::progressed);
}

UploadAttempt::~UploadAttempt() = default;

void UploadAttempt::start()
{
    VellDocument document = m_task.replaced.value_or(VellDocument());
    VellPubDoc::getVellDocument(m_task.localPath, document);
    document.type = QStringLiteral("file");
    document.name = m_task.name;
    document.parentId = m_task.parentId;
    document.fileSize = m_task.sizeBytes;
    m_isHashing = m_task.isChunked();
    if (m_isHashing) {
        m_hashWatch.start();
        Q_EMIT progressed();
    }
    if (m_task.replaced)
        m_job->updateDocument(document.hostId, document);
    else
        m_job->createDocument(QString(), document);
    m_hashWatch.stop();
    m_isHashing = false;
    if (m_outcome == Outcome::Running)
        m_watch.start();
}

qint64 UploadAttempt::sentBytes() const
{
    return m_outcome == Outcome::Stored ? m_task.sizeBytes
                                        : qBound(qint64(0), m_sentBytes, m_task.sizeBytes - 1);
}

qint64 UploadAttempt::hashedBytes() const
{
    return qMax(qint64(0), system_files::readPosition(m_task.localPath));
}

void UploadAttempt::noteProgress(qint64 sentBytes, qint64 totalBytes)
{
    m_isHashing = false;
    // Of a small file both figures include the frame of the request.
    if (!m_task.isChunked() && totalBytes > 0)
        sentBytes =
            static_cast<qint64>(double(sentBytes) / double(totalBytes) * double(m_task.sizeBytes));
    if (m_task.isChunked())
        countRepeats(sentBytes);
    m_sentBytes = qMax(m_sentBytes, sentBytes);
    if (m_watch.isActive())
        m_watch.start();
    Q_EMIT progressed();
}

void UploadAttempt::countRepeats(qint64 sentBytes)
{
    const qint64 chunk = sentBytes / VellUploadLimits::ChunkBytes;
    if (chunk < m_lastChunk)
        ++m_repeats;
    else if (sentBytes > m_sentBytes + VellUploadLimits::ChunkBytes / 2)
        m_repeats = 0;
    m_lastChunk = chunk;
    if (m_repeats > MostRepeats)
        end(Outcome::Silent);
}

void UploadAttempt::end(Outcome outcome)
{
    if (m_outcome != Outcome::Running)
        return;
    m_outcome = outcome;
    m_watch.stop();
    Q_EMIT ended();
}

} // namespace velldoc
