#include <async_ops/AsyncCreateDocument.h>

#include <async_ops/VellUploadLimits.h>

#include <VellNetwork/AsyncNetManager.h>
#include <VellNetwork/NetworkEventLoop.h>
#include <VellNetwork/NetworkManager.h>
#include <VellNetwork/VellBaseApi.h>

#include <QFile>
#include <QHttpMultiPart>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMimeDatabase>
#include <QPointer>

namespace {

using VellUploadLimits::ChunkBytes;

QString storeUrl(const QString &path)
{
    return VellBaseApi::GetInstance().getBaseApi() + QLatin1String("base-service/") + path;
}

int chunksOf(qint64 fileSize)
{
    const auto bytes = static_cast<quint64>(fileSize);
    return static_cast<int>(bytes / ChunkBytes + (bytes % ChunkBytes == 0 ? 0 : 1));
}

QByteArray readChunk(const QString &path, int index)
{
    // Bytes that cannot be read are not sent; "chunkSize" has the actual size.
    QFile source(path);
    source.open(QIODevice::ReadOnly);
    source.seek(index * ChunkBytes);
    // Allocates exactly the necessary memory; the other read() takes up to twice as much.
    QByteArray chunk(int(ChunkBytes), Qt::Uninitialized);
    chunk.truncate(int(qMax(qint64(0), source.read(chunk.data(), ChunkBytes))));
    return chunk;
}

QHttpPart formField(const QString &name, const QString &value)
{
    QHttpPart part;
    part.setHeader(QNetworkRequest::ContentDispositionHeader,
                   QStringLiteral("form-data; name=\"%1\"").arg(name));
    part.setBody(value.toUtf8());
    return part;
}

} // namespace

void AsyncCreateDocument::fileChunk()
{
    const QPointer<AsyncCreateDocument> self(this);
    getFileInfoByMd5(fileMd5, largeFile);
    if (!self)
        return;

    const bool isKnown = !largeFile._id.isEmpty();
    if (isKnown && largeFile.savedChunk >= largeFile.totalChunk) {
        QString fileId = largeFile.fsFileId;
        if (fileId.isEmpty())
            fileId = getFileInfoId(fileMd5);
        if (self)
            addOrUpdate(fileId);
        return;
    }
    chunkIndex = largeFile.savedChunk;
    chunkCount = isKnown ? largeFile.totalChunk : chunksOf(doc.fileSize);
    fileChunkLoop();
}

void AsyncCreateDocument::fileChunkLoop()
{
    delete chunkNetManager;
    chunkNetManager = new AsyncNetManager(this);
    connect(chunkNetManager, &AsyncNetManager::netComplete, chunkNetManager,
            [this](const QByteArray &content) { chunkComplete(content); });
    connect(chunkNetManager, QOverload<QNetworkReply::NetworkError>::of(&AsyncNetManager::error),
            chunkNetManager, [this](QNetworkReply::NetworkError code) { chunkFailed(code); });
    connect(chunkNetManager, &AsyncNetManager::uploadProgress, chunkNetManager,
            [this](qint64 bytesSent, qint64 bytesTotal) { chunkProgress(bytesSent, bytesTotal); });

    const QByteArray chunk = readChunk(doc.filePath, chunkIndex);
    QHttpPart filePart;
    filePart.setHeader(QNetworkRequest::ContentDispositionHeader,
                       QStringLiteral("form-data; name=\"file\"; filename=\"%1-%2\"")
                           .arg(fileMd5)
                           .arg(chunkIndex));
    filePart.setHeader(QNetworkRequest::ContentTypeHeader,
                       QMimeDatabase().mimeTypeForFile(doc.filePath).name());
    filePart.setBody(chunk);

    auto *body = new QHttpMultiPart(QHttpMultiPart::FormDataType);
    body->append(filePart);
    body->append(formField(QStringLiteral("md5"), fileMd5));
    body->append(formField(QStringLiteral("fileName"), doc.name));
    body->append(formField(QStringLiteral("totalChunk"), QString::number(chunkCount)));
    body->append(formField(QStringLiteral("savedChunk"), QString::number(chunkIndex)));
    body->append(formField(QStringLiteral("fileSize"), QString::number(doc.fileSize)));
    body->append(formField(QStringLiteral("chunkSize"), QString::number(chunk.size())));
    chunkNetManager->post(storeUrl(QStringLiteral("largefiles")), body);
}

void AsyncCreateDocument::chunkComplete(const QByteArray &content)
{
    const QJsonDocument reply = QJsonDocument::fromJson(content);
    if (!reply.isObject())
        return;
    // The counters of the service are used unchanged: it decides which chunk is next.
    chunkIndex = reply.object().value(QLatin1String("savedChunk")).toInt();
    const int total = reply.object().value(QLatin1String("totalChunk")).toInt();
    const QString fsFileId = reply.object().value(QLatin1String("fsFileId")).toString();

    if (chunkIndex < total) {
        fileChunkLoop();
        return;
    }
    // After a failed chunk the job does not finish; a new job does, and sends nothing twice.
    if (!chunkOk || chunkIndex != total) {
        closeFile();
        return;
    }
    const QPointer<AsyncCreateDocument> self(this);
    Q_EMIT finishUpload();
    if (self)
        uploadFinished(fsFileId);
}

void AsyncCreateDocument::chunkFailed(int code)
{
    chunkOk = false; // never set again
    Q_EMIT error(code);
}

void AsyncCreateDocument::chunkProgress(qint64 bytesSent, qint64 bytesTotal)
{
    if (bytesTotal != 0)
        Q_EMIT uploadProgress(chunkIndex * ChunkBytes + bytesSent, doc.fileSize);
}

void AsyncCreateDocument::uploadFinished(const QString &fileId)
{
    pendingReplies.clear();
    pendingLoops.clear();
    addOrUpdate(fileId);
}

void AsyncCreateDocument::getFileInfoByMd5(const QString &md5, VellLargeFile &info)
{
    const QPointer<AsyncCreateDocument> self(this);
    NetworkEventLoop loop(
        NetworkManager::instance()->get(storeUrl(QStringLiteral("largefiles/md5/%1").arg(md5))));
    loop.exec();
    // info is a member of the job, which may have been deleted.
    if (!self)
        return;
    const QJsonObject record = loop.object();
    info._id = record.value(QLatin1String("_id")).toString();
    info.fileName = record.value(QLatin1String("fileName")).toString();
    info.fsFileId = record.value(QLatin1String("fsFileId")).toString();
    info.md5 = record.value(QLatin1String("md5")).toString();
    info.savedChunk = record.value(QLatin1String("savedChunk")).toInt();
    info.totalChunk = record.value(QLatin1String("totalChunk")).toInt();
}

bool AsyncCreateDocument::deleteFileInfoByLargefileId(QString id)
{
    NetworkEventLoop loop(NetworkManager::instance()->deleteResource(
        storeUrl(QStringLiteral("largefiles/%1").arg(id))));
    loop.exec();
    return loop.isSuccessful();
}
