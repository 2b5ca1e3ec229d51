#include <service/RawClient.h>
#include <service/ServiceWorld.h>

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QMap>
#include <QTest>

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
    void onlyOwnersDeletePermanently_data();
    void onlyOwnersDeletePermanently();
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
        return m_world->client
            .get(ServiceWorld::projectPath("auth"), {{"key", key}, {"category", "c"}, {"rId", id}})
            .object()
            .value("value")
            .toString();
    }
    bool isAllowed(const QString &key, const QString &id);
    void become(const QString &token, const QString &role);

    std::unique_ptr<ServiceWorld> m_world;
    QString m_owner;
    QString m_user;
};

void TestServiceRoles::init()
{
    m_world = std::make_unique<ServiceWorld>();
    m_owner = m_world->service->addUser("boss");
    m_user = m_world->service->addUser("user");
    QVERIFY(m_world->service->addProject("p1", "First"));
    QVERIFY(m_world->service->setRole("p1", "boss", "owner"));
}

void TestServiceRoles::become(const QString &token, const QString &role)
{
    m_world->client.setToken(token);
    QVERIFY(m_world->service->setRole("p1", "user", role));
}

//! Does what the key names and says whether the service let it.
bool TestServiceRoles::isAllowed(const QString &key, const QString &id)
{
    const QString path = ServiceWorld::documentPath(id);
    HttpAnswer answer;
    if (key == QLatin1String("delete"))
        answer = m_world->client.remove(path);
    else if (key == QLatin1String("edit"))
        answer = m_world->client.put(path, {{"remark", "x"}});
    else if (key == QLatin1String("download"))
        answer = m_world->client.get(path, {{"pwd", "true"}});
    else if (key == QLatin1String("upload"))
        answer = m_world->client.post(ServiceWorld::projectPath("documents"),
                                      {{"name", "new"}, {"type", "dir"}, {"parentId", id}});
    else if (key == QLatin1String("share"))
        answer = m_world->client.post("document-service/documents/shares",
                                      {{"hostId", "p1"}, {"documentIds", QJsonArray{id}}});
    else if (key == QLatin1String("purge"))
        answer = m_world->client.remove("document-service/documents", {{"hostId", "p1"}});
    else if (key == QLatin1String("read"))
        answer = m_world->client.get(path);
    if (!answer.isSuccess() && answer.status != 403)
        qWarning("%s: %d %s", qUtf8Printable(key), answer.status, answer.body.constData());
    return answer.isSuccess();
}

void TestServiceRoles::withUsersATokenIsNeeded()
{
    const QString me = "base-service/me";
    m_world->client.setToken(QString());
    const HttpAnswer without = m_world->client.get(me);
    QCOMPARE(without.status, 401);
    QVERIFY(!without.errorText().isEmpty());
    m_world->client.setToken("guessed");
    QCOMPARE(m_world->client.get(me).status, 401);
    m_world->client.setToken(m_owner);
    QCOMPARE(m_world->client.get(me).status, 200);
}

void TestServiceRoles::unknownProjectsAreNotFound()
{
    m_world->client.setToken(m_owner);
    const QString path = "document-service/projects/none/documents";
    QCOMPARE(m_world->client.get(path).status, 404);
    QCOMPARE(m_world->client.post(path, {{"name", "x"}, {"type", "dir"}}).status, 404);
}

void TestServiceRoles::everyRoleMayWhatTheAnswerSays_data()
{
    QTest::addColumn<QString>("role");
    QTest::addColumn<QString>("key");
    QTest::addColumn<bool>("isOwn");
    QTest::addColumn<bool>("expected");
    const QMap<QString, QString> table{
        // what may be done to others' documents, then to own ones
        {"owner",
         "read download upload edit delete share purge"
         "|read download upload edit delete share purge"},
        {"editor",
         "read download upload edit delete share"
         "|read download upload edit delete share"},
        {"contributor", "read download upload share|read download upload edit delete share"},
        {"viewer", "read download|read download"},
        {"none", "|"},
    };
    for (auto it = table.begin(); it != table.end(); ++it) {
        for (const char *key : {"read", "download", "upload", "edit", "delete", "share", "purge"}) {
            for (const bool isOwn : {false, true}) {
                const QStringList allowed =
                    it.value()
                        .section(QLatin1Char('|'), isOwn ? 1 : 0, isOwn ? 1 : 0)
                        .split(QLatin1Char(' '));
                const QString title = QString("%1, %2, %3")
                                          .arg(it.key(), QString::fromLatin1(key),
                                               isOwn ? QString("own") : QString("another's"));
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
    become(isOwn ? m_user : m_owner, "contributor");
    const QString id = m_world->makeFolder("folder");
    QVERIFY(!id.isEmpty());
    become(m_user, role);
    QCOMPARE(answer(key, id),
             role == QLatin1String("none") ? QString() : QVariant(expected).toString());
    const QJsonArray rights = m_world->document(id).value("auths").toArray();
    for (const QJsonValue &right : rights) {
        if (right.toObject().value("key").toString() == key) {
            QCOMPARE(right.toObject().value("value").toString(), QVariant(expected).toString());
        }
    }
    QCOMPARE(isAllowed(key, id), expected);
}

void TestServiceRoles::onlyOwnersDeletePermanently_data()
{
    QTest::addColumn<QString>("role");
    QTest::addColumn<int>("status");
    QTest::newRow("owner") << "owner" << 200;
    QTest::newRow("editor") << "editor" << 403;
    QTest::newRow("contributor, own document") << "contributor" << 403;
}

void TestServiceRoles::onlyOwnersDeletePermanently()
{
    QFETCH(QString, role);
    QFETCH(int, status);
    become(m_user, "contributor");
    const QString id = m_world->makeFile("a.txt", {}, "one");
    QCOMPARE(m_world->client.put(ServiceWorld::documentPath(id), {{"file", m_world->upload("two")}})
                 .status,
             200);
    const QJsonArray versions =
        m_world->client.get(ServiceWorld::documentPath(id, "/histories")).array();
    QCOMPARE(versions.size(), 2);
    const QString first = versions.last().toObject().value("_id").toString();
    QCOMPARE(m_world->client.remove(ServiceWorld::documentPath(id)).status, 200);
    become(m_user, role);
    QCOMPARE(m_world->client.remove("document-service/documents/histories/" + first).status,
             status);
    QCOMPARE(
        m_world->client.remove(ServiceWorld::documentPath(id), {{"permanently", "true"}}).status,
        status);
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
    m_world->client.setToken(m_owner);
    const QString file = m_world->makeFile("a.txt");
    const QJsonArray versions =
        m_world->client.get(ServiceWorld::documentPath(file, "/histories")).array();
    target.replace("FILE", file.toLatin1());
    target.replace("VERSION", versions.at(0).toObject().value("_id").toString().toLatin1());
    const auto statusFor = [&](const QString &role) {
        become(m_user, role);
        RawClient client(m_world->service->port());
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
    QTest::newRow("owner") << "owner"
                           << "true";
    QTest::newRow("editor") << "editor"
                            << "true";
    QTest::newRow("contributor") << "contributor"
                                 << "true";
    QTest::newRow("viewer") << "viewer"
                            << "false";
}

void TestServiceRoles::selfAnswersFollowTheRole()
{
    QFETCH(QString, role);
    QFETCH(QString, expected);
    become(m_user, role);
    QCOMPARE(answer("delete-self"), expected);
    QCOMPARE(answer("edit-self"), expected);
}

void TestServiceRoles::aContributorDeletesNoFolderWithOthersFiles()
{
    become(m_user, "contributor");
    const QString own = m_world->makeFolder("own");
    m_world->client.setToken(m_owner);
    const QString others = m_world->makeFolder("others", own);
    m_world->client.setToken(m_user);
    QCOMPARE(answer("delete", own), QString("false"));
    QCOMPARE(m_world->client.remove(ServiceWorld::documentPath(own)).status, 403);
    m_world->client.setToken(m_owner);
    m_world->client.remove(ServiceWorld::documentPath(others));
    m_world->client.setToken(m_user);
    QCOMPARE(answer("delete", own), QString("true"));
    QCOMPARE(m_world->client.remove(ServiceWorld::documentPath(own)).status, 200);
}

void TestServiceRoles::aContributorRestoresNoFolderWithOthersFiles()
{
    become(m_user, "contributor");
    const QString own = m_world->makeFolder("own");
    m_world->client.setToken(m_owner);
    m_world->makeFolder("others", own);
    QCOMPARE(m_world->client.remove(ServiceWorld::documentPath(own)).status, 200);
    m_world->client.setToken(m_user);
    const QString restore = ServiceWorld::documentPath(own, "/restore");
    QCOMPARE(answer("delete", own), QString("false"));
    QCOMPARE(m_world->client.get(restore).status, 403);
    m_world->client.setToken(m_owner);
    QCOMPARE(m_world->client.get(restore).status, 200);
}

void TestServiceRoles::tokensAreRenewedAndRevoked()
{
    const QString me = "base-service/me";
    const QString token = "base-service/me/token";
    m_world->client.setToken(m_user);
    const QString fresh = m_world->client.send("POST", token).object().value("token").toString();
    QCOMPARE(fresh.size(), 64);
    QCOMPARE(m_world->client.get(me).status, 401);
    m_world->client.setToken(fresh);
    QCOMPARE(m_world->client.get(me).status, 200);
    QCOMPARE(m_world->client.remove(token).status, 200);
    QCOMPARE(m_world->client.get(me).status, 401);
    m_world->client.setToken(m_owner);
    QCOMPARE(m_world->client.get(me).status, 200); // nobody else's
}

void TestServiceRoles::withoutUsersThereAreNoTokens()
{
    ServiceWorld open;
    QCOMPARE(open.client.send("POST", "base-service/me/token").status, 409);
    QCOMPARE(open.client.remove("base-service/me/token").status, 409);
}

void TestServiceRoles::aRemovedUserIsGone()
{
    become(m_user, "contributor");
    const QString id = m_world->makeFolder("made by user");
    const QString maker = m_world->document(id).value("createdBy").toString();
    QVERIFY(m_world->service->removeUser("user"));
    QCOMPARE(m_world->client.get("base-service/me").status, 401);
    QVERIFY(!m_world->service->removeUser("user"));
    m_world->client.setToken(m_owner);
    QCOMPARE(m_world->document(id).value("createdBy").toString(), maker);
    // Another person of the same name has none of it.
    m_world->client.setToken(m_world->service->addUser("user"));
    const QJsonObject me = m_world->client.get("base-service/me").object();
    QVERIFY(me.value("_id").toString() != maker);
    QCOMPARE(me.value("projects").toArray().size(), 0);
}

void TestServiceRoles::theServiceStaysClosedWhenTheLastUserGoes()
{
    QVERIFY(m_world->service->removeUser("user"));
    QVERIFY(m_world->service->removeUser("boss"));
    m_world->client.setToken(QString());
    QCOMPARE(m_world->client.get("base-service/me").status, 401);
}

void TestServiceRoles::meTellsTheProjects()
{
    become(m_user, "viewer");
    QVERIFY(m_world->service->addProject("p2", QString()));
    const QJsonObject me = m_world->client.get("base-service/me").object();
    QCOMPARE(me.value("name").toString(), QString("user"));
    const QJsonArray projects = me.value("projects").toArray();
    QCOMPARE(projects.size(), 1);
    const QJsonObject expected{{"_id", "p1"}, {"name", "First"}, {"role", "viewer"}};
    QCOMPARE(projects.at(0).toObject(), expected);
}

void TestServiceRoles::membersAreToldToMembers()
{
    const QString path = ServiceWorld::projectPath("users");
    m_world->client.setToken(m_user);
    QCOMPARE(m_world->client.get(path).status, 403);
    become(m_user, "viewer");
    const HttpAnswer answer = m_world->client.get(path);
    QCOMPARE(answer.status, 200);
    const QJsonArray members = answer.array();
    QCOMPARE(members.size(), 2);
    QCOMPARE(members.at(0).toObject().value(QLatin1String("name")).toString(), QString("boss"));
    QCOMPARE(members.at(0).toObject().value(QLatin1String("role")).toString(), QString("owner"));
    const QJsonObject user = members.at(1).toObject();
    QCOMPARE(user.value(QLatin1String("name")).toString(), QString("user"));
    QCOMPARE(user.value(QLatin1String("_id")),
             m_world->client.get("base-service/me").object().value(QLatin1String("_id")));
    QVERIFY(m_world->service->removeUser("boss"));
    QCOMPARE(m_world->client.get(path).array().size(), 1);
}

void TestServiceRoles::withoutUsersThereIsOneMember()
{
    ServiceWorld world;
    world.makeFolder("a");
    const QJsonArray members = world.client.get(ServiceWorld::projectPath("users")).array();
    QCOMPARE(members.size(), 1);
    QCOMPARE(members.at(0).toObject().value(QLatin1String("name")).toString(), QString("local"));
}

void TestServiceRoles::administrationRefusesNonsense()
{
    QString error;
    QVERIFY(m_world->service->addUser("boss", &error).isEmpty());
    QVERIFY2(error.contains("already"), qUtf8Printable(error));
    QVERIFY(!m_world->service->addProject("p1", QString(), &error));
    QVERIFY(!m_world->service->addProject("a/b", QString(), &error));
    const QString p1 = "p1";
    const QString boss = "boss";
    const QString editor = "editor";
    QVERIFY(!m_world->service->setRole(p1, "nobody", editor, &error));
    QVERIFY(!m_world->service->setRole("none", boss, editor, &error));
    QVERIFY(!m_world->service->setRole(p1, boss, "king", &error));
    QVERIFY(!m_world->service->setRole(p1, "local", editor, &error));
}

void TestServiceRoles::theAnswersNeedSense()
{
    m_world->client.setToken(m_owner);
    const QString path = ServiceWorld::projectPath("auth");
    QCOMPARE(m_world->client.get(path).status, 400);
    QCOMPARE(m_world->client.get(path, {{"key", "fly"}}).status, 400);
    QCOMPARE(m_world->client.get(path, {{"key", "edit"}, {"rId", "none"}}).status, 404);
}

QTEST_GUILESS_MAIN(TestServiceRoles)
#include "tst_service_roles.moc"
