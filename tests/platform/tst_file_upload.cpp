#include "support/ScriptedServer.h"

#include <VellNetwork/AsyncNetManager.h>
#include <VellNetwork/CFileUploadProxy.h>
#include <VellNetwork/NetworkManager.h>
#include <VellNetwork/NetworkSettings.h>

#include <QElapsedTimer>
#include <QFile>
#include <QHttpMultiPart>
#include <QIODevice>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <memory>

using std::chrono::milliseconds;

namespace {

constexpr qint64 MiB = 1048576;

// The most memory that the process has needed so far; 0 where the system does not tell.
qint64 peakBytes()
{
    QFile status("/proc/self/status");
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> lines = status.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toLongLong() * 1024;
    }
    return 0;
}

//! Takes in one upload without keeping it, and answers once a number of bytes has come.
class Sink : public QObject
{
public:
    Sink()
    {
        m_server.listen(QHostAddress::LocalHost);
        connect(&m_server, &QTcpServer::newConnection, this, [this] {
            m_socket = m_server.nextPendingConnection();
            connect(m_socket, &QTcpSocket::readyRead, this, &Sink::read);
        });
    }

    QString url() const { return QString("http://127.0.0.1:%1/").arg(m_server.serverPort()); }

    //! Called with the bytes that have come so far, whenever more have.
    std::function<void(qint64)> onBytes;
    qint64 contentLength = 0;

private:
    void read()
    {
        const QByteArray block = m_socket->readAll();
        m_bytes += block.size();
        if (contentLength == 0) {
            const int start = block.indexOf("Content-Length: ") + 16;
            contentLength = block.mid(start, block.indexOf('\r', start) - start).toLongLong();
            m_headBytes = block.indexOf("\r\n\r\n") + 4;
        }
        if (onBytes)
            onBytes(m_bytes);
        if (m_bytes == m_headBytes + contentLength)
            m_socket->write("HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n{}");
    }

    QTcpServer m_server;
    QTcpSocket *m_socket = nullptr;
    qint64 m_bytes = 0;
    qint64 m_headBytes = 0;
};

} // namespace

//! The upload of a whole file, streamed from the open file.
class TestFileUpload : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void bodyIsExact_data();
    void bodyIsExact();
    void whatIsNoFileHasNoBody_data();
    void whatIsNoFileHasNoBody();
    void bodyMayBeDeletedUnsent();
    void hugeFileIsNeverInMemory();
    void redirectRepeatsTheFile();
    void fileLostWhileSendingEndsTheUpload_data();
    void fileLostWhileSendingEndsTheUpload();
    void fileThatGrowsIsSentAsItWas();
    void fileMayBeReadMeanwhile();

private:
    QString write(const QString &name, const QByteArray &content);
    QString writeSparse(qint64 size);

    QTemporaryDir m_folder;
};

void TestFileUpload::init()
{
    NetworkSettings::instance().setStallTimeout(milliseconds(10000));
}

QString TestFileUpload::write(const QString &name, const QByteArray &content)
{
    QFile file(m_folder.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        return {};
    return file.fileName();
}

QString TestFileUpload::writeSparse(qint64 size)
{
    QFile file(m_folder.filePath("sparse.bin"));
    if (!file.open(QIODevice::WriteOnly) || !file.resize(size))
        return {};
    return file.fileName();
}

void TestFileUpload::bodyIsExact_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("nameInHeader");
    QTest::addColumn<QByteArray>("type");
    const auto row = [](const char *name, const QByteArray &content, const QByteArray &inHeader,
                        const char *type) {
        QTest::newRow(name) << QString::fromUtf8(name) << content << inHeader << QByteArray(type);
    };
    QByteArray large;
    for (int number = 0; large.size() < 300000; ++number)
        large += QByteArray::number(number) + '\0';

    row("note.txt", "hello", "note.txt", "text/plain");
    row("empty.txt", "", "empty.txt", "text/plain");
    row("图纸 R&D 100% #1 + 2.dwg", large, "图纸 R&D 100% #1 + 2.dwg", "image/vnd.dwg");
    row("e\u0301.png", "x", "e\u0301.png", "image/png");
    row("-dash", "text", "-dash", "text/plain");
    row(".hidden", large, ".hidden", "application/octet-stream");
    row("semi;colon.docx", "x", "semi;colon.docx",
        "application/vnd.openxmlformats-officedocument.wordprocessingml.document");
#ifndef Q_OS_WIN // which has no such names
    row("say \"hi\"\r\n.pdf", "%PDF-1.4", "say %22hi%22%0D%0A.pdf", "application/pdf");
    row("back\\slash.pdf", "x", "back\\slash.pdf", "application/pdf");
#endif
}

void TestFileUpload::bodyIsExact()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, nameInHeader);
    QFETCH(QByteArray, type);
    ScriptedServer server;
    server.enqueue(ScriptedReply::json("{}"));
    QFile *opened = nullptr;
    QHttpMultiPart *body = CFileUploadProxy::getFileHttpMultiPart(&opened, write(name, content));
    QVERIFY(body);
    const std::unique_ptr<QFile> file(opened);
    QVERIFY(file && file->isOpen());
    const QByteArray boundary = body->boundary();
    AsyncNetManager manager;
    QSignalSpy completed(&manager, &AsyncNetManager::netComplete);
    manager.post(server.baseApi(), body);
    QVERIFY(completed.wait());

    const ScriptedRequest &request = server.requests().first();
    QCOMPARE(request.body,
             "--" + boundary + "\r\nContent-Disposition: form-data; name=\"file\"; filename=\""
                 + nameInHeader + "\"\r\nContent-Type: " + type + "\r\n\r\n" + content + "\r\n--"
                 + boundary + "--\r\n");
    QCOMPARE(request.headers.value("content-length").toInt(), request.body.size());
    QVERIFY(!request.headers.contains("transfer-encoding"));
}

void TestFileUpload::whatIsNoFileHasNoBody_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("no path") << QString();
    QTest::newRow("missing") << m_folder.filePath("missing");
    QTest::newRow("a folder") << m_folder.path();
    QTest::newRow("below a file") << write("file", "x") + "/y";
#ifdef Q_OS_LINUX
    // A file that nobody may open for reading, root included.
    QTest::newRow("unreadable") << "/proc/sysrq-trigger";
#endif
}

void TestFileUpload::whatIsNoFileHasNoBody()
{
    QFETCH(QString, path);
    QFile mine;
    QFile *file = &mine;
    QCOMPARE(CFileUploadProxy::getFileHttpMultiPart(&file, path), nullptr);
    QCOMPARE(file, &mine);
}

void TestFileUpload::bodyMayBeDeletedUnsent()
{
    QFile *opened = nullptr;
    const std::unique_ptr<QHttpMultiPart> body(
        CFileUploadProxy::getFileHttpMultiPart(&opened, write("unsent", "content")));
    const std::unique_ptr<QFile> file(opened);
    QCOMPARE(file->readAll(), QByteArray("content"));
}

void TestFileUpload::hugeFileIsNeverInMemory()
{
    Sink sink;
    QFile *opened = nullptr;
    QHttpMultiPart *body = CFileUploadProxy::getFileHttpMultiPart(&opened, writeSparse(1024 * MiB));
    const std::unique_ptr<QFile> file(opened);
    // What has been read ahead of what has arrived is what memory holds.
    qint64 mostAhead = 0;
    sink.onBytes = [&](qint64 bytes) { mostAhead = qMax(mostAhead, file->pos() - bytes); };
    AsyncNetManager manager;
    QSignalSpy completed(&manager, &AsyncNetManager::netComplete);
    const qint64 before = peakBytes();
    manager.post(sink.url(), body);
    QVERIFY(completed.wait(180000));
    QVERIFY(sink.contentLength > 1024 * MiB);
    QVERIFY2(mostAhead < 32 * MiB, qPrintable(QString::number(mostAhead)));
    QVERIFY2(peakBytes() - before < 512 * MiB, qPrintable(QString::number(peakBytes() - before)));
}

void TestFileUpload::redirectRepeatsTheFile()
{
    ScriptedServer server;
    server.setHandler([](const ScriptedRequest &request) {
        ScriptedReply reply = ScriptedReply::json("{}", request.target == "/x" ? 307 : 200);
        reply.headers.insert("Location", "/y");
        return reply;
    });
    QFile *opened = nullptr;
    QHttpMultiPart *body =
        CFileUploadProxy::getFileHttpMultiPart(&opened, write("again", QByteArray(200000, 'a')));
    const std::unique_ptr<QFile> file(opened);
    AsyncNetManager manager;
    QSignalSpy completed(&manager, &AsyncNetManager::netComplete);
    manager.post(server.baseApi() + QLatin1String("x"), body);
    QVERIFY(completed.wait());
    QCOMPARE(server.requests().last().target, QByteArray("/y"));
    QCOMPARE(server.requests().last().body, server.requests().first().body);
    QVERIFY(server.requests().last().body.contains(QByteArray(200000, 'a')));
}

void TestFileUpload::fileLostWhileSendingEndsTheUpload_data()
{
    QTest::addColumn<QByteArray>("how");
    QTest::newRow("closed") << QByteArray("closed");
    QTest::newRow("deleted") << QByteArray("deleted");
    QTest::newRow("cut short") << QByteArray("cut short");
}

void TestFileUpload::fileLostWhileSendingEndsTheUpload()
{
    QFETCH(QByteArray, how);
    Sink sink;
    const QString path = writeSparse(100 * MiB);
    QFile *opened = nullptr;
    QHttpMultiPart *body = CFileUploadProxy::getFileHttpMultiPart(&opened, path);
    std::unique_ptr<QFile> file(opened);
    bool lost = false;
    sink.onBytes = [&](qint64 bytes) {
        if (lost || bytes < MiB)
            return;
        lost = true;
        if (how == "closed")
            file->close();
        else if (how == "deleted")
            file.reset();
        else
            QFile::resize(path, 0);
    };
    QSignalSpy failures(NetworkManager::instance(), &NetworkManager::requestFailed);
    AsyncNetManager manager;
    QSignalSpy completed(&manager, &AsyncNetManager::netComplete);
    QSignalSpy errors(&manager, QOverload<int>::of(&AsyncNetManager::error));
    QElapsedTimer timer;
    timer.start();
    manager.post(sink.url(), body);
    QVERIFY(errors.wait());
    QVERIFY(lost);
    QVERIFY2(timer.elapsed() < 5000, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(errors.first().first().toInt(), int(QNetworkReply::UnknownNetworkError));
    QCOMPARE(completed.size(), 0);
    QCOMPARE(failures.size(), 1);
    QCOMPARE(failures.first().first().value<NetworkFailure>().message,
             QString("The file could not be read completely"));
}

void TestFileUpload::fileThatGrowsIsSentAsItWas()
{
    Sink sink;
    const QString path = writeSparse(20 * MiB);
    QFile *opened = nullptr;
    QHttpMultiPart *body = CFileUploadProxy::getFileHttpMultiPart(&opened, path);
    const std::unique_ptr<QFile> file(opened);
    QVERIFY(QFile::resize(path, 40 * MiB));
    AsyncNetManager manager;
    QSignalSpy completed(&manager, &AsyncNetManager::netComplete);
    manager.post(sink.url(), body);
    QVERIFY(completed.wait(10000));
    QVERIFY(sink.contentLength < 21 * MiB);
}

void TestFileUpload::fileMayBeReadMeanwhile()
{
    ScriptedServer server;
    server.enqueue(ScriptedReply::json("{}"));
    QByteArray content;
    for (int number = 0; content.size() < 3 * MiB; ++number)
        content += QByteArray::number(number) + ' ';
    QFile *opened = nullptr;
    QHttpMultiPart *body =
        CFileUploadProxy::getFileHttpMultiPart(&opened, write("shared", content));
    const std::unique_ptr<QFile> file(opened);
    AsyncNetManager manager;
    QSignalSpy completed(&manager, &AsyncNetManager::netComplete);
    connect(&manager, &AsyncNetManager::uploadProgress, this, [&] { file->seek(7); });
    manager.post(server.baseApi(), body);
    QVERIFY(completed.wait(10000));
    QVERIFY(server.requests().first().body.contains(content));
}

QTEST_GUILESS_MAIN(TestFileUpload)

#include "tst_file_upload.moc"
