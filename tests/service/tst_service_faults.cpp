#include <service/ServiceWorld.h>

#include <QElapsedTimer>
#include <QTcpSocket>
#include <QTest>

//! Misbehaving as told.
class TestServiceFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aLostReplyHasDoneTheWork();
    void aDroppedRequestHasDoneNothing();
    void aStatusIsAnsweredAsOftenAsTold();
    void theNthRequestIsStruck();
    void onlyWhatFitsIsStruck();
    void aStallEndsWithTheService();
    void aSlowReplyIsLate();
    void aCutReplyIsIncomplete();
    void noRoomDoesNothing();
    void clearedFaultsAreGone();
    void specificationsAreRead_data();
    void specificationsAreRead();
    void specificationsWithoutSenseAreRefused_data();
    void specificationsWithoutSenseAreRefused();

private:
    static void add(ServiceWorld &world, const char *specification)
    {
        FaultRule rule;
        QString error;
        if (!FaultRule::parse(QString::fromLatin1(specification), &rule, &error))
            qFatal("%s", qUtf8Printable(error));
        world.service->addFault(rule);
    }
    static QByteArray newFolderRequest()
    {
        const QByteArray body = R"({"name":"made","type":"dir"})";
        return "POST /document-service/projects/p1/documents HTTP/1.1\r\nHost: "
               "localhost\r\nContent-Length: "
            + QByteArray::number(body.size()) + "\r\n\r\n" + body;
    }
};

// These three speak on plain sockets: Qt's client would send the request again by itself.
void TestServiceFaults::aLostReplyHasDoneTheWork()
{
    ServiceWorld world;
    add(world, "lose-reply,verb=POST");
    QCOMPARE(world.exchange(newFolderRequest()), QByteArray());
    QCOMPARE(world.names({}), QStringList{"made"});
}

void TestServiceFaults::aDroppedRequestHasDoneNothing()
{
    ServiceWorld world;
    add(world, "drop-after=10,verb=POST");
    QCOMPARE(world.exchange(newFolderRequest()), QByteArray());
    add(world, "drop-after=0,verb=POST");
    QCOMPARE(world.exchange(newFolderRequest()), QByteArray());
    QCOMPARE(world.names({}), QStringList());
    QVERIFY(world.exchange(newFolderRequest()).startsWith("HTTP/1.1 200"));
}

void TestServiceFaults::aStatusIsAnsweredAsOftenAsTold()
{
    ServiceWorld world;
    add(world, "status=503,times=2");
    const QString me = "base-service/me";
    QCOMPARE(world.client.get(me).status, 503);
    const HttpAnswer second = world.client.get(me);
    QCOMPARE(second.status, 503);
    QVERIFY(!second.errorText().isEmpty());
    QCOMPARE(world.client.get(me).status, 200);
}

void TestServiceFaults::theNthRequestIsStruck()
{
    ServiceWorld world;
    add(world, "status=500,nth=2");
    const QString me = "base-service/me";
    QCOMPARE(world.client.get(me).status, 200);
    QCOMPARE(world.client.get(me).status, 500);
    QCOMPARE(world.client.get(me).status, 200);
}

void TestServiceFaults::onlyWhatFitsIsStruck()
{
    ServiceWorld world;
    add(world, "status=500,verb=post,path=document-service/projects,times=0");
    QCOMPARE(world.client.get("base-service/me").status, 200);
    QVERIFY(!world.upload("x").isEmpty());
    QCOMPARE(world.list({}).size(), 0);
    for (int i = 0; i < 3; ++i)
        QVERIFY(world.makeFolder("x").isEmpty());
}

void TestServiceFaults::aStallEndsWithTheService()
{
    ServiceWorld world;
    add(world, "stall=300");
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(world.exchange("GET /base-service/me HTTP/1.1\r\nHost: localhost\r\n\r\n"),
             QByteArray());
    QVERIFY(clock.elapsed() >= 290);

    add(world, "stall");
    QTcpSocket socket;
    socket.connectToHost("127.0.0.1", world.service->port());
    QVERIFY(socket.waitForConnected());
    socket.write("GET /base-service/me HTTP/1.1\r\nHost: localhost\r\n\r\n");
    QVERIFY(!socket.waitForReadyRead(200));
    world.service->stop();
    QVERIFY(socket.state() == QTcpSocket::UnconnectedState || socket.waitForDisconnected());
    QCOMPARE(socket.readAll(), QByteArray());
}

void TestServiceFaults::aSlowReplyIsLate()
{
    ServiceWorld world;
    add(world, "slow=200");
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(world.client.get("base-service/me").status, 200);
    QVERIFY(clock.elapsed() >= 190);
}

void TestServiceFaults::aCutReplyIsIncomplete()
{
    ServiceWorld world;
    const QString id = world.upload(QByteArray(100000, 'x'));
    add(world, "cut-reply=70000");
    const HttpAnswer answer = world.client.get(QString("base-service/files/") + id);
    QVERIFY(!answer.isWhole);
    QCOMPARE(answer.body.size(), 70000);
    QCOMPARE(answer.headers.value("content-length"), QByteArray("100000"));
}

void TestServiceFaults::noRoomDoesNothing()
{
    ServiceWorld world;
    add(world, "no-room,path=/base-service/files");
    const HttpAnswer answer = world.client.postForm("base-service/files", {{"file/a", "x"}});
    QCOMPARE(answer.status, 507);
    QVERIFY(!world.upload("x").isEmpty());
}

void TestServiceFaults::clearedFaultsAreGone()
{
    ServiceWorld world;
    add(world, "status=500,times=0");
    QCOMPARE(world.client.get("base-service/me").status, 500);
    world.service->clearFaults();
    QCOMPARE(world.client.get("base-service/me").status, 200);
}

void TestServiceFaults::specificationsAreRead_data()
{
    QTest::addColumn<QString>("specification");
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("nth");
    QTest::addColumn<int>("times");
    const auto row = [](const char *text, FaultRule::Kind kind, int value, int nth, int times) {
        QTest::newRow(text) << QString::fromLatin1(text) << static_cast<int>(kind) << value << nth
                            << times;
    };
    row("lose-reply", FaultRule::Kind::LoseReply, 0, 1, 1);
    row("drop-after=100,nth=2", FaultRule::Kind::DropAfter, 100, 2, 1);
    row("status=503,times=0", FaultRule::Kind::Status, 503, 1, 0);
    row("stall", FaultRule::Kind::Stall, 0, 1, 1);
    row("slow=250, times=7", FaultRule::Kind::Slow, 250, 1, 7);
    row("cut-reply=0", FaultRule::Kind::CutReply, 0, 1, 1);
    row("forget-chunk", FaultRule::Kind::ForgetChunk, 0, 1, 1);
    row("no-room", FaultRule::Kind::NoRoom, 0, 1, 1);
}

void TestServiceFaults::specificationsAreRead()
{
    QFETCH(QString, specification);
    QFETCH(int, kind);
    QFETCH(int, value);
    QFETCH(int, nth);
    QFETCH(int, times);
    FaultRule rule;
    QString error;
    QVERIFY2(FaultRule::parse(specification, &rule, &error), qUtf8Printable(error));
    QCOMPARE(static_cast<int>(rule.kind), kind);
    QCOMPARE(rule.value, qint64(value));
    QCOMPARE(rule.nth, nth);
    QCOMPARE(rule.times, times);
}

void TestServiceFaults::specificationsWithoutSenseAreRefused_data()
{
    QTest::addColumn<QString>("specification");
    for (const char *text :
         {"", "explode", "status", "status=abc", "status=200", "slow=-1", "lose-reply=5",
          "stall,nth=0", "stall,times=x", "stall,colour=red", "verb=GET"})
        QTest::newRow(*text == '\0' ? "empty" : text) << QString::fromLatin1(text);
}

void TestServiceFaults::specificationsWithoutSenseAreRefused()
{
    QFETCH(QString, specification);
    FaultRule rule;
    QString error;
    QVERIFY(!FaultRule::parse(specification, &rule, &error));
    QVERIFY(!error.isEmpty());
}

QTEST_GUILESS_MAIN(TestServiceFaults)
#include "tst_service_faults.moc"
