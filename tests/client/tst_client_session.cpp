#include "ClientWorld.h"

#include <support/ScriptedServer.h>

#include <VellNetwork/NetworkSettings.h>
#include <VellNetwork/VellBaseApi.h>
#include <VellSoftBase/VellSoftCache.h>

using State = VellSession::State;

// Signing in, going offline and returning, several sessions in a process.
class TestClientSession : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void openingTellsWhoTheUserIs();
    void aBadAddressIsRefused();
    void whatIsNoServiceIsRefused_data();
    void whatIsNoServiceIsRefused();
    void anUnreachableServiceIsRefused();
    void anUnknownTokenIsRefused();
    void openingAgainReplacesTheFirst();
    void aLostServiceIsNoticedAndFoundAgain();
    void twoSessionsAreIndependent();
    void theProcessKeepsItsSettings();
    void namesOfUsersAreLearned();
};

void TestClientSession::openingTellsWhoTheUserIs()
{
    ClientWorld world;
    QCOMPARE(world.session.state(), State::Online);
    QCOMPARE(world.session.user().name, QStringLiteral("local"));
    await(world.documents.createFolder({}, QStringLiteral("a")));
    QSignalSpy changed(&world.session, &VellSession::userChanged);
    world.session.refreshUser();
    QVERIFY(changed.wait(WaitMs));
    QCOMPARE(world.session.user().projects.size(), 1);
    QCOMPARE(world.session.user().projects.at(0).id, QStringLiteral("p1"));
    QCOMPARE(world.session.user().projects.at(0).role, QStringLiteral("owner"));
    QCOMPARE(world.session.userName(world.session.user().id), QStringLiteral("local"));
}

void TestClientSession::aBadAddressIsRefused()
{
    VellSession session;
    QSignalSpy failed(&session, &VellSession::openFailed);
    VellConnection connection;
    connection.address = QStringLiteral("localhost:8080");
    session.open(connection);
    QVERIFY(failed.isEmpty());
    QVERIFY(failed.wait(WaitMs));
    QCOMPARE(failed.at(0).at(0).value<VellError>().kind, VellError::Kind::BadAddress);
    QCOMPARE(session.state(), State::Closed);
}

void TestClientSession::whatIsNoServiceIsRefused_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("a page") << 200 << QByteArray("<html>Welcome</html>");
    QTest::newRow("no such page") << 404 << QByteArray("<html>Not found</html>");
    QTest::newRow("another service") << 200 << QByteArray(R"({"status":"ok"})");
}

void TestClientSession::whatIsNoServiceIsRefused()
{
    QFETCH(int, status);
    QFETCH(QByteArray, body);
    ScriptedServer server;
    server.enqueue(ScriptedReply::json(body, status));
    VellSession session;
    QSignalSpy failed(&session, &VellSession::openFailed);
    VellConnection connection;
    connection.address = server.baseApi();
    connection.proxy = NetworkSettings::noProxy();
    session.open(connection);
    QVERIFY(failed.wait(WaitMs));
    QCOMPARE(failed.at(0).at(0).value<VellError>().kind, VellError::Kind::BadAddress);
    QCOMPARE(session.state(), State::Closed);
}

void TestClientSession::anUnreachableServiceIsRefused()
{
    ClientWorld world;
    const VellConnection connection = world.connection();
    world.service.stop();
    QSignalSpy failed(&world.session, &VellSession::openFailed);
    world.session.open(connection);
    QVERIFY(failed.wait(WaitMs));
    QCOMPARE(failed.at(0).at(0).value<VellError>().kind, VellError::Kind::Offline);
}

void TestClientSession::anUnknownTokenIsRefused()
{
    ClientWorld world;
    QString error;
    QVERIFY(!world.service.addUser(QStringLiteral("ann"), &error).isEmpty());
    QSignalSpy failed(&world.session, &VellSession::openFailed);
    world.session.open(world.connection(QStringLiteral("unknown")));
    QVERIFY(failed.wait(WaitMs));
    QCOMPARE(failed.at(0).at(0).value<VellError>().kind, VellError::Kind::NotSignedIn);
}

void TestClientSession::openingAgainReplacesTheFirst()
{
    ClientWorld world;
    QSignalSpy opened(&world.session, &VellSession::opened);
    QSignalSpy failed(&world.session, &VellSession::openFailed);
    world.session.open(world.connection());
    world.session.open(world.connection());
    QVERIFY(opened.wait(WaitMs));
    QTest::qWait(50);
    QCOMPARE(opened.size(), 1);
    QVERIFY(failed.isEmpty());
    QCOMPARE(world.session.projectId(), QString());
}

void TestClientSession::aLostServiceIsNoticedAndFoundAgain()
{
    bool isLost = false;
    ScriptedServer server;
    server.setHandler([&isLost](const ScriptedRequest &request) {
        if (isLost)
            return ScriptedReply::endingAs(ScriptedReply::Ending::Dropped);
        return ScriptedReply::json(request.target.contains("/me") ? R"({"_id":"u1"})" : "[]");
    });
    VellSession session;
    VellDocuments documents(&session);
    QList<State> states;
    connect(&session, &VellSession::stateChanged, this,
            [&states](State state) { states.append(state); });
    VellConnection connection;
    connection.address = server.baseApi();
    connection.proxy = NetworkSettings::noProxy();
    session.open(connection);
    QTRY_COMPARE_WITH_TIMEOUT(session.state(), State::Online, WaitMs);
    isLost = true;
    const VellError error = waitForEnd(documents.list(VellDocumentConditon()));
    QCOMPARE(error.kind, VellError::Kind::Offline);
    QCOMPARE(states, QList<State>({State::Connecting, State::Online, State::Offline}));
    // The session goes on asking.
    const int count = server.requests().size();
    QTRY_VERIFY_WITH_TIMEOUT(server.requests().size() >= count + 2, WaitMs);
    QCOMPARE(session.state(), State::Offline);
    isLost = false;
    QTRY_COMPARE_WITH_TIMEOUT(session.state(), State::Online, WaitMs);
}

void TestClientSession::twoSessionsAreIndependent()
{
    ClientWorld one;
    ClientWorld other;
    other.session.openProject(QStringLiteral("p2"));
    await(one.documents.createFolder({}, QStringLiteral("in one")));
    await(other.documents.createFolder({}, QStringLiteral("in other")));
    QCOMPARE(one.names(), QStringList{QStringLiteral("in one")});
    QCOMPARE(other.names(), QStringList{QStringLiteral("in other")});
}

void TestClientSession::theProcessKeepsItsSettings()
{
    VellBaseApi::GetInstance().setBaseApi(QStringLiteral("http://process/"));
    GetSoftCache()->setCurrentProjectId(QStringLiteral("process"));
    ClientWorld world;
    world.names();
    QCOMPARE(VellBaseApi::GetInstance().getBaseApi(), QStringLiteral("http://process/"));
    QCOMPARE(GetSoftCache()->currentProjectId(), QStringLiteral("process"));
}

void TestClientSession::namesOfUsersAreLearned()
{
    ClientWorld world;
    const QString ann = world.service.addUser(QStringLiteral("Ann"));
    world.service.addUser(QStringLiteral("Bob"));
    world.service.addProject(QStringLiteral("p2"), QStringLiteral("Second"));
    for (const char *const name : {"Ann", "Bob"})
        QVERIFY(world.service.setRole(QStringLiteral("p2"), QString::fromLatin1(name),
                                      QStringLiteral("editor")));
    QSignalSpy opened(&world.session, &VellSession::opened);
    QSignalSpy learned(&world.session, &VellSession::userNamesChanged);
    world.session.open(world.connection(ann));
    QVERIFY(opened.wait(WaitMs));
    world.session.openProject(QStringLiteral("p2"));
    QCOMPARE(world.session.userName(QStringLiteral("nobody")), QStringLiteral("nobody"));
    QVERIFY(learned.wait(WaitMs));
    const QStringList bob = world.session.userIds(QStringLiteral("bob"));
    QCOMPARE(bob.size(), 1);
    QCOMPARE(world.session.userName(bob.at(0)), QStringLiteral("Bob"));
    QCOMPARE(world.session.userIds(QStringLiteral("ANN")), QStringList{world.session.user().id});
}

QTEST_GUILESS_MAIN(TestClientSession)
#include "tst_client_session.moc"
