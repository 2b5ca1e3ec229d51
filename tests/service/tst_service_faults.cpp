#include <service/ServiceFixture.h>

#include <QTcpSocket>
#include <QtTest>

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
    static void add(ServiceFixture &fixture, const char *specification)
    {
        FaultRule rule;
        QString error;
        if (!FaultRule::parse(QString::fromLatin1(specification), &rule, &error))
            qFatal("%s", qUtf8Printable(error));
        fixture.service->addFault(rule);
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
    ServiceFixture fixture;
    add(fixture, "lose-reply,verb=POST");
    QCOMPARE(fixture.exchange(newFolderRequest()), QByteArray());
    QCOMPARE(fixture.names({}), QStringList{QStringLiteral("made")});
}

void TestServiceFaults::aDroppedRequestHasDoneNothing()
{
    ServiceFixture fixture;
    add(fixture, "drop-after=10,verb=POST");
    QCOMPARE(fixture.exchange(newFolderRequest()), QByteArray());
    add(fixture, "drop-after=0,verb=POST");
    QCOMPARE(fixture.exchange(newFolderRequest()), QByteArray());
    QCOMPARE(fixture.names({}), QStringList());
    QVERIFY(fixture.exchange(newFolderRequest()).startsWith("HTTP/1.1 200"));
}

void TestServiceFaults::aStatusIsAnsweredAsOftenAsTold()
{
    ServiceFixture fixture;
    add(fixture, "status=503,times=2");
    const QString me = QStringLiteral("base-service/me");
    QCOMPARE(fixture.client.get(me).status, 503);
    const HttpAnswer second = fixture.client.get(me);
    QCOMPARE(second.status, 503);
    QVERIFY(!second.errorText().isEmpty());
    QCOMPARE(fixture.client.get(me).status, 200);
}

void TestServiceFaults::theNthRequestIsStruck()
{
    ServiceFixture fixture;
    add(fixture, "status=500,nth=2");
    const QString me = QStringLiteral("base-service/me");
    QCOMPARE(fixture.client.get(me).status, 200);
    QCOMPARE(fixture.client.get(me).status, 500);
    QCOMPARE(fixture.client.get(me).status, 200);
}

void TestServiceFaults::onlyWhatFitsIsStruck()
{
    ServiceFixture fixture;
    add(fixture, "status=500,verb=post,path=document-service/projects,times=0");
    QCOMPARE(fixture.client.get(QStringLiteral("base-service/me")).status, 200);
    QVERIFY(!fixture.upload("x").isEmpty());
    QCOMPARE(fixture.list({}).size(), 0);
    for (int i = 0; i < 3; ++i)
        QVERIFY(fixture.makeFolder(QStringLiteral("x")).isEmpty());
}

void TestServiceFaults::aStallEndsWithTheService()
{
    ServiceFixture fixture;
    add(fixture, "stall=300");
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(fixture.exchange("GET /base-service/me HTTP/1.1\r\nHost: localhost\r\n\r\n"),
             QByteArray());
    QVERIFY(clock.elapsed() >= 290);

    add(fixture, "stall");
    QTcpSocket socket;
    socket.connectToHost(QStringLiteral("127.0.0.1"), fixture.service->port());
    QVERIFY(socket.waitForConnected());
    socket.write("GET /base-service/me HTTP/1.1\r\nHost: localhost\r\n\r\n");
    QVERIFY(!socket.waitForReadyRead(200));
    fixture.service->stop();
    QVERIFY(socket.state() == QTcpSocket::UnconnectedState || socket.waitForDisconnected());
    QCOMPARE(socket.readAll(), QByteArray());
}

void TestServiceFaults::aSlowReplyIsLate()
{
    ServiceFixture fixture;
    add(fixture, "slow=200");
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(fixture.client.get(QStringLiteral("base-service/me")).status, 200);
    QVERIFY(clock.elapsed() >= 190);
}

void TestServiceFaults::aCutReplyIsIncomplete()
{
    ServiceFixture fixture;
    const QString id = fixture.upload(QByteArray(100000, 'x'));
    add(fixture, "cut-reply=70000");
    const HttpAnswer answer = fixture.client.get(QStringLiteral("base-service/files/") + id);
    QVERIFY(!answer.isWhole);
    QCOMPARE(answer.body.size(), 70000);
    QCOMPARE(answer.headers.value("content-length"), QByteArray("100000"));
}

void TestServiceFaults::noRoomDoesNothing()
{
    ServiceFixture fixture;
    add(fixture, "no-room,path=/base-service/files");
    const HttpAnswer answer = fixture.client.postForm(QStringLiteral("base-service/files"),
                                                      {{QStringLiteral("file/a"), "x"}});
    QCOMPARE(answer.status, 507);
    QVERIFY(!fixture.upload("x").isEmpty());
}

void TestServiceFaults::clearedFaultsAreGone()
{
    ServiceFixture fixture;
    add(fixture, "status=500,times=0");
    QCOMPARE(fixture.client.get(QStringLiteral("base-service/me")).status, 500);
    fixture.service->clearFaults();
    QCOMPARE(fixture.client.get(QStringLiteral("base-service/me")).status, 200);
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
