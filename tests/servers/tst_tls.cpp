#include "Nginx.h"

#include <VellNetwork/NetworkEventLoop.h>
#include <VellNetwork/NetworkManager.h>
#include <VellNetwork/NetworkSettings.h>

#include <support/ScriptedServer.h>

#include <QFile>
#include <QIODevice>
#include <QSet>
#include <QTest>

#include <memory>

using Reason = NetworkFailure::Reason;

Q_DECLARE_METATYPE(NetworkFailure::Reason)

//! What TLS servers show, and what a client is told when it does not fit.
class TestTls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void certificatesAreJudged_data();
    void certificatesAreJudged();
    void unreadableAuthoritiesAreNamed();
    void clientCertificatesAreShown_data();
    void clientCertificatesAreShown();
    void haproxyAsksForAClientCertificate();
    void wrongSchemesAreNamed_data();
    void wrongSchemesAreNamed();
    void connectionsAreReused();

private:
    bool startNginx(const Certificates::Pair &certificate, const QByteArray &http = {});
    //! How a request to \a url ended; Reason::Other and no message when it succeeded.
    NetworkFailure ask(const QString &url);

    Certificates m_certificates;
    std::unique_ptr<ScriptedServer> m_service;
    std::unique_ptr<Nginx> m_nginx;
};

void TestTls::init()
{
    m_service = std::make_unique<ScriptedServer>();
    m_service->setHandler([](const ScriptedRequest &) { return ScriptedReply::json("{}"); });
    NetworkSettings &settings = NetworkSettings::instance();
    settings.setCaCertificates(m_certificates.authority());
    settings.setClientCertificate({});
}

bool TestTls::startNginx(const Certificates::Pair &certificate, const QByteArray &http)
{
    m_nginx = std::make_unique<Nginx>();
    Nginx::Settings settings;
    settings.servicePort = quint16(QUrl(m_service->baseApi()).port());
    settings.certificate = certificate;
    settings.http = http;
    return m_nginx->start(settings);
}

NetworkFailure TestTls::ask(const QString &url)
{
    NetworkFailure failure;
    const auto connection =
        connect(NetworkManager::instance(), &NetworkManager::requestFailed, this,
                [&](const NetworkFailure &reported) { failure = reported; });
    NetworkEventLoop loop(NetworkManager::instance()->get(url));
    loop.exec();
    disconnect(connection);
    if (loop.error() != failure.error)
        qFatal("The reply and the report do not agree.");
    return failure;
}

void TestTls::certificatesAreJudged_data()
{
    QTest::addColumn<QString>("names"); // of the certificate; empty for a self-signed one
    QTest::addColumn<int>("days");
    QTest::addColumn<bool>("isAuthorityTrusted");
    QTest::addColumn<QNetworkReply::NetworkError>("error");
    QTest::addColumn<Reason>("reason");
    QTest::addColumn<QString>("words");
    const QString here = "DNS:localhost,IP:127.0.0.1";
    const auto failed = QNetworkReply::SslHandshakeFailedError;

    QTest::newRow("own authority")
        << here << 2 << true << QNetworkReply::NoError << Reason::Other << QString();
    QTest::newRow("unknown authority")
        << here << 2 << false << failed << Reason::CertificateUntrusted
        << "The certificate of 127.0.0.1 is signed by an authority that is not "
           "trusted here (";
    QTest::newRow("expired") << here << -1 << true << failed << Reason::CertificateExpired
                             << "The certificate of 127.0.0.1 has expired or is not valid yet (";
    QTest::newRow("wrong host") << "DNS:elsewhere.test" << 2 << true << failed
                                << Reason::CertificateWrongHost
                                << "The certificate of the server is not valid for 127.0.0.1 (";
    QTest::newRow("self-signed") << QString() << 2 << true << failed
                                 << Reason::CertificateSelfSigned
                                 << "127.0.0.1 has a self-signed certificate (";
}

void TestTls::certificatesAreJudged()
{
    QFETCH(QString, names);
    QFETCH(int, days);
    QFETCH(bool, isAuthorityTrusted);
    QFETCH(QNetworkReply::NetworkError, error);
    QFETCH(Reason, reason);
    QFETCH(QString, words);
    QVERIFY(startNginx(names.isEmpty() ? m_certificates.selfSigned()
                                       : m_certificates.forServer(names, days)));
    if (!isAuthorityTrusted)
        NetworkSettings::instance().setCaCertificates(QString());
    const NetworkFailure failure = ask(m_nginx->baseApi());
    QCOMPARE(failure.error, error);
    QCOMPARE(failure.message.left(words.size()), words);
    QCOMPARE(failure.reason, reason);
    QCOMPARE(m_service->requests().size(), error == QNetworkReply::NoError ? 1 : 0);
}

void TestTls::unreadableAuthoritiesAreNamed()
{
    QVERIFY(startNginx(m_certificates.forServer("IP:127.0.0.1")));
    NetworkSettings::instance().setCaCertificates("/nowhere/ca.pem");
    const NetworkFailure failure = ask(m_nginx->baseApi());
    QCOMPARE(failure.error, QNetworkReply::SslHandshakeFailedError);
    QVERIFY2(failure.message.startsWith(
                 QLatin1String("The file of trusted certificate authorities cannot be read (")),
             qPrintable(failure.message));
}

void TestTls::clientCertificatesAreShown_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("password");
    QTest::addColumn<Reason>("reason");
    const auto row = [](const char *kind, const char *password, Reason reason) {
        QTest::addRow("%s, password \"%s\"", kind, password)
            << QString::fromLatin1(kind) << QString::fromLatin1(password) << reason;
    };
    row("none", "", Reason::ClientCertificateNeeded);
    row("pem", "", Reason::Other);
    row("encrypted", "s3cret", Reason::Other);
    row("encrypted", "wrong", Reason::ClientCertificateUnreadable);
    row("pfx", "s3cret", Reason::Other);
    row("pfx", "wrong", Reason::ClientCertificateUnreadable);
    row("missing", "", Reason::ClientCertificateUnreadable);
}

void TestTls::clientCertificatesAreShown()
{
    QFETCH(QString, kind);
    QFETCH(QString, password);
    QFETCH(Reason, reason);
    const QByteArray client = "ssl_client_certificate " + m_certificates.authority().toUtf8()
        + ";\nssl_verify_client on;";
    QVERIFY(startNginx(m_certificates.forServer("IP:127.0.0.1"), client));
    const Certificates::Pair pair = m_certificates.forClient();
    ClientCertificate shown;
    shown.password = password;
    if (kind == QLatin1String("pem")) {
        shown.certificate = pair.certificate;
        shown.key = pair.key;
    } else if (kind == QLatin1String("encrypted")) {
        shown.certificate = pair.certificate;
        shown.key = m_certificates.encryptedKey(pair, "s3cret");
    } else if (kind == QLatin1String("pfx")) {
        shown.certificate = m_certificates.pfx(pair, "s3cret");
    } else if (kind == QLatin1String("missing")) {
        shown.certificate = "/nowhere/client.pem";
    }
    NetworkSettings::instance().setClientCertificate(shown);
    const NetworkFailure failure = ask(m_nginx->baseApi());
    QCOMPARE(failure.reason, reason);
    QCOMPARE(failure.message.isEmpty(), reason == Reason::Other);
    QCOMPARE(m_service->requests().size(), reason == Reason::Other ? 1 : 0);
    QVERIFY2(!failure.message.contains(QLatin1String("s3cret")), qPrintable(failure.message));
}

// It ends the handshake where nginx answers with a page.
void TestTls::haproxyAsksForAClientCertificate()
{
    const Certificates::Pair pair = m_certificates.forServer("IP:127.0.0.1");
    QFile certificate(pair.certificate);
    QFile key(pair.key);
    QVERIFY(certificate.open(QIODevice::ReadOnly) && key.open(QIODevice::ReadOnly));
    ServerProgram haproxy;
    const quint16 port = ServerProgram::freePort();
    const QString both = haproxy.write("both.pem", certificate.readAll() + key.readAll());
    const QString configuration = haproxy.write(
        "haproxy.cfg",
        "defaults\n  mode http\n  timeout connect 5s\n  timeout client 5s\n  timeout server 5s\n"
        "frontend f\n  bind 127.0.0.1:"
            + QByteArray::number(port) + " ssl crt " + both.toUtf8() + " ca-file "
            + m_certificates.authority().toUtf8()
            + " verify required\n  default_backend b\n"
              "backend b\n  server s 127.0.0.1:"
            + QByteArray::number(QUrl(m_service->baseApi()).port()) + "\n");
    QVERIFY(haproxy.start("/usr/sbin/haproxy", {"-f", configuration}, port));
    const QString url = QString("https://127.0.0.1:%1/").arg(port);
    const NetworkFailure failure = ask(url);
    QCOMPARE(failure.error, QNetworkReply::SslHandshakeFailedError);
    QCOMPARE(failure.reason, Reason::ClientCertificateNeeded);
    QCOMPARE(failure.message, QString("127.0.0.1:%1 requires a client certificate").arg(port));

    const Certificates::Pair client = m_certificates.forClient();
    NetworkSettings::instance().setClientCertificate({client.certificate, client.key, {}});
    QCOMPARE(ask(url).error, QNetworkReply::NoError);
}

void TestTls::wrongSchemesAreNamed_data()
{
    QTest::addColumn<bool>("isEncrypted");
    QTest::addColumn<QString>("scheme");
    QTest::addColumn<Reason>("reason");
    QTest::addColumn<QString>("words");
    QTest::newRow("https to a server of http")
        << false << "https" << Reason::NoTls << "could not be established";
    QTest::newRow("http to a server of https")
        << true << "http" << Reason::Other
        << "The server requires https at this port (400 Bad Request)";
}

void TestTls::wrongSchemesAreNamed()
{
    QFETCH(bool, isEncrypted);
    QFETCH(QString, scheme);
    QFETCH(Reason, reason);
    QFETCH(QString, words);
    QVERIFY(
        startNginx(isEncrypted ? m_certificates.forServer("IP:127.0.0.1") : Certificates::Pair()));
    QUrl url(m_nginx->baseApi());
    url.setScheme(scheme);
    const NetworkFailure failure = ask(url.toString());
    QCOMPARE(failure.reason, reason);
    QVERIFY2(failure.message.contains(words), qPrintable(failure.message));
}

void TestTls::connectionsAreReused()
{
    // nginx names each connection by a number.
    QVERIFY(startNginx(m_certificates.forServer("IP:127.0.0.1"),
                       "add_header X-Connection $connection;"));
    QSet<QByteArray> connections;
    for (int i = 0; i < 20; ++i) {
        QNetworkReply *reply = NetworkManager::instance()->get(m_nginx->baseApi());
        NetworkEventLoop loop(reply);
        loop.exec();
        QVERIFY(loop.isSuccessful());
        connections += reply->rawHeader("X-Connection");
    }
    QCOMPARE(connections.size(), 1);
}

QTEST_GUILESS_MAIN(TestTls)

#include "tst_tls.moc"
