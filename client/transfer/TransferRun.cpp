#include <transfer/TransferRun.h>

#include <transfer/DownloadRun.h>
#include <transfer/TransferJournal.h>
#include <transfer/UploadRun.h>

#include <VellNetwork/RequestContext.h>

#include <QEventLoop>
#include <QTimer>

#include <utility>

namespace {

constexpr int AbortCheckMs = 50;

} // namespace

std::shared_ptr<TransferRun> TransferRun::make(TransferTask task, TransferHub &hub)
{
    if (task.record.direction == VellTransferDirection::Upload)
        return std::make_shared<UploadRun>(std::move(task), hub);
    return std::make_shared<DownloadRun>(std::move(task), hub);
}

TransferRun::TransferRun(TransferTask task, TransferHub &hub, VellTransferState firstStage)
    : m_task(std::move(task)), m_hub(hub),
      m_run(
          m_task.scope,
          [this](OperationRun &) {
              try {
                  work();
              } catch (const OperationFailure &failure) {
                  m_outcome.kind = TransferOutcome::Kind::Failed;
                  m_outcome.error = failure.error;
                  if (failure.error.isTemporary())
                      m_outcome.canTryAgain = true;
              }
          },
          nullptr),
      m_stage(firstStage)
{
    m_outcome.trace = m_task.record.trace;
    m_outcome.entityTag = m_task.record.entityTag;
    m_outcome.isFolder = m_task.record.isFolder;
    m_sizeBytes = m_task.record.sizeBytes;
}

TransferOutcome TransferRun::execute()
{
    // Reported if the attempt is aborted before it has started.
    m_outcome.kind = TransferOutcome::Kind::Failed;
    m_outcome.error = VellError::cancelled();
    // A transfer starts only after it is in the file, so that it is not lost if the program ends.
    if (m_hub.journal)
        m_hub.journal->wait();
    m_run.execute();
    const bool isFinal = m_outcome.kind == TransferOutcome::Kind::Failed && !m_outcome.canTryAgain
        && m_outcome.error.kind != VellError::Kind::Cancelled;
    if (isFinal || m_isDiscarded)
        cleanUp();
    m_outcome.sizeBytes = m_sizeBytes;
    return std::move(m_outcome);
}

void TransferRun::fail(VellError::Kind kind, const QString &text)
{
    throw OperationFailure{VellError::of(kind, text)};
}

void TransferRun::failForNow(VellError::Kind kind, const QString &text)
{
    m_outcome.canTryAgain = true;
    fail(kind, text);
}

void TransferRun::wait(QEventLoop &loop)
{
    QTimer check;
    QObject::connect(&check, &QTimer::timeout, &loop, [&] {
        if (RequestContext::current()->isAborted())
            loop.quit();
    });
    check.start(AbortCheckMs);
    loop.exec();
    m_run.checkAborted();
}

void TransferRun::setSizeBytes(qint64 bytes)
{
    m_sizeBytes = bytes;
}
