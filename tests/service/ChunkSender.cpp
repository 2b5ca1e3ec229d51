#include <service/ChunkSender.h>

#include <QCryptographicHash>
#include <QRandomGenerator>

namespace {

const QString path = "base-service/largefiles";

} // namespace

ChunkSender::ChunkSender(int size, int seed) : m_content(size, Qt::Uninitialized)
{
    QRandomGenerator random(static_cast<quint32>(seed) + 1);
    const int words = size / 4;
    random.fillRange(reinterpret_cast<quint32 *>(m_content.data()), words);
    for (int i = words * 4; i < size; ++i)
        m_content[i] = static_cast<char>(i);
    m_md5 = QCryptographicHash::hash(m_content, QCryptographicHash::Md5).toHex();
}

ChunkSender::ChunkSender(const QByteArray &content, const QByteArray &md5)
    : m_content(content), m_md5(md5)
{}

QList<QPair<QString, QByteArray>> ChunkSender::form(int index) const
{
    const QByteArray bytes = chunk(index);
    const QString fileName = QString("file/%1-%2").arg(md5()).arg(index);
    return {
        {fileName, bytes},
        {"md5", m_md5},
        {"fileName", QByteArrayLiteral("large.bin")},
        {"totalChunk", QByteArray::number(chunkCount())},
        {"savedChunk", QByteArray::number(index)},
        {"fileSize", QByteArray::number(m_content.size())},
        {"chunkSize", QByteArray::number(bytes.size())},
    };
}

HttpAnswer ChunkSender::send(HttpClient &client, int index) const
{
    return client.postForm(path, form(index));
}

HttpAnswer ChunkSender::record(HttpClient &client) const
{
    return client.get(path + QString("/md5/") + md5());
}

HttpAnswer ChunkSender::sendAll(HttpClient &client) const
{
    HttpAnswer answer = record(client);
    for (int guard = 0; guard < 3 * chunkCount(); ++guard) {
        const int next = answer.object().value("savedChunk").toInt();
        if (next >= chunkCount())
            return answer;
        answer = send(client, next);
        if (answer.status != 200)
            return answer;
    }
    return answer;
}

QString counters(const HttpAnswer &answer)
{
    return QString("%1/%2")
        .arg(answer.object().value("savedChunk").toInt(-1))
        .arg(answer.object().value("totalChunk").toInt(-1));
}
