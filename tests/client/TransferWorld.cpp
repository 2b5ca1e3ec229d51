#include "TransferWorld.h"

#include <support/HttpClient.h>

#include <QFile>
#include <QtEndian>

namespace {

constexpr int LongWaitMs = 120'000;

} // namespace

TransferWorld::TransferWorld()
{
    queue.attach(&documents);
    QObject::connect(&queue, &VellTransferQueue::ended, &queue,
                     [this](const VellTransfer &transfer) { ++endCounts[transfer.id]; });
    QObject::connect(&queue, &VellTransferQueue::asked, &queue,
                     [this](const VellTransferQuestion &question) { questions.append(question); });
}

QString TransferWorld::makeFile(const QString &name, qint64 bytes, int salt) const
{
    constexpr int BlockBytes = 65'536;
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly))
        qFatal("%s cannot be made", qPrintable(file.fileName()));
    QByteArray block(BlockBytes, 'v');
    qToBigEndian<qint32>(salt, block.data());
    for (qint64 written = 0; written < bytes; written += BlockBytes) {
        qToBigEndian<qint64>(written, block.data() + sizeof(qint32));
        file.write(block.constData(), qMin(qint64(BlockBytes), bytes - written));
    }
    return file.fileName();
}

QByteArray TransferWorld::contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
}

void TransferWorld::write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("%s cannot be written", qPrintable(path));
}

void TransferWorld::setAge(const QString &path, std::chrono::seconds age)
{
    QFile file(path);
    const QDateTime time = QDateTime::currentDateTime().addSecs(-age.count());
    if (!file.open(QIODevice::ReadWrite)
        || !file.setFileTime(time, QFileDevice::FileModificationTime))
        qFatal("the time of %s cannot be set", qPrintable(path));
}

VellTransfer TransferWorld::waitFor(qint64 id)
{
    if (!QTest::qWaitFor([&] { return queue.transfer(id).isEnded(); }, LongWaitMs))
        qWarning("the transfer of %s does not end", qPrintable(queue.transfer(id).name));
    return queue.transfer(id);
}

bool TransferWorld::waitForState(qint64 id, VellTransferState state)
{
    return QTest::qWaitFor(
               [&] { return queue.transfer(id).state == state || queue.transfer(id).isEnded(); },
               LongWaitMs)
        && queue.transfer(id).state == state;
}

bool TransferWorld::waitForIdle()
{
    return QTest::qWaitFor(
        [&] {
            return queue.totals().openCount()
                == queue.totals().count(VellTransferState::Asking)
                + queue.totals().count(VellTransferState::Paused);
        },
        LongWaitMs);
}

QList<VellDocument> TransferWorld::find(const QString &name, const QString &parentId)
{
    VellDocumentConditon condition;
    condition.parentId = parentId;
    condition.name = name;
    return await(documents.list(condition));
}

QByteArray TransferWorld::download(const VellDocument &document) const
{
    HttpClient http(service.baseApi());
    return http.get(QStringLiteral("base-service/files/") + document.fileId).body;
}
