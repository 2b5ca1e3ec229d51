#include <transfer/UploadRun.h>

#include <transfer/LocalNames.h>
#include <transfer/TransferText.h>

#include <async_ops/VellUploadLimits.h>

#include <VellNetwork/RequestContext.h>
#include <VellPublicFun/VellPub.h>

#include <QFile>
#include <QFileInfo>
#include <QThread>

namespace {

using Kind = VellError::Kind;

constexpr int MostDecisions = 5;
constexpr qint64 MostBytesAhead =
    262144; // contents up to this size are sent before the conflict is checked
constexpr int LongestSettleMs = 2100;

//! Returns the time after which each further change of the file also changes its time of modification.
QDateTime settledAt(const QString &path)
{
    constexpr int SettleMs = 100;
    QDateTime settled;
    const QFileInfo info(path);
    for (const QDateTime &time : {info.lastModified(), info.metadataChangeTime()}) {
        // A time in whole seconds may be from a file system with that resolution.
        const QDateTime known = time.addMSecs(time.time().msec() == 0 ? LongestSettleMs : SettleMs);
        if (time.isValid() && (!settled.isValid() || known > settled))
            settled = known;
    }
    return settled;
}

} // namespace

UploadRun::UploadRun(TransferTask task, TransferHub &hub)
    : TransferRun(std::move(task), hub,
                  task.record.isLarge() ? VellTransferState::Hashing : VellTransferState::Sending),
      m_path(record().localPath())
{}

void UploadRun::work()
{
    const QFileInfo info(m_path);
    if (!info.exists())
        fail(Kind::LocalFile,
             info.isSymLink() ? TransferText::brokenLink() : TransferText::notThere());
    if (info.isDir() && info.isSymLink())
        fail(Kind::LocalFile, TransferText::linkToFolder());
    if (!info.isDir() && !info.isFile())
        fail(Kind::LocalFile, TransferText::notPlain());
    if (!local_names::isRemoteName(record().name))
        fail(Kind::BadName, TransferText::badRemoteName(record().name));
    outcome().kind = TransferOutcome::Kind::Done;
    outcome().error = {};
    if (info.isDir())
        uploadFolder();
    else
        uploadFile();
}

void UploadRun::uploadFile()
{
    if (!QFile(m_path).open(QIODevice::ReadOnly))
        fail(Kind::LocalFile, TransferText::notReadable());
    m_file = ReplaceBase::ofFile(m_path);
    setSizeBytes(m_file.fileId.toLongLong());
    const bool isLarge = sizeBytes() > VellUploadLimits::WholeFileLimit;
    if (isLarge != record().isLarge()) {
        outcome().kind = TransferOutcome::Kind::Large;
        return;
    }
    if (isLarge)
        hash();
    setStage(VellTransferState::Sending);
    if (record().trace.isSet()) {
        if (const std::optional<VellDocument> stored = findStored(record().trace)) {
            finish(*stored);
            return;
        }
        outcome().trace = {};
    }
    // Then the name is checked only once, immediately before the document is created.
    if (sizeBytes() <= MostBytesAhead) {
        m_contentId = sendContent();
        setStage(VellTransferState::Saving);
    }
    for (int i = 0; i < MostDecisions; ++i) {
        const std::optional<Target> target = decide();
        if (!target || (isLarge ? sendLarge(*target) : sendSmall(*target)))
            return;
        m_takenNames.append(target->document.name);
    }
    failForNow(Kind::Busy, {});
}

void UploadRun::hash()
{
    // The MD5 of a file that has just been changed is not remembered. The job would read the file again, which cannot be
    // aborted.
    constexpr int RestMs = 20;
    const QDateTime start = QDateTime::currentDateTime();
    const QDateTime settled = settledAt(m_path);
    while (settled > start && settled <= start.addMSecs(LongestSettleMs)
           && QDateTime::currentDateTime() < settled) {
        QThread::msleep(RestMs);
        service().checkAborted();
    }
    const QString md5 = VellPub::getFileMd5(m_path, [this](qint64 bytes) {
        setDoneBytes(bytes);
        return !RequestContext::current()->isAborted();
    });
    service().checkAborted();
    requireUnchanged();
    if (md5.isEmpty())
        fail(Kind::LocalFile, TransferText::notReadable());
    if (VellPub::getFileMd5(m_path, [](qint64) { return false; }).isEmpty())
        failForNow(Kind::ChangedMeanwhile, TransferText::changesMeanwhile());
    setDoneBytes(0);
}

void UploadRun::requireUnchanged()
{
    if (ReplaceBase::ofFile(m_path) != m_file)
        failForNow(Kind::ChangedMeanwhile, TransferText::changesMeanwhile());
}
