#include "BareRequests.h"

#include <VellNetwork/AsyncNetManager.h>
#include <VellNetwork/CFileUploadProxy.h>
#include <VellNetwork/NetworkEventLoop.h>
#include <VellNetwork/NetworkManager.h>
#include <VellNetwork/VellBaseApi.h>

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QHttpMultiPart>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryFile>

#include <chrono>
#include <memory>

namespace {

const QString documents = QStringLiteral("document-service/projects/default/documents");

QString address(const QString &path)
{
    return VellBaseApi::GetInstance().getBaseApi() + path;
}

QByteArray getContent(const QString &path)
{
    NetworkEventLoop loop(NetworkManager::instance()->get(address(path)));
    loop.exec();
    if (!loop.isSuccessful())
        qFatal("GET %s failed", qPrintable(path));
    return loop.content();
}

//! Waits for the answer to what \a send asks.
template <typename Send>
QJsonObject answerTo(Send send)
{
    AsyncNetManager manager;
    QEventLoop loop;
    QByteArray content;
    QObject::connect(&manager, &AsyncNetManager::netComplete, &loop, [&](const QByteArray &answer) {
        content = answer;
        loop.quit();
    });
    QObject::connect(&manager, QOverload<int>::of(&AsyncNetManager::error), &loop,
                     [](int code) { qFatal("A request failed with %d", code); });
    send(manager);
    loop.exec();
    return QJsonDocument::fromJson(content).object();
}

QString postFile(const QString &path)
{
    QFile *opened = nullptr;
    QHttpMultiPart *const body = CFileUploadProxy::getFileHttpMultiPart(&opened, path);
    if (body == nullptr)
        qFatal("%s cannot be read", qPrintable(path));
    const std::unique_ptr<QFile> file(opened);
    const QJsonObject answer = answerTo([&](AsyncNetManager &manager) {
        manager.post(address(QStringLiteral("base-service/files")), body);
    });
    return answer.value(QLatin1String("files")).toArray().at(0).toString();
}

//! \return the identifier of the new document
QString postDocument(QJsonObject document)
{
    document.insert(QStringLiteral("category"), QJsonValue());
    return answerTo([&](AsyncNetManager &manager) { manager.post(address(documents), document); })
        .value(QLatin1String("_id"))
        .toString();
}

QString postFolder(const QString &name)
{
    return postDocument({{QStringLiteral("type"), QStringLiteral("dir")},
                         {QStringLiteral("name"), name},
                         {QStringLiteral("parentId"), QJsonValue()}});
}

void postEntry(const QString &parentId, const QString &name, const QString &fileId)
{
    postDocument({{QStringLiteral("type"), QStringLiteral("file")},
                  {QStringLiteral("name"), name},
                  {QStringLiteral("parentId"), parentId},
                  {QStringLiteral("file"), fileId}});
}

//! The entries of a folder; with a \a name those that are called so.
QByteArray getEntries(const QString &parentId, const QString &name = {})
{
    QJsonObject where{
        {QStringLiteral("parentId"), parentId.isEmpty() ? QJsonValue() : QJsonValue(parentId)}};
    if (!name.isEmpty())
        where.insert(QStringLiteral("name"), name);
    const QByteArray text = QJsonDocument(where).toJson(QJsonDocument::Compact);
    return getContent(documents + QLatin1String("?where=") + QString::fromUtf8(text)
                      + QLatin1String(name.isEmpty() ? "" : "&words=true")
                      + QLatin1String("&select=-entities&linkedEntity=true&expand=true"
                                      "&order=type order -updatedAt"));
}

} // namespace

void putFolder(const QString &folder, const QString &name)
{
    getContent(QStringLiteral("base-service/me"));
    getEntries({}, name);
    getEntries({});
    const QString id = postFolder(name);
    const QStringList files = QDir(folder).entryList(QDir::Files, QDir::Name);
    for (const QString &file : files)
        postEntry(id, file, postFile(QDir(folder).filePath(file)));
}

QJsonObject listFolder(const QString &name)
{
    getContent(QStringLiteral("base-service/me"));
    const QString id = QJsonDocument::fromJson(getEntries({}, name))
                           .array()
                           .at(0)
                           .toObject()
                           .value(QLatin1String("_id"))
                           .toString();
    const auto start = std::chrono::steady_clock::now();
    const QByteArray content = getEntries(id);
    const std::chrono::duration<double> duration = std::chrono::steady_clock::now() - start;
    return {{QStringLiteral("seconds"), duration.count()},
            {QStringLiteral("bytes"), content.size()}};
}

void fillFolder(const QString &name, int count)
{
    QTemporaryFile content;
    if (!content.open() || content.write("content") < 0 || !content.flush())
        qFatal("%s", qPrintable(content.errorString()));
    const QString fileId = postFile(content.fileName());
    const QString folderId = postFolder(name);
    for (int i = 0; i < count; ++i)
        postEntry(folderId, QStringLiteral("drawing %1.dwg").arg(i, 5, 10, QLatin1Char('0')),
                  fileId);
}

void makeFolders(int count)
{
    for (int i = 0; i < count; ++i)
        postFolder(QStringLiteral("level %1").arg(i, 5, 10, QLatin1Char('0')));
}
