#include <service/ServiceWorld.h>

#include <support/TestDatabase.h>

#include <QJsonDocument>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTcpSocket>

namespace {

QJsonValue idOrNull(const QString &id)
{
    return id.isEmpty() ? QJsonValue() : QJsonValue(id);
}

//! The statement's first value; null text when it has failed.
QVariant runOn(const QString &dataDir, const QString &statement, bool *isDone)
{
    if (TestDatabase::isPostgres())
        return TestDatabase::run(dataDir, statement, isDone);
    const QString name = "ServiceWorld";
    QVariant result;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", name);
        database.setDatabaseName(dataDir + "/records.sqlite");
        *isDone = database.open();
        QSqlQuery query(database);
        *isDone = *isDone && query.exec(statement);
        if (!*isDone)
            qWarning("%s", qUtf8Printable(query.lastError().text()));
        if (query.next())
            result = query.value(0);
    }
    QSqlDatabase::removeDatabase(name);
    return result;
}

} // namespace

ServiceWorld::ServiceWorld(const ServiceOptions &options) : client(QString()), m_options(options)
{
    m_options.dataDir = folder.path() + "/data";
    m_options.database = TestDatabase::addressFor(m_options.dataDir);
    isStarted = restart();
}

bool ServiceWorld::restart()
{
    service.reset();
    service = std::make_unique<ReferenceService>(m_options);
    QString error;
    if (!service->start(&error)) {
        qWarning("%s", qUtf8Printable(error));
        return false;
    }
    client.setBaseApi(service->baseApi());
    return true;
}

QString ServiceWorld::makeFolder(const QString &name, const QString &parentId,
                                 const QString &category)
{
    return client
        .post(projectPath("documents"),
              {{"parentId", idOrNull(parentId)},
               {"name", name},
               {"type", "dir"},
               {"category", category}})
        .object()
        .value("_id")
        .toString();
}

QString ServiceWorld::makeFile(const QString &name, const QString &parentId,
                               const QByteArray &content, const QString &category)
{
    return client
        .post(projectPath("documents"),
              {{"parentId", idOrNull(parentId)},
               {"name", name},
               {"type", "file"},
               {"category", category},
               {"file", upload(content, name)}})
        .object()
        .value("_id")
        .toString();
}

QString ServiceWorld::upload(const QByteArray &content, const QString &name)
{
    return client.postForm("base-service/files", {{QString("file/") + name, content}})
        .object()
        .value("files")
        .toArray()
        .at(0)
        .toString();
}

QString ServiceWorld::addMember(const QString &name, const QString &role)
{
    const QString project = "p1";
    QString token = service->addUser(name);
    QString error;
    service->addProject(project, QString(), &error);
    if (!service->setRole(project, name, role, &error))
        qWarning("%s", qUtf8Printable(error));
    return token;
}

bool ServiceWorld::runSql(const QString &statement) const
{
    bool isDone = false;
    runOn(m_options.dataDir, statement, &isDone);
    return isDone;
}

QVariant ServiceWorld::sqlValue(const QString &query) const
{
    bool isDone = false;
    return runOn(m_options.dataDir, query, &isDone);
}

QJsonArray ServiceWorld::list(const QJsonObject &where, const HttpClient::Parameters &parameters)
{
    HttpClient::Parameters all{
        {"where", QString::fromUtf8(QJsonDocument(where).toJson(QJsonDocument::Compact))}};
    return client.get(projectPath("documents"), all + parameters).array();
}

QStringList ServiceWorld::names(const QJsonObject &where, const HttpClient::Parameters &parameters)
{
    QStringList names;
    const QJsonArray documents = list(where, parameters);
    for (const QJsonValue &document : documents)
        names.append(document.toObject().value("name").toString());
    return names;
}

QJsonObject ServiceWorld::document(const QString &id)
{
    return client.get(documentPath(id)).object();
}

QByteArray ServiceWorld::exchange(const QByteArray &bytes) const
{
    QTcpSocket socket;
    socket.connectToHost("127.0.0.1", service->port());
    if (!socket.waitForConnected(5000))
        return {};
    socket.write(bytes);
    QByteArray answer;
    while (!answer.contains("\r\n\r\n") && socket.waitForReadyRead(5000))
        answer += socket.readAll();
    // Further answers, and the bodies that belong to them.
    while (socket.waitForReadyRead(200))
        answer += socket.readAll();
    return answer;
}

QString ServiceWorld::projectPath(const QString &rest)
{
    return QString("document-service/projects/p1/") + rest;
}

QString ServiceWorld::documentPath(const QString &id, const QString &rest)
{
    return QString("document-service/documents/") + id + rest;
}

QJsonObject ServiceWorld::below(const QString &parentId)
{
    return {{"parentId", idOrNull(parentId)}};
}
