#include <service/RawClient.h>
#include <service/ServiceFixture.h>

#include <QtTest>

//! Who may do what: the answers to "may I" are what the service then does.
class TestServiceRoles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void withUsersATokenIsNeeded();
    void unknownProjectsAreNotFound();
    void everyRoleMayWhatTheAnswerSays_data();
    void everyRoleMayWhatTheAnswerSays();
    void bodiesAreNotReadWithoutTheRight_data();
    void bodiesAreNotReadWithoutTheRight();
    void selfAnswersFollowTheRole_data();
    void selfAnswersFollowTheRole();
    void aContributorDeletesNoFolderWithOthersFiles();
    void aContributorRestoresNoFolderWithOthersFiles();
    void tokensAreRenewedAndRevoked();
    void withoutUsersThereAreNoTokens();
    void aRemovedUserIsGone();
    void theServiceStaysClosedWhenTheLastUserGoes();
    void meTellsTheProjects();
    void membersAreToldToMembers();
    void withoutUsersThereIsOneMember();
    void administrationRefusesNonsense();
    void theAnswersNeedSense();

private:
    QString answer(const QString &key, const QString &id = {})
    {
        return m_fixture->client
            .get(ServiceFixture::projectPath(QStringLiteral("auth")),
                 {{QStringLiteral("key"), key},
                  {QStringLiteral("category"), QStringLiteral("c")},
                  {QStringLiteral("rId"), id}})
            .object()
            .value(QStringLiteral("value"))
            .toString();
    }
    bool isAllowed(const QString &key, const QString &id);
    void become(const QString &token, const QString &role);

    std::unique_ptr<ServiceFixture> m_fixture;
    QString m_owner;
    QString m_user;
};

void TestServiceRoles::init()
{
    m_fixture = std::make_unique<ServiceFixture>();
    m_owner = m_fixture->service->addUser(QStringLiteral("boss"));
    m_user = m_fixture->service->addUser(QStringLiteral("user"));
    QVERIFY(m_fixture->service->addProject(QStringLiteral("p1"), QStringLiteral("First")));
    QVERIFY(m_fixture->service->setRole(QStringLiteral("p1"), QStringLiteral("boss"),
                                        QStringLiteral("owner")));
}

void TestServiceRoles::become(const QString &token, const QString &role)
{
    m_fixture->client.setToken(token);
    QVERIFY(m_fixture->service->setRole(QStringLiteral("p1"), QStringLiteral("user"), role));
}

//! Does what the key names and says whether the service let it.
bool TestServiceRoles::isAllowed(const QString &key, const QString &id)
{
    const QString path = ServiceFixture::documentPath(id);
    HttpAnswer answer;
    if (key == QLatin1String("delete"))
        answer = m_fixture->client.remove(path);
    else if (key == QLatin1String("edit"))
        answer = m_fixture->client.put(path, {{QStringLiteral("remark"), QStringLiteral("x")}});
    else if (key == QLatin1String("download"))
        answer = m_fixture->client.get(path, {{QStringLiteral("pwd"), QStringLiteral("true")}});
    else if (key == QLatin1String("upload"))
        answer = m_fixture->client.post(ServiceFixture::projectPath(QStringLiteral("documents")),
                                        {{QStringLiteral("name"), QStringLiteral("new")},
                                         {QStringLiteral("type"), QStringLiteral("dir")},
                                         {QStringLiteral("parentId"), id}});
    else if (key == QLatin1String("share"))
        answer = m_fixture->client.post(QStringLiteral("document-service/documents/shares"),
                                        {{QStringLiteral("hostId"), QStringLiteral("p1")},
                                         {QStringLiteral("documentIds"), QJsonArray{id}}});
    else if (key == QLatin1String("purge"))
        answer = m_fixture->client.remove(QStringLiteral("document-service/documents"),
                                          {{QStringLiteral("hostId"), QStringLiteral("p1")}});
    else if (key == QLatin1String("read"))
        answer = m_fixture->client.get(path);
    if (!answer.isSuccess() && answer.status != 403)
        qWarning("%s: %d %s", qUtf8Printable(key), answer.status, answer.body.constData());
    return answer.isSuccess();
}

void TestServiceRoles::withUsersATokenIsNeeded()
{
    const QString me = QStringLiteral("base-service/me");
    m_fixture->client.setToken(QString());
    const HttpAnswer without = m_fixture->client.get(me);
    QCOMPARE(without.status, 401);
    QVERIFY(!without.errorText().isEmpty());
    m_fixture->client.setToken(QStringLiteral("guessed"));
    QCOMPARE(m_fixture->client.get(me).status, 401);
    m_fixture->client.setToken(m_owner);
    QCOMPARE(m_fixture->client.get(me).status, 200);
}

void TestServiceRoles::unknownProjectsAreNotFound()
{
    m_fixture->client.setToken(m_owner);
    const QString path = QStringLiteral("document-service/projects/none/documents");
    QCOMPARE(m_fixture->client.get(path).status, 404);
    QCOMPARE(m_fixture->client
                 .post(path,
                       {{QStringLiteral("name"), QStringLiteral("x")},
                        {QStringLiteral("type"), QStringLiteral("dir")}})
                 .status,
             404);
}

void TestServiceRoles::everyRoleMayWhatTheAnswerSays_data()
{
    QTest::addColumn<QString>("role");
    QTest::addColumn<QString>("key");
    QTest::addColumn<bool>("isOwn");
    QTest::addColumn<bool>("expected");
    const QMap<QString, QString> table{
        // what may be done to others' documents, then to own ones
        {QStringLiteral("owner"),
         QStringLiteral("read download upload edit delete share purge"
                        "|read download upload edit delete share purge")},
        {QStringLiteral("editor"),
         QStringLiteral("read download upload edit delete share"
                        "|read download upload edit delete share")},
        {QStringLiteral("contributor"),
         QStringLiteral("read download upload share|read download upload edit delete share")},
        {QStringLiteral("viewer"), QStringLiteral("read download|read download")},
        {QStringLiteral("none"), QStringLiteral("|")},
    };
    for (auto it = table.begin(); it != table.end(); ++it) {
        for (const char *key : {"read", "download", "upload", "edit", "delete", "share", "purge"}) {
            for (const bool isOwn : {false, true}) {
                const QStringList allowed =
                    it.value()
                        .section(QLatin1Char('|'), isOwn ? 1 : 0, isOwn ? 1 : 0)
                        .split(QLatin1Char(' '));
                const QString title =
                    QStringLiteral("%1, %2, %3")
                        .arg(it.key(), QString::fromLatin1(key),
                             isOwn ? QStringLiteral("own") : QStringLiteral("another's"));
                QTest::newRow(qPrintable(title)) << it.key() << QString::fromLatin1(key) << isOwn
                                                 << allowed.contains(QString::fromLatin1(key));
            }
        }
    }
}

void TestServiceRoles::everyRoleMayWhatTheAnswerSays()
{
    QFETCH(QString, role);
    QFETCH(QString, key);
    QFETCH(bool, isOwn);
    QFETCH(bool, expected);
    become(isOwn ? m_user : m_owner, QStringLiteral("contributor"));
    const QString id = m_fixture->makeFolder(QStringLiteral("folder"));
    QVERIFY(!id.isEmpty());
    become(m_user, role);
    QCOMPARE(answer(key, id),
             role == QLatin1String("none") ? QString() : QVariant(expected).toString());
    const QJsonArray rights = m_fixture->document(id).value(QStringLiteral("auths")).toArray();
    for (const QJsonValue &right : rights) {
        if (right.toObject().value(QStringLiteral("key")).toString() == key) {
            QCOMPARE(right.toObject().value(QStringLiteral("value")).toString(),
                     QVariant(expected).toString());
        }
    }
    QCOMPARE(isAllowed(key, id), expected);
}

void TestServiceRoles::bodiesAreNotReadWithoutTheRight_data()
{
    QTest::addColumn<QByteArray>("verb");
    QTest::addColumn<QByteArray>("target");
    QTest::addColumn<QString>("unable");
    QTest::addColumn<QString>("able");
    const auto row = [](const char *verb, const char *target, const char *unable,
                        const char *able) {
        QTest::newRow((QByteArray(verb) + QByteArray(" ") + target).constData())
            << QByteArray(verb) << QByteArray(target) << QString::fromLatin1(unable)
            << QString::fromLatin1(able);
    };
    row("POST", "/document-service/projects/p1/documents", "viewer", "contributor");
    row("PUT", "/document-service/documents", "viewer", "contributor");
    row("PUT", "/document-service/documents/FILE", "contributor", "editor");
    row("PUT", "/document-service/documents/FILE/records", "none", "viewer");
    row("PUT", "/document-service/documents/histories/VERSION", "contributor", "editor");
    row("POST", "/document-service/documents/shares", "viewer", "contributor");
}

//! Who sends "Expect: 100-continue" is told before the body is sent.
void TestServiceRoles::bodiesAreNotReadWithoutTheRight()
{
    QFETCH(QByteArray, verb);
    QFETCH(QByteArray, target);
    QFETCH(QString, unable);
    QFETCH(QString, able);
    m_fixture->client.setToken(m_owner);
    const QString file = m_fixture->makeFile(QStringLiteral("a.txt"));
    const QJsonArray versions =
        m_fixture->client.get(ServiceFixture::documentPath(file, QStringLiteral("/histories")))
            .array();
    target.replace("FILE", file.toLatin1());
    target.replace("VERSION",
                   versions.at(0).toObject().value(QStringLiteral("_id")).toString().toLatin1());
    const auto statusFor = [&](const QString &role) {
        become(m_user, role);
        RawClient client(m_fixture->service->port());
        client.send(RawClient::request(verb, target,
                                       "Authorization: Bearer " + m_user.toLatin1()
                                           + "\r\nExpect: 100-continue\r\nContent-Length: 2\r\n"));
        return client.next(false).status;
    };
    QCOMPARE(statusFor(unable), 403);
    QCOMPARE(statusFor(able), 100);
}

void TestServiceRoles::selfAnswersFollowTheRole_data()
{
    QTest::addColumn<QString>("role");
    QTest::addColumn<QString>("expected");
    QTest::newRow("owner") << QStringLiteral("owner") << QStringLiteral("true");
    QTest::newRow("editor") << QStringLiteral("editor") << QStringLiteral("true");
    QTest::newRow("contributor") << QStringLiteral("contributor") << QStringLiteral("true");
    QTest::newRow("viewer") << QStringLiteral("viewer") << QStringLiteral("false");
}

void TestServiceRoles::selfAnswersFollowTheRole()
{
    QFETCH(QString, role);
    QFETCH(QString, expected);
    become(m_user, role);
    QCOMPARE(answer(QStringLiteral("delete-self")), expected);
    QCOMPARE(answer(QStringLiteral("edit-self")), expected);
}

void TestServiceRoles::aContributorDeletesNoFolderWithOthersFiles()
{
    become(m_user, QStringLiteral("contributor"));
    const QString own = m_fixture->makeFolder(QStringLiteral("own"));
    m_fixture->client.setToken(m_owner);
    const QString others = m_fixture->makeFolder(QStringLiteral("others"), own);
    m_fixture->client.setToken(m_user);
    QCOMPARE(answer(QStringLiteral("delete"), own), QStringLiteral("false"));
    QCOMPARE(m_fixture->client.remove(ServiceFixture::documentPath(own)).status, 403);
    m_fixture->client.setToken(m_owner);
    m_fixture->client.remove(ServiceFixture::documentPath(others));
    m_fixture->client.setToken(m_user);
    QCOMPARE(answer(QStringLiteral("delete"), own), QStringLiteral("true"));
    QCOMPARE(m_fixture->client.remove(ServiceFixture::documentPath(own)).status, 200);
}

void TestServiceRoles::aContributorRestoresNoFolderWithOthersFiles()
{
    become(m_user, QStringLiteral("contributor"));
    const QString own = m_fixture->makeFolder(QStringLiteral("own"));
    m_fixture->client.setToken(m_owner);
    m_fixture->makeFolder(QStringLiteral("others"), own);
    QCOMPARE(m_fixture->client.remove(ServiceFixture::documentPath(own)).status, 200);
    m_fixture->client.setToken(m_user);
    const QString restore = ServiceFixture::documentPath(own, QStringLiteral("/restore"));
    QCOMPARE(answer(QStringLiteral("delete"), own), QStringLiteral("false"));
    QCOMPARE(m_fixture->client.get(restore).status, 403);
    m_fixture->client.setToken(m_owner);
    QCOMPARE(m_fixture->client.get(restore).status, 200);
}

void TestServiceRoles::tokensAreRenewedAndRevoked()
{
    const QString me = QStringLiteral("base-service/me");
    const QString token = QStringLiteral("base-service/me/token");
    m_fixture->client.setToken(m_user);
    const QString fresh =
        m_fixture->client.send("POST", token).object().value(QStringLiteral("token")).toString();
    QCOMPARE(fresh.size(), 64);
    QCOMPARE(m_fixture->client.get(me).status, 401);
    m_fixture->client.setToken(fresh);
    QCOMPARE(m_fixture->client.get(me).status, 200);
    QCOMPARE(m_fixture->client.remove(token).status, 200);
    QCOMPARE(m_fixture->client.get(me).status, 401);
    m_fixture->client.setToken(m_owner);
    QCOMPARE(m_fixture->client.get(me).status, 200); // nobody else's
}

void TestServiceRoles::withoutUsersThereAreNoTokens()
{
    ServiceFixture open;
    QCOMPARE(open.client.send("POST", QStringLiteral("base-service/me/token")).status, 409);
    QCOMPARE(open.client.remove(QStringLiteral("base-service/me/token")).status, 409);
}

void TestServiceRoles::aRemovedUserIsGone()
{
    become(m_user, QStringLiteral("contributor"));
    const QString id = m_fixture->makeFolder(QStringLiteral("made by user"));
    const QString maker = m_fixture->document(id).value(QStringLiteral("createdBy")).toString();
    QVERIFY(m_fixture->service->removeUser(QStringLiteral("user")));
    QCOMPARE(m_fixture->client.get(QStringLiteral("base-service/me")).status, 401);
    QVERIFY(!m_fixture->service->removeUser(QStringLiteral("user")));
    m_fixture->client.setToken(m_owner);
    QCOMPARE(m_fixture->document(id).value(QStringLiteral("createdBy")).toString(), maker);
    // Another person of the same name has none of it.
    m_fixture->client.setToken(m_fixture->service->addUser(QStringLiteral("user")));
    const QJsonObject me = m_fixture->client.get(QStringLiteral("base-service/me")).object();
    QVERIFY(me.value(QStringLiteral("_id")).toString() != maker);
    QCOMPARE(me.value(QStringLiteral("projects")).toArray().size(), 0);
}

void TestServiceRoles::theServiceStaysClosedWhenTheLastUserGoes()
{
    QVERIFY(m_fixture->service->removeUser(QStringLiteral("user")));
    QVERIFY(m_fixture->service->removeUser(QStringLiteral("boss")));
    m_fixture->client.setToken(QString());
    QCOMPARE(m_fixture->client.get(QStringLiteral("base-service/me")).status, 401);
}

void TestServiceRoles::meTellsTheProjects()
{
    become(m_user, QStringLiteral("viewer"));
    QVERIFY(m_fixture->service->addProject(QStringLiteral("p2"), QString()));
    const QJsonObject me = m_fixture->client.get(QStringLiteral("base-service/me")).object();
    QCOMPARE(me.value(QStringLiteral("name")).toString(), QStringLiteral("user"));
    const QJsonArray projects = me.value(QStringLiteral("projects")).toArray();
    QCOMPARE(projects.size(), 1);
    const QJsonObject expected{{QStringLiteral("_id"), QStringLiteral("p1")},
                               {QStringLiteral("name"), QStringLiteral("First")},
                               {QStringLiteral("role"), QStringLiteral("viewer")}};
    QCOMPARE(projects.at(0).toObject(), expected);
}

void TestServiceRoles::membersAreToldToMembers()
{
    const QString path = ServiceFixture::projectPath(QStringLiteral("users"));
    m_fixture->client.setToken(m_user);
    QCOMPARE(m_fixture->client.get(path).status, 403);
    become(m_user, QStringLiteral("viewer"));
    const HttpAnswer answer = m_fixture->client.get(path);
    QCOMPARE(answer.status, 200);
    const QJsonArray members = answer.array();
    QCOMPARE(members.size(), 2);
    QCOMPARE(members.at(0).toObject().value(QLatin1String("name")).toString(),
             QStringLiteral("boss"));
    QCOMPARE(members.at(0).toObject().value(QLatin1String("role")).toString(),
             QStringLiteral("owner"));
    const QJsonObject user = members.at(1).toObject();
    QCOMPARE(user.value(QLatin1String("name")).toString(), QStringLiteral("user"));
    QCOMPARE(user.value(QLatin1String("_id")),
             m_fixture->client.get(QStringLiteral("base-service/me"))
                 .object()
                 .value(QLatin1String("_id")));
    QVERIFY(m_fixture->service->removeUser(QStringLiteral("boss")));
    QCOMPARE(m_fixture->client.get(path).array().size(), 1);
}

void TestServiceRoles::withoutUsersThereIsOneMember()
{
    ServiceFixture fixture;
    fixture.makeFolder(QStringLiteral("a"));
    const QJsonArray members =
        fixture.client.get(ServiceFixture::projectPath(QStringLiteral("users"))).array();
    QCOMPARE(members.size(), 1);
    QCOMPARE(members.at(0).toObject().value(QLatin1String("name")).toString(),
             QStringLiteral("local"));
}

void TestServiceRoles::administrationRefusesNonsense()
{
    QString error;
    QVERIFY(m_fixture->service->addUser(QStringLiteral("boss"), &error).isEmpty());
    QVERIFY2(error.contains(QStringLiteral("already")), qUtf8Printable(error));
    QVERIFY(!m_fixture->service->addProject(QStringLiteral("p1"), QString(), &error));
    QVERIFY(!m_fixture->service->addProject(QStringLiteral("a/b"), QString(), &error));
    const QString p1 = QStringLiteral("p1");
    const QString boss = QStringLiteral("boss");
    const QString editor = QStringLiteral("editor");
    QVERIFY(!m_fixture->service->setRole(p1, QStringLiteral("nobody"), editor, &error));
    QVERIFY(!m_fixture->service->setRole(QStringLiteral("none"), boss, editor, &error));
    QVERIFY(!m_fixture->service->setRole(p1, boss, QStringLiteral("king"), &error));
    QVERIFY(!m_fixture->service->setRole(p1, QStringLiteral("local"), editor, &error));
}

void TestServiceRoles::theAnswersNeedSense()
{
    m_fixture->client.setToken(m_owner);
    const QString path = ServiceFixture::projectPath(QStringLiteral("auth"));
    QCOMPARE(m_fixture->client.get(path).status, 400);
    QCOMPARE(m_fixture->client.get(path, {{QStringLiteral("key"), QStringLiteral("fly")}}).status,
             400);
    QCOMPARE(m_fixture->client
                 .get(path,
                      {{QStringLiteral("key"), QStringLiteral("edit")},
                       {QStringLiteral("rId"), QStringLiteral("none")}})
                 .status,
             404);
}

QTEST_GUILESS_MAIN(TestServiceRoles)
#include "tst_service_roles.moc"
