#include <VellNetwork/NetworkManager.h>
#include <VellNetwork/NetworkSettings.h>

#include <QNetworkReply>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include <memory>

namespace {

constexpr qint64 MiB = 1048576;
constexpr qint64 ContentBytes = 64 * MiB;
constexpr qint64 BlockBytes = 65536;
// What the sockets of both ends and the transport hold of a response that nobody reads.
constexpr qint64 OnTheWayBytes = 16 * MiB;

QByteArray block(qint64 number)
{
    return QByteArray::number(number).rightJustified(int(BlockBytes), '.');
}

//! Answers one request with a long response, as fast as it is taken.
class Fountain : public QObject
{
public:
    Fountain()
    {
        m_server.listen(QHostAddress::LocalHost);
        connect(&m_server, &QTcpServer::newConnection, this, [this] {
            m_socket = m_server.nextPendingConnection();
            connect(m_socket, &QTcpSocket::readyRead, this, [this] {
                m_socket->readAll();
                m_socket->write("HTTP/1.1 200 OK\r\nContent-Length: "
                                + QByteArray::number(ContentBytes) + "\r\n\r\n");
                write();
            });
            connect(m_socket, &QTcpSocket::bytesWritten, this, &Fountain::write);
        });
    }

    QString url() const { return QString("http://127.0.0.1:%1/").arg(m_server.serverPort()); }
    qint64 takenBytes() const { return m_blocks * BlockBytes - m_socket->bytesToWrite(); }

private:
    void write()
    {
        while (m_socket->bytesToWrite() < BlockBytes && m_blocks * BlockBytes < ContentBytes)
            m_socket->write(block(m_blocks++));
    }

    QTcpServer m_server;
    QTcpSocket *m_socket = nullptr;
    qint64 m_blocks = 0;
};

} // namespace

//! Long responses: what waits in memory when the client does not keep up.
class TestDownloads : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void nothingGrowsBehindASlowReader_data();
    void nothingGrowsBehindASlowReader();
    void whatIsReadAtTheEndIsWhole();
    void aReaderThatPausesIsNoStall();
    void aBufferThatGrowsTakesTheRest();

private:
    //! Waits until no more comes.
    void settle();

    std::unique_ptr<Fountain> m_fountain;
    std::unique_ptr<QNetworkReply> m_reply;
};

void TestDownloads::init()
{
    NetworkSettings::instance().setStallTimeout(std::chrono::seconds(10));
    m_reply.reset();
    m_fountain = std::make_unique<Fountain>();
    m_reply.reset(NetworkManager::instance()->get(m_fountain->url()));
}

void TestDownloads::settle()
{
    QSignalSpy ready(m_reply.get(), &QNetworkReply::readyRead);
    while (ready.wait(300)) {}
}

void TestDownloads::nothingGrowsBehindASlowReader_data()
{
    QTest::addColumn<qint64>("bufferSize");
    QTest::addColumn<qint64>("most");
    QTest::newRow("with a limit of its own") << qint64(100000) << qint64(100000);
    QTest::newRow("that has begun to read") << qint64(0) << 8 * MiB;
}

void TestDownloads::nothingGrowsBehindASlowReader()
{
    QFETCH(qint64, bufferSize);
    QFETCH(qint64, most);
    m_reply->setReadBufferSize(bufferSize);
    QVERIFY(QSignalSpy(m_reply.get(), &QNetworkReply::readyRead).wait());
    QByteArray content = m_reply->read(1000);
    settle();
    QVERIFY2(m_reply->bytesAvailable() <= most,
             qPrintable(QString::number(m_reply->bytesAvailable())));
    QVERIFY2(m_fountain->takenBytes() < most + OnTheWayBytes,
             qPrintable(QString::number(m_fountain->takenBytes())));
    QVERIFY(!m_reply->isFinished());

    connect(m_reply.get(), &QNetworkReply::readyRead, this, [&] { content += m_reply->readAll(); });
    content += m_reply->readAll();
    QTRY_VERIFY_WITH_TIMEOUT(m_reply->isFinished(), 30000);
    content += m_reply->readAll();
    QCOMPARE(m_reply->error(), QNetworkReply::NoError);
    QCOMPARE(qint64(content.size()), ContentBytes);
    for (qint64 i = 0; i < ContentBytes / BlockBytes; ++i)
        QVERIFY(content.mid(int(i * BlockBytes), int(BlockBytes)) == block(i));
}

void TestDownloads::whatIsReadAtTheEndIsWhole()
{
    QSignalSpy progress(m_reply.get(), &QNetworkReply::downloadProgress);
    QTRY_VERIFY_WITH_TIMEOUT(m_reply->isFinished(), 30000);
    QCOMPARE(m_reply->bytesAvailable(), ContentBytes);
    QCOMPARE(progress.last().first().toLongLong(), ContentBytes);
    QCOMPARE(progress.last().last().toLongLong(), ContentBytes);
    const QByteArray content = m_reply->readAll();
    QCOMPARE(qint64(content.size()), ContentBytes);
    QCOMPARE(content.right(int(BlockBytes)), block(ContentBytes / BlockBytes - 1));
}

void TestDownloads::aReaderThatPausesIsNoStall()
{
    m_reply.reset();
    m_fountain = std::make_unique<Fountain>();
    NetworkSettings::instance().setStallTimeout(std::chrono::milliseconds(400));
    m_reply.reset(NetworkManager::instance()->get(m_fountain->url()));
    m_reply->setReadBufferSize(BlockBytes);
    settle();
    QTest::qWait(1000);
    QVERIFY(!m_reply->isFinished());
    QCOMPARE(m_reply->error(), QNetworkReply::NoError);
}

void TestDownloads::aBufferThatGrowsTakesTheRest()
{
    m_reply->setReadBufferSize(BlockBytes);
    QTRY_COMPARE(m_reply->bytesAvailable(), BlockBytes);
    m_reply->setReadBufferSize(0);
    QTRY_VERIFY_WITH_TIMEOUT(m_reply->isFinished(), 30000);
    QCOMPARE(m_reply->error(), QNetworkReply::NoError);
    QCOMPARE(m_reply->bytesAvailable(), ContentBytes);
}

QTEST_GUILESS_MAIN(TestDownloads)

#include "tst_downloads.moc"
