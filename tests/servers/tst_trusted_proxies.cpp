#include "Haproxy.h"
#include "Nginx.h"

#include <service/ServiceWorld.h>

#include <QFile>
#include <QJsonDocument>
#include <QProcess>
#include <QTest>

//! nginx and HAProxy, with the settings of the package, in front of a service that trusts them.
class TestTrustedProxies : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void nginxTellsWhoAsks();
    void whatClientsSayIsNotBelieved();
    void nginxTellsWhatItRemoves();
    void haproxyTellsWhoAsks();

private:
    //! Shares a folder as a client at 127.0.0.2 that claims to be another. \return the address of the share
    QString share(const QString &base);
    //! Who asked last for a share, by the access log; HAProxy also asks whether the service is there.
    QString lastClient();

    QByteArray m_nginxHeaders;
    std::unique_ptr<ServiceWorld> m_world;
    QTemporaryDir m_folder;
};

void TestTrustedProxies::initTestCase()
{
    QFile example(QStringLiteral(VELL_NGINX_EXAMPLE));
    QVERIFY(example.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = example.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.contains("proxy_set_header") && line.contains("orwarded"))
            m_nginxHeaders += line + '\n';
    }
    QCOMPARE(m_nginxHeaders.count('\n'), 5);
}

void TestTrustedProxies::init()
{
    ServiceOptions options;
    options.accessLog = m_folder.filePath("log");
    QVERIFY(options.addTrustedProxy("127.0.0.1"));
    m_world = std::make_unique<ServiceWorld>(options);
    QVERIFY(m_world->isStarted);
}

QString TestTrustedProxies::share(const QString &base)
{
    const QString id = m_world->makeFolder("shared");
    QProcess curl;
    curl.start("curl",
               {"-sS", "--noproxy", "*", "--interface", "127.0.0.2", "-H",
                "X-Forwarded-For: 203.0.113.9", "-H",
                "Forwarded: for=203.0.113.9;host=evil.example.com", "-H",
                "X-Forwarded-Host: evil.example.com", "-H", "X-Forwarded-Prefix: /evil", "--json",
                QString("{\"hostId\":\"p1\",\"documentIds\":[\"%1\"]}").arg(id),
                base + "document-service/documents/shares"});
    if (!curl.waitForFinished())
        return {};
    const QByteArray answer = curl.readAllStandardOutput();
    if (!answer.contains("\"url\""))
        qWarning("%s %s", answer.constData(), curl.readAllStandardError().constData());
    return QJsonDocument::fromJson(answer).object().value("url").toString();
}

QString TestTrustedProxies::lastClient()
{
    m_world->service->stop();
    QFile log(m_folder.filePath("log"));
    if (!log.open(QIODevice::ReadOnly))
        return {};
    const QStringList requests =
        QString::fromUtf8(log.readAll()).split('\n').filter("/documents/shares ");
    return requests.isEmpty() ? QString() : requests.last().section(' ', 1, 1);
}

void TestTrustedProxies::nginxTellsWhoAsks()
{
    Nginx nginx;
    Nginx::Settings settings;
    settings.servicePort = m_world->service->port();
    settings.location = m_nginxHeaders;
    QVERIFY(nginx.start(settings));
    const QString url = share(nginx.baseApi());
    QVERIFY2(url.startsWith(nginx.baseApi() + "share/"), qPrintable(url));
    QCOMPARE(lastClient(), QString("127.0.0.2"));
}

//! nginx adds its peer to what the client says: only the part that comes from nginx counts.
void TestTrustedProxies::whatClientsSayIsNotBelieved()
{
    Nginx nginx;
    Nginx::Settings settings;
    settings.servicePort = m_world->service->port();
    settings.location =
        QByteArray(m_nginxHeaders).replace("$remote_addr", "$proxy_add_x_forwarded_for");
    QVERIFY(settings.location.contains("$proxy_add_x_forwarded_for"));
    QVERIFY(nginx.start(settings));
    const QString url = share(nginx.baseApi());
    QVERIFY2(url.startsWith(nginx.baseApi() + "share/"), qPrintable(url));
    QCOMPARE(lastClient(), QString("127.0.0.2"));
}

void TestTrustedProxies::nginxTellsWhatItRemoves()
{
    Nginx nginx;
    Nginx::Settings settings;
    settings.servicePort = m_world->service->port();
    settings.location = QByteArray(m_nginxHeaders).replace("Prefix \"\"", "Prefix /docs")
        + "rewrite ^/docs/(.*)$ /$1 break;";
    QVERIFY(nginx.start(settings));
    const QString url = share(nginx.baseApi() + "docs/");
    QVERIFY2(url.startsWith(nginx.baseApi() + "docs/share/"), qPrintable(url));
}

void TestTrustedProxies::haproxyTellsWhoAsks()
{
    const quint16 port = m_world->service->port();
    Haproxy haproxy;
    QVERIFY(haproxy.start({port, port, port}));
    QString url;
    QTRY_VERIFY_WITH_TIMEOUT(!(url = share(haproxy.baseApi())).isEmpty(), 10000);
    QVERIFY2(url.startsWith(haproxy.baseApi() + "share/"), qPrintable(url));
    HttpClient outside(haproxy.baseApi());
    QCOMPARE(outside.get("metrics").status, 403);
    QCOMPARE(outside.get("health").status, 403);
    share(haproxy.baseApi());
    QCOMPARE(lastClient(), QString("127.0.0.2"));
}

QTEST_GUILESS_MAIN(TestTrustedProxies)

#include "tst_trusted_proxies.moc"
