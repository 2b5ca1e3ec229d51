#include "UploadRun.h"

#include <async_ops/AsyncCreateDocument.h>
#include <document_model/DocumentConversions.h>

#include <VellNetwork/NetworkManager.h>
#include <VellNetwork/VellBaseApi.h>
#include <VellPublicFun/VellPub.h>
#include <VellSoftBase/VellSoftCache.h>

#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkReply>

#include <algorithm>

namespace {

constexpr qint64 ChunkBytes = 4'194'304;
const char Boundary[] = "boundary_.oOo._of_the_same_length_as_those_of_Qt=";

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

QByteArray field(const char *name, const QByteArray &value)
{
    return QByteArray("\r\n--") + Boundary + "\r\nContent-Disposition: form-data; name=\"" + name
        + "\"\r\n\r\n" + value;
}

//! What the job sends of chunk \a index.
QByteArray bodyOfChunk(QFile &file, const QByteArray &md5, int index)
{
    const qint64 size = file.size();
    const qint64 chunks = (size + ChunkBytes - 1) / ChunkBytes;
    file.seek(index * ChunkBytes);
    const QByteArray chunk = file.read(ChunkBytes);
    QByteArray body;
    body.reserve(chunk.size() + 2048);
    body += QByteArray("--") + Boundary
        + "\r\nContent-Disposition: form-data; name=\"file\"; filename=\"" + md5 + '-'
        + QByteArray::number(index) + "\"\r\nContent-Type: application/octet-stream\r\n\r\n";
    body += chunk;
    body += field("md5", md5) + field("fileName", QFileInfo(file).fileName().toUtf8())
        + field("totalChunk", QByteArray::number(chunks))
        + field("savedChunk", QByteArray::number(index))
        + field("fileSize", QByteArray::number(size))
        + field("chunkSize", QByteArray::number(chunk.size()));
    return body + "\r\n--" + Boundary + "--\r\n";
}

//! False for a request that failed.
bool waitFor(QNetworkReply *reply)
{
    QEventLoop loop;
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    loop.exec();
    reply->deleteLater();
    return reply->error() == QNetworkReply::NoError && !reply->readAll().isEmpty();
}

} // namespace

void TickWatch::start()
{
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &TickWatch::tick);
    m_last = Clock::now();
    m_timer.start(std::chrono::milliseconds(1));
}

void TickWatch::tick()
{
    const Clock::time_point now = Clock::now();
    m_gapsMs.push_back(std::chrono::duration<double, std::milli>(now - m_last).count());
    m_last = now;
}

QJsonObject TickWatch::take()
{
    tick(); // what is waiting now counts
    std::sort(m_gapsMs.begin(), m_gapsMs.end());
    const auto behind = static_cast<size_t>(static_cast<double>(m_gapsMs.size()) * 0.999);
    const QJsonObject seen{
        {QStringLiteral("ticks"), static_cast<int>(m_gapsMs.size())},
        {QStringLiteral("p999_ms"), m_gapsMs.at(std::min(behind, m_gapsMs.size() - 1))},
        {QStringLiteral("max_ms"), m_gapsMs.back()}};
    m_gapsMs.clear();
    return seen;
}

qint64 peakMemoryKiB()
{
    QFile status(QStringLiteral("/proc/self/status"));
    status.open(QIODevice::ReadOnly);
    const QList<QByteArray> lines = status.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toLongLong();
    }
    return 0;
}

QJsonObject runJob(const QString &filePath, bool isWatched)
{
    VellDocument doc;
    VellPubDoc::getVellDocument(filePath, doc);
    GetSoftCache()->setCurrentProjectId(QStringLiteral("p1"));
    AsyncCreateDocument job;
    QJsonObject result;
    TickWatch ticks;
    if (isWatched) {
        ticks.start();
        // The store has no record, and says so between hashing and the first chunk.
        QObject::connect(NetworkManager::instance(), &NetworkManager::requestFailed, &ticks,
                         [&] { result.insert(QStringLiteral("hashing"), ticks.take()); });
    }
    QEventLoop loop;
    bool isDone = false;
    QObject::connect(&job, &AsyncCreateDocument::createDocumentFinish, &loop, [&] {
        isDone = true;
        loop.quit();
    });
    QObject::connect(&job, &AsyncCreateDocument::error, &loop, &QEventLoop::quit);

    const qint64 memoryBefore = peakMemoryKiB();
    const Clock::time_point start = Clock::now();
    job.createDocument(QString(), doc);
    loop.exec();
    if (!isDone)
        return {};
    result.insert(QStringLiteral("seconds"), secondsSince(start));
    if (isWatched)
        result.insert(QStringLiteral("sending"), ticks.take());
    result.insert(QStringLiteral("growth_kib"), peakMemoryKiB() - memoryBefore);
    return result;
}

QJsonObject runBare(const QString &filePath)
{
    const qint64 memoryBefore = peakMemoryKiB();
    const Clock::time_point start = Clock::now();
    const QByteArray md5 = VellPub::getFileMd5(filePath).toLatin1();
    const double md5Seconds = secondsSince(start);
    QNetworkAccessManager manager;
    QNetworkRequest request(
        QUrl(VellBaseApi::GetInstance().getBaseApi() + QStringLiteral("base-service/largefiles")));
    request.setHeader(QNetworkRequest::ContentTypeHeader, bodyContentType());
    QFile file(filePath);
    file.open(QIODevice::ReadOnly);
    for (int index = 0; index * ChunkBytes < file.size(); ++index) {
        if (!waitFor(manager.post(request, bodyOfChunk(file, md5, index))))
            return {};
    }
    return {{QStringLiteral("seconds"), secondsSince(start)},
            {QStringLiteral("md5_seconds"), md5Seconds},
            {QStringLiteral("growth_kib"), peakMemoryKiB() - memoryBefore}};
}

int writeBodies(const QString &filePath, const QString &folder)
{
    const QByteArray md5 = VellPub::getFileMd5(filePath).toLatin1();
    QFile file(filePath);
    file.open(QIODevice::ReadOnly);
    int index = 0;
    for (; index * ChunkBytes < file.size(); ++index) {
        QFile body(folder + QLatin1Char('/') + QString::number(index));
        body.open(QIODevice::WriteOnly);
        body.write(bodyOfChunk(file, md5, index));
    }
    return index;
}

QByteArray bodyContentType()
{
    return QByteArray("multipart/form-data; boundary=\"") + Boundary + '"';
}
