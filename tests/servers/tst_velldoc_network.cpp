#include "Nginx.h"

#include <apps/VelldocWorld.h>

#include <QTest>

//! velldoc to a service behind TLS: its options, what it remembers, what it advises.
class TestVelldocNetwork : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void authoritiesComeFromOptionVariableOrLogin();
    void clientCertificatesAreShown();
    void adviceFitsTheFailure_data();
    void adviceFitsTheFailure();

private:
    bool startNginx(const QByteArray &http = {});
    VelldocRun run(const QString &options);

    Certificates m_certificates;
    VelldocWorld m_world;
    Nginx m_nginx;
};

void TestVelldocNetwork::initTestCase()
{
    QVERIFY(startNginx());
}

void TestVelldocNetwork::cleanup()
{
    for (const char *variable : {"VELLDOC_CACERT", "VELLDOC_KEY_PASSWORD"})
        m_world.environment.remove(QLatin1String(variable));
    m_world.runBare({"logout"});
}

bool TestVelldocNetwork::startNginx(const QByteArray &http)
{
    m_nginx.kill();
    Nginx::Settings settings;
    settings.servicePort = quint16(QUrl(m_world.baseApi()).port());
    settings.certificate = m_certificates.forServer("IP:127.0.0.1");
    settings.http = http;
    return m_nginx.start(settings);
}

VelldocRun TestVelldocNetwork::run(const QString &options)
{
    return m_world.runBare(options.split(QLatin1Char(' ')) << "ls");
}

void TestVelldocNetwork::authoritiesComeFromOptionVariableOrLogin()
{
    const QString url = QLatin1String("--url ") + m_nginx.baseApi();
    QCOMPARE(run(url).exitCode, 5);
    QCOMPARE(run(url + QLatin1String(" --cacert ") + m_certificates.authority()).exitCode, 0);
    m_world.environment.insert("VELLDOC_CACERT", m_certificates.authority());
    QCOMPARE(run(url).exitCode, 0);
    m_world.environment.remove("VELLDOC_CACERT");

    const VelldocRun login =
        m_world.runBare({"login", "--cacert", m_certificates.authority(), m_nginx.baseApi()}, "\n");
    QVERIFY2(login.exitCode == 0, qPrintable(login.error));
    QCOMPARE(m_world.runBare({"ls"}).exitCode, 0);
    m_world.runBare({"logout"});
    QVERIFY(!VelldocWorld::read(m_world.configPath()).contains("cacert"));
}

void TestVelldocNetwork::clientCertificatesAreShown()
{
    QVERIFY(startNginx("ssl_client_certificate " + m_certificates.authority().toUtf8()
                       + ";\nssl_verify_client on;"));
    const Certificates::Pair pair = m_certificates.forClient();
    const QString options = QLatin1String("--url ") + m_nginx.baseApi()
        + QLatin1String(" --cacert ") + m_certificates.authority();
    const VelldocRun refused = run(options);
    QCOMPARE(refused.exitCode, 5);
    QVERIFY2(refused.error.contains(
                 QLatin1String("pass your certificate with --cert FILE and --key FILE.")),
             qPrintable(refused.error));
    QCOMPARE(run(options + QLatin1String(" --cert ") + pair.certificate + QLatin1String(" --key ")
                 + pair.key)
                 .exitCode,
             0);
    m_world.environment.insert("VELLDOC_KEY_PASSWORD", "s3cret");
    QCOMPARE(run(options + QLatin1String(" --cert ") + m_certificates.pfx(pair, "s3cret")).exitCode,
             0);
    QVERIFY(startNginx());
}

void TestVelldocNetwork::adviceFitsTheFailure_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<QString>("words");
    const QString url = QLatin1String("--url ") + m_nginx.baseApi();
    QTest::newRow("unknown authority")
        << url << "is signed by an authority that is not trusted here (SSL";
    QTest::newRow("how to trust it") << url << "pass it with --cacert FILE.";
    QTest::newRow("no TLS")
        << QString("--url https://127.0.0.1:%1/").arg(QUrl(m_world.baseApi()).port())
        << "check whether the address begins with http or https";
    QTest::newRow("refused") << "--url http://127.0.0.1:1/"
                             << "127.0.0.1:1 refused the connection: no program is listening there";
    QTest::newRow("unknown host") << "--url http://nowhere.invalid/ --proxy none"
                                  << "The host nowhere.invalid was not found";
    QTest::newRow("proxy") << "--url http://nowhere.invalid/ --proxy http://127.0.0.1:1"
                           << "\"--proxy none\" connects directly.";
}

void TestVelldocNetwork::adviceFitsTheFailure()
{
    QFETCH(QString, options);
    QFETCH(QString, words);
    const VelldocRun result = run(options);
    QCOMPARE(result.exitCode, 5);
    QVERIFY2(result.error.contains(words), qPrintable(result.error));
}

QTEST_GUILESS_MAIN(TestVelldocNetwork)

#include "tst_velldoc_network.moc"
