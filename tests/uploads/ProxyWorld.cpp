#include "ProxyWorld.h"

#include <QCryptographicHash>
#include <QDirIterator>
#include <QFile>
#include <QJsonArray>

ProxyWorld::ProxyWorld(const QStringList &arguments)
    : service(folder.filePath("data")), http(QString())
{
    if (!service.start(arguments))
        return;
    http.setBaseApi(service.baseApi());
    renewProxy();
}

void ProxyWorld::renewProxy()
{
    proxy = std::make_unique<FaultyProxy>(service.port());
}

LocalFile ProxyWorld::makeFile(qint64 bytes, quint32 salt, const QString &name) const
{
    return LocalFile(folder.filePath(name), bytes, salt);
}

std::unique_ptr<ClientRun> ProxyWorld::upload(const LocalFile &file,
                                              const QStringList &arguments) const
{
    return std::make_unique<ClientRun>(proxy->baseApi(), file.path(), arguments);
}

QJsonObject ProxyWorld::record(const QByteArray &md5)
{
    const HttpAnswer answer =
        http.get(QString("base-service/largefiles/md5/") + QString::fromLatin1(md5));
    return answer.isSuccess() ? answer.object() : QJsonObject();
}

int ProxyWorld::savedChunks(const QByteArray &md5)
{
    return record(md5).value(QLatin1String("savedChunk")).toInt();
}

QString ProxyWorld::storedFile(const QByteArray &md5)
{
    return http.get(QString("base-service/md5/%1/info").arg(QString::fromLatin1(md5)))
        .object()
        .value(QLatin1String("_id"))
        .toString();
}

QByteArray ProxyWorld::download(const QString &fileId)
{
    const HttpAnswer answer = http.get(QString("base-service/files/") + fileId);
    return answer.isSuccess() ? answer.body : QByteArray();
}

int ProxyWorld::documentCount()
{
    return http.get("document-service/projects/p1/documents").array().size();
}

QStringList ProxyWorld::wrongContents() const
{
    QStringList wrong;
    QDirIterator contents(service.dataDir() + "/content", QDir::Files,
                          QDirIterator::Subdirectories);
    while (contents.hasNext()) {
        QFile content(contents.next());
        QCryptographicHash md5(QCryptographicHash::Md5);
        if (!content.open(QIODevice::ReadOnly) || !md5.addData(&content)
            || QString::fromLatin1(md5.result().toHex()) != contents.fileName())
            wrong.append(contents.fileName());
    }
    return wrong;
}
