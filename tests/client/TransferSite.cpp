#include "TransferSite.h"

#include <QDir>
#include <QDirIterator>
#include <QJsonArray>
#include <QJsonObject>
#include <QTest>

namespace {

constexpr int LongWaitMs = 240'000;

} // namespace

TransferSite::TransferSite() : service(m_folder.filePath(QStringLiteral("data")))
{
    if (!service.start())
        qFatal("the service does not start");
}

void TransferSite::startClient(const QStringList &arguments)
{
    m_earlierBytes = m_output.size();
    m_client = std::make_unique<QProcess>();
    m_client->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_client->start(QStringLiteral(VELL_TRANSFER_CLIENT),
                    QStringList{QStringLiteral("--address"), service.baseApi(),
                                QStringLiteral("--queue"), path(QStringLiteral("queue"))}
                        + arguments);
    if (!m_client->waitForStarted())
        qFatal("the client does not start");
}

void TransferSite::read()
{
    m_output += m_client->readAllStandardOutput();
}

void TransferSite::killClient()
{
    m_client->kill();
    m_client->waitForFinished();
    read();
}

bool TransferSite::isClientRunning() const
{
    return m_client && m_client->state() != QProcess::NotRunning;
}

int TransferSite::waitForClient()
{
    if (!QTest::qWaitFor([this] { return !isClientRunning(); }, LongWaitMs))
        return -1;
    read();
    return m_client->exitStatus() == QProcess::NormalExit ? m_client->exitCode() : -1;
}

bool TransferSite::waitForLine(const QByteArray &text)
{
    return QTest::qWaitFor(
        [&] {
            read();
            const QByteArrayList all = m_output.mid(m_earlierBytes).split('\n');
            return std::any_of(all.begin(), all.end(),
                               [&](const QByteArray &line) { return line.startsWith(text); });
        },
        LongWaitMs);
}

QByteArrayList TransferSite::lines()
{
    read();
    return m_output.split('\n');
}

QStringList TransferSite::filesBelow(const QString &path)
{
    QStringList files;
    QDirIterator entries(path, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (entries.hasNext())
        files.append(QDir(path).relativeFilePath(entries.next()));
    files.sort();
    return files;
}

QMultiMap<QString, QString> TransferSite::documentsBelow(const QString &id, const QString &prefix)
{
    HttpClient http(service.baseApi());
    const QString condition = id.isEmpty() ? QStringLiteral(R"({"parentId":null})")
                                           : QStringLiteral(R"({"parentId":"%1"})").arg(id);
    const QJsonArray entries = http.get(QStringLiteral("document-service/projects/p1/documents"),
                                        {{QStringLiteral("where"), condition}})
                                   .array();
    QMultiMap<QString, QString> found;
    for (const QJsonValue &value : entries) {
        const QJsonObject entry = value.toObject();
        const QString name = prefix + entry.value(QLatin1String("name")).toString();
        const QString entryId = entry.value(QLatin1String("_id")).toString();
        if (entry.value(QLatin1String("type")).toString() == QLatin1String("dir")) {
            found.insert(name + QLatin1Char('/'), entryId);
            found.unite(documentsBelow(entryId, name + QLatin1Char('/')));
        } else {
            found.insert(name, entry.value(QLatin1String("fileId")).toString());
        }
    }
    return found;
}

QByteArray TransferSite::content(const QString &fileId)
{
    HttpClient http(service.baseApi());
    return http.get(QStringLiteral("base-service/files/") + fileId).body;
}
