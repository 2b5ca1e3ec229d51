#include "ClientWorld.h"

#include <support/HttpClient.h>

#include <VellNetwork/NetworkSettings.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace {

ServiceOptions optionsIn(const QTemporaryDir &folder)
{
    ServiceOptions options;
    options.dataDir = folder.filePath(QStringLiteral("data"));
    return options;
}

} // namespace

VellError waitForEnd(VellOperation *operation)
{
    VellError error;
    bool isEnded = false;
    QObject receiver;
    QObject::connect(operation, &VellOperation::finished, &receiver, [&] { isEnded = true; });
    QObject::connect(operation, &VellOperation::failed, &receiver, [&](const VellError &reason) {
        isEnded = true;
        error = reason;
    });
    if (!QTest::qWaitFor([&isEnded] { return isEnded; }, WaitMs))
        qFatal("an operation does not end");
    return error;
}

ClientWorld::ClientWorld() : service(optionsIn(m_folder)), documents(&session)
{
    QString error;
    if (!service.start(&error))
        qFatal("the service does not start: %s", qPrintable(error));
    const QSignalSpy opened(&session, &VellSession::opened);
    session.open(connection());
    if (!QTest::qWaitFor([&opened] { return !opened.isEmpty(); }, WaitMs))
        qFatal("the session does not open");
    session.openProject(QStringLiteral("p1"));
}

VellConnection ClientWorld::connection(const QString &token) const
{
    VellConnection connection;
    connection.address = service.baseApi();
    connection.accessToken = token;
    connection.proxy = NetworkSettings::noProxy();
    return connection;
}

VellDocument ClientWorld::store(const QString &name, const QByteArray &content,
                                const QString &parentId)
{
    HttpClient http(service.baseApi());
    const QString fileId = http.postForm(QStringLiteral("base-service/files"),
                                         {{QStringLiteral("file/") + name, content}})
                               .object()
                               .value(QLatin1String("files"))
                               .toArray()
                               .at(0)
                               .toString();
    const HttpAnswer answer = http.post(
        QStringLiteral("document-service/projects/p1/documents"),
        {{QStringLiteral("name"), name},
         {QStringLiteral("type"), QStringLiteral("file")},
         {QStringLiteral("file"), fileId},
         {QStringLiteral("parentId"), parentId.isEmpty() ? QJsonValue() : QJsonValue(parentId)}});
    if (!answer.isSuccess())
        qFatal("%s is not stored: %s", qPrintable(name), answer.body.constData());
    VellDocument document;
    document._id = answer.object().value(QLatin1String("_id")).toString();
    document.name = name;
    document.parentId = parentId;
    document.fileId = fileId;
    document.type = QStringLiteral("file");
    return document;
}

QByteArray ClientWorld::content(const QString &fileId) const
{
    const HttpAnswer answer =
        HttpClient(service.baseApi()).get(QStringLiteral("base-service/files/") + fileId);
    if (!answer.isSuccess())
        qFatal("there is no content %s: %s", qPrintable(fileId), answer.body.constData());
    return answer.body;
}

void ClientWorld::renameElsewhere(const VellDocument &document, const QString &name)
{
    HttpClient http(service.baseApi());
    const HttpAnswer answer = http.put(QStringLiteral("document-service/documents/") + document._id,
                                       {{QStringLiteral("name"), name}});
    if (!answer.isSuccess())
        qFatal("%s is not renamed: %s", qPrintable(name), answer.body.constData());
}

QStringList ClientWorld::names(const QString &parentId)
{
    VellDocumentConditon condition;
    condition.parentId = parentId;
    QStringList names;
    const QList<VellDocument> entries = await(documents.list(condition));
    for (const VellDocument &entry : entries)
        names.append(entry.name);
    std::sort(names.begin(), names.end());
    return names;
}
