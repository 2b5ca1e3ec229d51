#include <service/RawClient.h>
#include <service/ServiceWorld.h>
#include <support/ServiceProcess.h>

#include <QByteArrayList>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QIODevice>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <sys/socket.h>

//! Random bytes in every place of a request: no crash, no 5xx, no growing memory, and honest clients are served.
//!
//! A short run of the same bytes each time. For a long one with others set VELL_HOSTILE_SECONDS, and VELL_HOSTILE_SEED to
//! repeat one.
class TestServiceHostile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void nothingBreaks();

private:
    QByteArray mutated(QByteArray bytes);
    QByteArray randomRequest();
    QByteArray randomJson(int depth = 0);
    QByteArray randomForm();
    QByteArray pick(const QList<QByteArray> &list)
    {
        return list.at(m_random.bounded(list.size()));
    }
    void attack(quint16 port);

    QRandomGenerator m_random;
};

namespace {

qint64 memoryOf(const ServiceProcess &process)
{
    QFile status(QString("/proc/%1/status").arg(process.processId()));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    const QRegularExpression line("RssAnon:\\s+(\\d+) kB");
    return line.match(QString::fromLatin1(status.readAll())).captured(1).toLongLong() * 1024;
}

constexpr int EndMs = 60000; // far more than even a busy machine needs

int setting(const char *name, int fallback)
{
    bool isSet = false;
    const int value = qEnvironmentVariableIntValue(name, &isSet);
    return isSet ? value : fallback;
}

} // namespace

//! Some bytes changed, left out, doubled or put in.
QByteArray TestServiceHostile::mutated(QByteArray bytes)
{
    const int changes = m_random.bounded(4);
    for (int i = 0; i < changes && !bytes.isEmpty(); ++i) {
        const int at = m_random.bounded(bytes.size());
        switch (m_random.bounded(5)) {
        case 0:
            bytes[at] = static_cast<char>(m_random.bounded(256));
            break;
        case 1:
            bytes.remove(at, 1 + m_random.bounded(20));
            break;
        case 2:
            bytes.insert(at, bytes.mid(at, m_random.bounded(50)));
            break;
        case 3:
            bytes.insert(at,
                         pick({"\r\n", "\n", "%", "+", "\"", "{", "[", QByteArray(1, '\0'),
                               "99999999999999999999", "-1", "\xff\xfe", "../", "*", ","}));
            break;
        default:
            bytes.truncate(at);
            break;
        }
    }
    return bytes;
}

QByteArray TestServiceHostile::randomJson(int depth)
{
    const QList<QByteArray> scalars{
        "1",    "-1",      "1e400",    "true", "null", "\"x\"",      "\"\\ud800\"", "1.5",
        "\"\"", "\"dir\"", "\"file\"", "{}",   "[]",   "2147483648", "\"^(a+)+$\""};
    const QList<QByteArray> keys{"name",   "type",        "parentId", "where", "$regex",
                                 "$in",    "$gte",        "order",    "_id",   "links",
                                 "kind",   "ids",         "remark",   "value", "file",
                                 "hostId", "documentIds", "$options"};
    if (depth > 3 || m_random.bounded(3) == 0)
        return pick(scalars);
    QByteArrayList items;
    const bool isObject = m_random.bounded(3) > 0;
    const int count = m_random.bounded(5);
    for (int i = 0; i < count; ++i) {
        const QByteArray value = randomJson(depth + 1);
        items.append(isObject ? '"' + pick(keys) + "\":" + value : value);
    }
    return isObject ? '{' + items.join(',') + '}' : '[' + items.join(',') + ']';
}

QByteArray TestServiceHostile::randomForm()
{
    QByteArray form;
    const int parts = m_random.bounded(9);
    for (int i = 0; i < parts; ++i) {
        const QByteArray name = pick({"file", "md5", "fileName", "totalChunk", "savedChunk",
                                      "fileSize", "chunkSize", "other"});
        form += "--B\r\nContent-Disposition: form-data; name=\"" + name
            + "\"; filename=\"f\"\r\n\r\n"
            + pick({"1", "0", "x", "781e5e245d69b566979b86e28d23f2c7", "10", "0123456789"})
            + "\r\n";
    }
    return form + "--B--\r\n";
}

QByteArray TestServiceHostile::randomRequest()
{
    const QByteArray verb = pick({"GET", "GET", "HEAD", "POST", "PUT", "DELETE", "PATCH", "X"});
    QByteArray target = pick({"/document-service/projects/p1/documents",
                              "/document-service/projects/p1/auth",
                              "/document-service/projects/p1/entities/x/documents",
                              "/document-service/documents",
                              "/document-service/documents/x",
                              "/document-service/documents/x/restore",
                              "/document-service/documents/x/histories",
                              "/document-service/documents/histories/x",
                              "/document-service/documents/x/records",
                              "/document-service/documents/records",
                              "/document-service/documents/shares",
                              "/documents/x",
                              "/share/x",
                              "/share/x/files/y",
                              "/base-service/me",
                              "/base-service/files",
                              "/base-service/files/x",
                              "/base-service/largefiles",
                              "/base-service/largefiles/x",
                              "/base-service/largefiles/md5/x",
                              "/base-service/md5/x/info",
                              "/",
                              "*",
                              ""});
    const int parameters = m_random.bounded(4);
    for (int i = 0; i < parameters; ++i) {
        target += i == 0 ? '?' : '&';
        target += pick({"where", "order", "limit", "skip", "select", "deep", "recordType",
                        "only_count", "category", "hostId", "key", "rId", "info", "words"});
        target += '=';
        target += m_random.bounded(2) == 0 ? randomJson().toPercentEncoding()
                                           : pick({"1", "-1", "x", "name -order", "recycle", "true",
                                                   "99999999999999", "%ff", "p1"});
    }
    const bool isForm = target.startsWith("/base-service") && m_random.bounded(2) == 0;
    const QByteArray body = mutated(isForm ? randomForm() : randomJson());
    QByteArray headers = isForm
        ? QByteArrayLiteral("Content-Type: multipart/form-data; boundary=B\r\n")
        : QByteArrayLiteral("Content-Type: application/json\r\n");
    if (m_random.bounded(4) == 0)
        headers += pick({"Range: bytes=0-1\r\n", "Expect: 100-continue\r\n", "If-None-Match: *\r\n",
                         "Transfer-Encoding: chunked\r\n", "Content-Length: 3\r\n",
                         "Connection: close\r\n", "Authorization: Bearer x\r\n",
                         "Origin: http://localhost\r\n"});
    const QByteArray request = RawClient::request(verb, target, headers, body);
    return m_random.bounded(2) == 0 ? request : mutated(request);
}

//! One connection with some requests, of which some are broken.
void TestServiceHostile::attack(quint16 port)
{
    RawClient client(port);
    const int requests = 1 + m_random.bounded(4);
    QByteArray sent;
    for (int i = 0; i < requests; ++i)
        sent += randomRequest();
    client.send(sent);
    if (m_random.bounded(8) == 0)
        return; // without a look at the answers
    // The service answers what has come and then ends the connection, too.
    ::shutdown(static_cast<int>(client.socket.socketDescriptor()), SHUT_WR);
    QByteArray answers;
    QVERIFY2(client.readToEnd(&answers, EndMs), ("no end after\n" + sent).constData());
    const QRegularExpression failure("HTTP/1\\.1 5\\d\\d");
    QVERIFY2(!failure.match(QString::fromLatin1(answers)).hasMatch(),
             (answers + "\nafter\n" + sent).constData());
}

//! The service's responses are compared with its contract, the requests here are not.
void TestServiceHostile::initTestCase()
{
    const QString folder = qEnvironmentVariable("VELL_RECORD_EXCHANGES");
    if (folder.isEmpty())
        return;
    const QString own = folder + "/hostile";
    QVERIFY(QDir().mkpath(own));
    qputenv("VELL_RECORD_EXCHANGES", own.toUtf8());
}

void TestServiceHostile::nothingBreaks()
{
    const int seed = setting("VELL_HOSTILE_SEED", 1);
    const int seconds = setting("VELL_HOSTILE_SECONDS", 5);
    m_random.seed(static_cast<quint32>(seed));
    const QTemporaryDir folder;
    ServiceProcess process(folder.path());
    QVERIFY(process.start());
    const quint16 port = static_cast<quint16>(QUrl(process.baseApi()).port());
    QElapsedTimer clock;
    clock.start();
    qint64 early = 0;
    qint64 connections = 0;
    while (!clock.hasExpired(seconds * 1000) && !QTest::currentTestFailed()) {
        attack(port);
        if (++connections == 200)
            early = memoryOf(process);
        if (connections % 50 != 0)
            continue;
        HttpClient honest(process.baseApi());
        QCOMPARE(honest.get("base-service/me").status, 200);
    }
    const qint64 late = memoryOf(process);
    qInfo(
        "seed %d: %lld connections in %d s, memory %lld KiB after 200 of them, %lld KiB at the end",
        seed, connections, seconds, early / 1024, late / 1024);
#ifndef __SANITIZE_ADDRESS__ // which keeps what is freed
    QVERIFY(early == 0 || late < early + Q_INT64_C(48) * 1024 * 1024);
#endif
    QCOMPARE(process.terminate(), 0);
}

QTEST_GUILESS_MAIN(TestServiceHostile)
#include "tst_service_hostile.moc"
