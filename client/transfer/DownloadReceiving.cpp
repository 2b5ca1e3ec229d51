#include <transfer/DownloadRun.h>

#include <transfer/TransferJournal.h>
#include <transfer/TransferText.h>

#include <VellNetwork/NetworkManager.h>
#include <VellNetwork/RequestContext.h>

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFileInfo>
#include <QNetworkReply>
#include <QStorageInfo>

#include <memory>

namespace {

using Kind = VellError::Kind;

constexpr qint64 BufferBytes = 1'048'576;
constexpr int PartialContent = 206;
constexpr qint64 ShortestShareMs = 2000;

int statusOf(QNetworkReply *reply)
{
    return reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

struct ReplyEnd
{
    void operator()(QNetworkReply *reply) const
    {
        reply->disconnect();
        reply->abort();
        reply->deleteLater();
    }
};

} // namespace

void DownloadRun::receive(const VellDocument &document)
{
    openPart(document.fileSize);
    const QString url = service().address(QStringLiteral("base-service/files/") + document.fileId);
    const bool isWhole = !outcome().entityTag.isEmpty() && m_part.size() == document.fileSize;
    while (!isWhole && !receiveMore(url)) {}
    m_part.close();
}

void DownloadRun::openPart(qint64 wantedBytes)
{
    // A part without an entity tag may be from another program; a link is never followed.
    const bool isOurs = !outcome().entityTag.isEmpty() || hub().resumesParts;
    if (!isOurs || QFileInfo(m_part).isSymLink())
        QFile::remove(m_part.fileName());
    if (!m_part.open(QIODevice::ReadWrite | QIODevice::Unbuffered))
        failWriting();
    if (wantedBytes >= 0 && m_part.size() > wantedBytes)
        startOver();
    // Only the entity tag of a response shows which content these bytes belong to, so one byte is requested again.
    if (outcome().entityTag.isEmpty() && wantedBytes > 0 && m_part.size() == wantedBytes)
        m_part.resize(wantedBytes - 1);
    m_hash.reset();
    for (;;) {
        const QByteArray block = m_part.read(BufferBytes);
        if (block.isEmpty())
            break;
        m_hash.addData(block);
        service().checkAborted();
    }
    setDoneBytes(m_part.pos());
    requireRoom(wantedBytes - m_part.pos());
}

bool DownloadRun::receiveMore(const QString &url)
{
    RequestContext::current()->forgetFailure();
    hub().speeds.apply();
    const qint64 share = hub().speeds.share(VellTransferDirection::Download);
    const qint64 offset = m_part.pos();
    m_isHeadRead = false;
    NetworkManager *const manager = NetworkManager::instance();
    // An empty content has no valid range.
    const std::unique_ptr<QNetworkReply, ReplyEnd> reply(
        sizeBytes() > 0 || offset > 0 ? manager->getFrom(url, offset, outcome().entityTag)
                                      : manager->get(url));
    reply->setReadBufferSize(BufferBytes);
    QElapsedTimer age;
    age.start();
    bool hasOtherShare = false;
    QEventLoop loop;
    QObject::connect(reply.get(), &QNetworkReply::readyRead, &loop, [&] {
        receiveData(reply.get());
        hasOtherShare = age.hasExpired(ShortestShareMs) && !outcome().entityTag.isEmpty()
            && hub().speeds.share(VellTransferDirection::Download) != share;
        if (m_failure || hasOtherShare)
            loop.quit();
    });
    QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
    if (!reply->isFinished())
        wait(loop);
    service().checkAborted();
    if (reply->isFinished() && reply->error() == QNetworkReply::NoError)
        receiveData(reply.get());
    if (m_failure)
        throw OperationFailure{*m_failure};
    if (reply->isFinished()) {
        service().throwFailure();
        return true;
    }
    return false;
}

void DownloadRun::receiveData(QNetworkReply *reply)
{
    // The body of an error response is a message.
    if (statusOf(reply) / 100 != 2 || m_failure)
        return;
    readHead(reply);
    if (m_failure)
        return;
    const QByteArray data = reply->readAll();
    if (m_part.write(data) != data.size()) {
        try {
            failWriting();
        } catch (const OperationFailure &failure) {
            m_failure = failure.error;
        }
        return;
    }
    m_hash.addData(data);
    if (!data.isEmpty() && !outcome().entityTag.isEmpty())
        outcome().hasMoved = true;
    setDoneBytes(m_part.pos());
}

void DownloadRun::readHead(QNetworkReply *reply)
{
    if (m_isHeadRead)
        return;
    m_isHeadRead = true;
    const QByteArray tag = reply->rawHeader("ETag");
    if (statusOf(reply) != PartialContent) {
        startOver();
    } else if (!outcome().entityTag.isEmpty() && tag != outcome().entityTag) {
        // The rest of another content.
        startOver();
        outcome().entityTag.clear();
        m_failure = VellError::of(Kind::ServiceFailed, TransferText::otherContent());
        return;
    }
    if (tag == outcome().entityTag)
        return;
    outcome().entityTag = tag;
    if (hub().journal)
        hub().journal->writeTag(record().id, tag);
}

void DownloadRun::startOver()
{
    m_part.resize(0);
    m_part.seek(0);
    m_hash.reset();
    setDoneBytes(0);
}

void DownloadRun::requireRoom(qint64 bytes)
{
    const QStorageInfo disk(record().localFolder);
    if (disk.isValid() && disk.bytesAvailable() < bytes)
        fail(Kind::NoRoom, {});
}

void DownloadRun::verify(const VellDocument &document)
{
    constexpr int Md5Digits = 32;
    QByteArray md5 = outcome().entityTag;
    md5.replace('"', "");
    const qint64 arrived = QFileInfo(m_part.fileName()).size();
    const bool isOther = md5.size() == Md5Digits && m_hash.result().toHex() != md5.toLower();
    const bool isOtherSize = document.fileSize >= 0 && arrived != document.fileSize;
    if (!isOtherSize && !isOther) {
        setSizeBytes(arrived);
        return;
    }
    QFile::remove(m_part.fileName());
    outcome().entityTag.clear();
    // The received data was useless.
    outcome().hasMoved = false;
    failForNow(Kind::ServiceFailed,
               isOther ? TransferText::otherContent()
                       : TransferText::otherSize(arrived, document.fileSize));
}

void DownloadRun::failWriting()
{
    const QStorageInfo disk(record().localFolder);
    if (disk.isValid() && disk.bytesAvailable() < BufferBytes)
        fail(Kind::NoRoom, {});
    fail(Kind::LocalFile, TransferText::notWritten(m_part.fileName(), m_part.errorString()));
}
