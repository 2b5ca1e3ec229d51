#include <service/ServiceFixture.h>

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
    const QString name = QStringLiteral("ServiceFixture");
    QVariant result;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        database.setDatabaseName(dataDir + QStringLiteral("/records.sqlite"));
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

ServiceFixture::ServiceFixture(const ServiceOptions &options)
    : client(QString()), m_options(options)
{
    m_options.dataDir = folder.path() + QStringLiteral("/data");
    m_options.database = TestDatabase::addressFor(m_options.dataDir);
    isStarted = restart();
}

bool ServiceFixture::restart()
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

QString ServiceFixture::makeFolder(const QString &name, const QString &parentId,
                                   const QString &category)
{
    return client
        .post(projectPath(QStringLiteral("documents")),
              {{QStringLiteral("parentId"), idOrNull(parentId)},
               {QStringLiteral("name"), name},
               {QStringLiteral("type"), QStringLiteral("dir")},
               {QStringLiteral("category"), category}})
        .object()
        .value(QStringLiteral("_id"))
        .toString();
}

QString ServiceFixture::makeFile(const QString &name, const QString &parentId,
                                 const QByteArray &content, const QString &category)
{
    return client
        .post(projectPath(QStringLiteral("documents")),
              {{QStringLiteral("parentId"), idOrNull(parentId)},
               {QStringLiteral("name"), name},
               {QStringLiteral("type"), QStringLiteral("file")},
               {QStringLiteral("category"), category},
               {QStringLiteral("file"), upload(content, name)}})
        .object()
        .value(QStringLiteral("_id"))
        .toString();
}

QString ServiceFixture::upload(const QByteArray &content, const QString &name)
{
    return client
        .postForm(QStringLiteral("base-service/files"), {{QStringLiteral("file/") + name, content}})
        .object()
        .value(QStringLiteral("files"))
        .toArray()
        .at(0)
        .toString();
}

QString ServiceFixture::addMember(const QString &name, const QString &role)
{
    const QString project = QStringLiteral("p1");
    QString token = service->addUser(name);
    QString error;
    service->addProject(project, QString(), &error);
    if (!service->setRole(project, name, role, &error))
        qWarning("%s", qUtf8Printable(error));
    return token;
}

bool ServiceFixture::runSql(const QString &statement) const
{
    bool isDone = false;
    runOn(m_options.dataDir, statement, &isDone);
    return isDone;
}

QVariant ServiceFixture::sqlValue(const QString &query) const
{
    bool isDone = false;
    return runOn(m_options.dataDir, query, &isDone);
}

QJsonArray ServiceFixture::list(const QJsonObject &where, const HttpClient::Parameters &parameters)
{
    HttpClient::Parameters all{
        {QStringLiteral("where"),
         QString::fromUtf8(QJsonDocument(where).toJson(QJsonDocument::Compact))}};
    return client.get(projectPath(QStringLiteral("documents")), all + parameters).array();
}

QStringList ServiceFixture::names(const QJsonObject &where,
                                  const HttpClient::Parameters &parameters)
{
    QStringList names;
    const QJsonArray documents = list(where, parameters);
    for (const QJsonValue &document : documents)
        names.append(document.toObject().value(QStringLiteral("name")).toString());
    return names;
}

QJsonObject ServiceFixture::document(const QString &id)
{
    return client.get(documentPath(id)).object();
}

QByteArray ServiceFixture::exchange(const QByteArray &bytes) const
{
    QTcpSocket socket;
    socket.connectToHost(QStringLiteral("127.0.0.1"), service->port());
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

QString ServiceFixture::projectPath(const QString &rest)
{
    return QStringLiteral("document-service/projects/p1/") + rest;
}

QString ServiceFixture::documentPath(const QString &id, const QString &rest)
{
    return QStringLiteral("document-service/documents/") + id + rest;
}

QJsonObject ServiceFixture::below(const QString &parentId)
{
    return {{QStringLiteral("parentId"), idOrNull(parentId)}};
}
