#include "Nginx.h"

#include <VellNetwork/NetworkEventLoop.h>
#include <VellNetwork/NetworkManager.h>
#include <VellNetwork/NetworkSettings.h>

#include <support/ScriptedServer.h>

#include <QJsonObject>
#include <QSignalSpy>
#include <QTest>

using Reason = NetworkFailure::Reason;

Q_DECLARE_METATYPE(NetworkFailure::Reason)

//! squid between the client and the service. The service has a name that only squid knows.
class TestProxy : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void requestsGoOverTheProxy_data();
    void requestsGoOverTheProxy();
    void failuresAreExplained_data();
    void failuresAreExplained();
    void environmentIsTheDefault();
    void thisMachineIsAskedDirectly();

private:
    QString proxy(const QString &login = {}) const;
    QString serviceUrl(bool isEncrypted) const;

    Certificates m_certificates;
    ScriptedServer m_service;
    Nginx m_nginx;
    ServerProgram m_squid;
    quint16 m_proxyPort = 0;
};

void TestProxy::initTestCase()
{
    m_service.setHandler([](const ScriptedRequest &request) {
        return ScriptedReply::json('"' + request.verb + '"');
    });
    Nginx::Settings settings;
    settings.servicePort = quint16(QUrl(m_service.baseApi()).port());
    settings.certificate = m_certificates.forServer("DNS:service.test");
    QVERIFY(m_nginx.start(settings));

    m_proxyPort = ServerProgram::freePort();
    m_squid.write("hosts", "127.0.0.1 service.test\n127.0.0.1 denied.test\n");
    // The password is "pass word".
    m_squid.write("users", "user:$apr1$salt$ibdZuCvanoWKrhbPVPLqq/\n");
    const QString configuration =
        m_squid.write("squid.conf",
                      "http_port 127.0.0.1:" + QByteArray::number(m_proxyPort)
                          + "\n"
                            "pid_filename none\n"
                            "hosts_file "
                          + m_squid.path("hosts").toUtf8()
                          + "\n"
                            "cache deny all\naccess_log none\ncache_log "
                          + m_squid.path("cache.log").toUtf8()
                          + "\n"
                            "shutdown_lifetime 0 seconds\n"
                            "auth_param basic program /usr/lib/squid/basic_ncsa_auth "
                          + m_squid.path("users").toUtf8()
                          + "\n"
                            "acl known proxy_auth REQUIRED\n"
                            "acl denied dstdomain denied.test\n"
                            "http_access deny denied\n"
                            "http_access allow known\n"
                            "http_access deny all\n");
    QVERIFY(m_squid.start("/usr/sbin/squid", {"-N", "-f", configuration}, m_proxyPort));
}

void TestProxy::init()
{
    m_service.clearRequests();
    for (const char *variable : {"http_proxy", "https_proxy", "no_proxy"})
        qunsetenv(variable);
    NetworkSettings &settings = NetworkSettings::instance();
    settings.setCaCertificates(m_certificates.authority());
    settings.setProxy(QString());
}

QString TestProxy::proxy(const QString &login) const
{
    const QString before = login.isEmpty() ? login : login + QLatin1Char('@');
    return QLatin1String("http://") + before + QLatin1String("127.0.0.1:")
        + QString::number(m_proxyPort);
}

QString TestProxy::serviceUrl(bool isEncrypted) const
{
    return isEncrypted ? QString("https://service.test:%1/").arg(m_nginx.port())
                       : QString("http://service.test:%1/").arg(QUrl(m_service.baseApi()).port());
}

void TestProxy::requestsGoOverTheProxy_data()
{
    QTest::addColumn<bool>("isEncrypted");
    QTest::newRow("http") << false;
    QTest::newRow("https") << true;
}

void TestProxy::requestsGoOverTheProxy()
{
    QFETCH(bool, isEncrypted);
    NetworkSettings::instance().setProxy(proxy("user:pass%20word"));
    NetworkManager *manager = NetworkManager::instance();
    NetworkEventLoop get(manager->get(serviceUrl(isEncrypted)));
    get.exec();
    QCOMPARE(get.error(), QNetworkReply::NoError);
    QCOMPARE(get.content(), QByteArray("\"GET\""));
    const QJsonObject body{{"a", QString(300000, QLatin1Char('a'))}};
    NetworkEventLoop post(manager->postJson(serviceUrl(isEncrypted), body));
    post.exec();
    QCOMPARE(post.error(), QNetworkReply::NoError);
    QCOMPARE(post.content(), QByteArray("\"POST\""));
    QCOMPARE(m_service.requests().size(), 2);
    QCOMPARE(m_service.requests().last().body.size(), 300008);
    QVERIFY(!m_service.requests().last().headers.contains("proxy-authorization"));
}

void TestProxy::failuresAreExplained_data()
{
    QTest::addColumn<QString>("proxy");
    QTest::addColumn<QString>("host");
    QTest::addColumn<QNetworkReply::NetworkError>("error");
    QTest::addColumn<Reason>("reason");
    QTest::addColumn<QString>("message");
    const auto row = [](const char *name, const QString &proxy, const char *host,
                        QNetworkReply::NetworkError error, Reason reason, const char *message) {
        QTest::newRow(name) << proxy << QString::fromLatin1(host) << error << reason
                            << QString::fromLatin1(message);
    };
    const char *const login =
        "The proxy requires a user name and a password, or does not accept them";
    const QString user = "user:pass%20word";
    row("no password, http", proxy(), "http://service.test",
        QNetworkReply::ProxyAuthenticationRequiredError, Reason::ProxyLoginNeeded, login);
    row("no password, https", proxy(), "https://service.test",
        QNetworkReply::ProxyAuthenticationRequiredError, Reason::ProxyLoginNeeded, login);
    row("wrong password, http", proxy("user:wrong"), "http://service.test",
        QNetworkReply::ProxyAuthenticationRequiredError, Reason::ProxyLoginNeeded, login);
    row("wrong password, https", proxy("user:wrong"), "https://service.test",
        QNetworkReply::ProxyAuthenticationRequiredError, Reason::ProxyLoginNeeded, login);
    row("denied, http", proxy(user), "http://denied.test", QNetworkReply::ContentAccessDenied,
        Reason::ProxyRefused, "The proxy refused the request (status 403)");
    row("denied, https", proxy(user), "https://denied.test", QNetworkReply::UnknownProxyError,
        Reason::ProxyRefused, "The proxy refused the request (status 403)");
    row("nothing listens", QString("http://127.0.0.1:%1").arg(ServerProgram::freePort()),
        "http://service.test", QNetworkReply::ProxyConnectionRefusedError, Reason::ProxyUnreachable,
        "The proxy cannot be reached");
    row("unknown name", "http://nowhere.invalid:3128", "http://service.test",
        QNetworkReply::ProxyNotFoundError, Reason::ProxyNotFound,
        "The host of the proxy was not found");
}

void TestProxy::failuresAreExplained()
{
    QFETCH(QString, proxy);
    QFETCH(QString, host);
    QFETCH(QNetworkReply::NetworkError, error);
    QFETCH(Reason, reason);
    QFETCH(QString, message);
    NetworkSettings::instance().setProxy(proxy);
    QSignalSpy failures(NetworkManager::instance(), &NetworkManager::requestFailed);
    NetworkEventLoop loop(NetworkManager::instance()->get(
        QString("%1:%2/").arg(host).arg(QUrl(m_service.baseApi()).port())));
    loop.exec();
    QCOMPARE(loop.error(), error);
    const auto failure = failures.first().first().value<NetworkFailure>();
    QCOMPARE(failure.reason, reason);
    QCOMPARE(failure.message, message);
    QCOMPARE(m_service.requests().size(), 0);
}

void TestProxy::environmentIsTheDefault()
{
    const QString url = serviceUrl(false);
    const auto errorOf = [&] {
        NetworkEventLoop loop(NetworkManager::instance()->get(url));
        loop.exec();
        return loop.error();
    };
    QCOMPARE(errorOf(), QNetworkReply::HostNotFoundError);
    qputenv("http_proxy", proxy("user:pass%20word").toLatin1());
    QCOMPARE(errorOf(), QNetworkReply::NoError);
    qputenv("no_proxy", "service.test");
    QCOMPARE(errorOf(), QNetworkReply::HostNotFoundError);
    qunsetenv("no_proxy");
    NetworkSettings::instance().setProxy(NetworkSettings::noProxy());
    QCOMPARE(errorOf(), QNetworkReply::HostNotFoundError);
}

void TestProxy::thisMachineIsAskedDirectly()
{
    // A proxy that nobody can use.
    NetworkSettings::instance().setProxy("http://nowhere.invalid:3128");
    const int port = QUrl(m_service.baseApi()).port();
    for (const char *host : {"127.0.0.1", "127.1.2.3", "localhost"}) {
        NetworkEventLoop loop(NetworkManager::instance()->get(
            QString("http://%1:%2/").arg(QLatin1String(host)).arg(port)));
        loop.exec();
        QVERIFY2(loop.error() == QNetworkReply::NoError
                     || loop.error() == QNetworkReply::ConnectionRefusedError,
                 host);
    }
    QVERIFY(m_service.requests().size() >= 1);
}

QTEST_GUILESS_MAIN(TestProxy)

#include "tst_proxy.moc"
