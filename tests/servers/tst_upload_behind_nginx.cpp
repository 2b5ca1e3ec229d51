#include "Nginx.h"

#include <uploads/ClientRun.h>
#include <uploads/LocalFile.h>

#include <support/HttpClient.h>
#include <support/ServiceProcess.h>

#include <QTemporaryDir>
#include <QTest>

namespace {

constexpr qint64 FileBytes = qint64(60) * 1048576;

} // namespace

//! Uploads through nginx, which takes requests in first or passes them on as they come.
class TestUploadBehindNginx : public QObject
{
    Q_OBJECT

public:
    enum class Victim { Service, Client, Nginx };
    Q_ENUM(Victim)

private Q_SLOTS:
    void anUploadIsContinued_data();
    void anUploadIsContinued();
};

void TestUploadBehindNginx::anUploadIsContinued_data()
{
    QTest::addColumn<QByteArray>("buffering");
    QTest::addColumn<Victim>("victim");
    for (const char *buffering : {"on", "off"}) {
        QTest::addRow("buffering %s, the service is killed", buffering)
            << QByteArray(buffering) << Victim::Service;
        QTest::addRow("buffering %s, the client is killed", buffering)
            << QByteArray(buffering) << Victim::Client;
        QTest::addRow("buffering %s, nginx is killed", buffering)
            << QByteArray(buffering) << Victim::Nginx;
    }
}

void TestUploadBehindNginx::anUploadIsContinued()
{
    QFETCH(QByteArray, buffering);
    QFETCH(Victim, victim);
    QTemporaryDir folder;
    ServiceProcess service(folder.filePath("data"));
    QVERIFY(service.start());
    Nginx nginx;
    Nginx::Settings settings;
    settings.servicePort = service.port();
    settings.http = "client_max_body_size 8m;";
    settings.location = "proxy_http_version 1.1;\nproxy_request_buffering " + buffering + ';';
    QVERIFY(nginx.start(settings));
    const LocalFile file(folder.filePath("a.bin"), FileBytes, 7);
    HttpClient http(service.baseApi());
    const QString record =
        QString("base-service/largefiles/md5/") + QString::fromLatin1(file.md5());
    const auto savedChunks = [&] { return http.get(record).object().value("savedChunk").toInt(); };

    ClientRun first(nginx.baseApi(), file.path());
    QTRY_VERIFY_WITH_TIMEOUT(savedChunks() >= 2, 20000);
    if (victim == Victim::Service)
        service.kill();
    else if (victim == Victim::Client)
        first.kill();
    else
        nginx.kill();
    QVERIFY(first.wait());
    QVERIFY2(!first.isDone(), "it was done before the kill");
    if (victim == Victim::Service)
        QVERIFY(service.start());
    else if (victim == Victim::Nginx)
        QVERIFY(nginx.start(settings));

    const int saved = savedChunks();
    QVERIFY(saved >= 2);
    ClientRun second(nginx.baseApi(), file.path());
    QVERIFY(second.wait());
    QVERIFY2(second.isDone(), qPrintable(second.log()));
    const HttpAnswer content = http.get(QString("base-service/files/") + second.fileId());
    QVERIFY(content.body == file.content());
}

QTEST_GUILESS_MAIN(TestUploadBehindNginx)

#include "tst_upload_behind_nginx.moc"
