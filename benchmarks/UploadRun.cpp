#include "UploadRun.h"

#include "CurlClient.h"

#include <async_ops/AsyncCreateDocument.h>
#include <async_ops/VellUploadLimits.h>
#include <document_model/DocumentConversions.h>

#include <VellNetwork/NetworkManager.h>
#include <VellNetwork/NetworkSettings.h>
#include <VellNetwork/VellBaseApi.h>
#include <VellPublicFun/VellPub.h>
#include <VellSoftBase/VellSoftCache.h>

#include <QEventLoop>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <optional>

namespace {

using VellUploadLimits::ChunkBytes;

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

} // namespace

void TickWatch::start()
{
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &TickWatch::tick);
    m_last = Clock::now();
    m_timer.start(std::chrono::milliseconds(1));
}

void TickWatch::stop()
{
    m_timer.stop();
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

ControlWatch::ControlWatch()
{
    m_ticks.moveToThread(&m_thread);
    m_thread.start();
    QMetaObject::invokeMethod(&m_ticks, &TickWatch::start, Qt::BlockingQueuedConnection);
}

ControlWatch::~ControlWatch()
{
    QMetaObject::invokeMethod(&m_ticks, &TickWatch::stop, Qt::BlockingQueuedConnection);
    m_thread.quit();
    m_thread.wait();
}

QJsonObject ControlWatch::take()
{
    QJsonObject seen;
    QMetaObject::invokeMethod(&m_ticks, &TickWatch::take, Qt::BlockingQueuedConnection, &seen);
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
    std::optional<ControlWatch> control;
    const auto note = [&](const QString &phase) {
        result.insert(phase, ticks.take());
        result.insert(phase + QLatin1String("_control"), control->take());
    };
    if (isWatched) {
        control.emplace();
        ticks.start();
        // The store has no record, and says so between hashing and the first chunk.
        QObject::connect(NetworkManager::instance(), &NetworkManager::requestFailed, &ticks,
                         [&] { note(QStringLiteral("hashing")); });
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
        note(QStringLiteral("sending"));
    result.insert(QStringLiteral("growth_kib"), peakMemoryKiB() - memoryBefore);
    return result;
}

QJsonObject runBare(const QString &filePath)
{
    const qint64 memoryBefore = peakMemoryKiB();
    const Clock::time_point start = Clock::now();
    const QByteArray md5 = VellPub::getFileMd5(filePath).toLatin1();
    const double md5Seconds = secondsSince(start);
    CurlClient client(VellBaseApi::GetInstance().getBaseApi(),
                      NetworkSettings::instance().caCertificates());
    const QByteArray contentType = QByteArray("multipart/form-data; boundary=\"") + Boundary + '"';
    QFile file(filePath);
    file.open(QIODevice::ReadOnly);
    for (int index = 0; index * ChunkBytes < file.size(); ++index)
        client.post("base-service/largefiles", contentType, bodyOfChunk(file, md5, index));
    return {{QStringLiteral("seconds"), secondsSince(start)},
            {QStringLiteral("md5_seconds"), md5Seconds},
            {QStringLiteral("growth_kib"), peakMemoryKiB() - memoryBefore}};
}
