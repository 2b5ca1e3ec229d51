#include <session/VellConnection.h>

#include <QTest>

// What is said of an address before anything is sent there.
class TestClientConnection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void addressesAreChecked_data();
    void addressesAreChecked();
    void everySettingGoesIntoTheRequests();
};

void TestClientConnection::addressesAreChecked_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("problem");
    const auto row = [](const char *name, const char *address, const char *problem) {
        QTest::newRow(name) << QString::fromUtf8(address) << QString::fromUtf8(problem);
    };
    row("http", "http://127.0.0.1:8080/", "");
    row("https with a path", "https://documents.example.com/vell", "");
    row("IPv6", "http://[::1]:8080/", "");
    row("empty", "", "The address of the service is missing.");
    row("blanks", "  ", "The address of the service is missing.");
    row("no scheme", "documents.example.com",
        "The address \"documents.example.com\" has no scheme: write https://documents.example.com "
        "or http://documents.example.com.");
    row("host and port", "localhost:8080",
        "The address \"localhost:8080\" has no scheme: write https://localhost:8080 or "
        "http://localhost:8080.");
    row("another scheme", "ftp://documents.example.com/",
        "The address \"ftp://documents.example.com/\" does not begin with http:// or https://.");
    row("no host", "http:///path", "The address \"http:///path\" has no host.");
    row("no address at all", "http://", "The address \"http://\" has no host.");
    row("a port that is none", "http://host:port/",
        "The address \"http://host:port/\" has no host.");
}

void TestClientConnection::addressesAreChecked()
{
    QFETCH(QString, address);
    QFETCH(QString, problem);
    VellConnection connection;
    connection.address = address;
    const VellError error = connection.problem();
    QCOMPARE(error.text, problem);
    QCOMPARE(error.kind, problem.isEmpty() ? VellError::Kind::None : VellError::Kind::BadAddress);
}

void TestClientConnection::everySettingGoesIntoTheRequests()
{
    VellConnection connection;
    connection.address = QStringLiteral("http://host/");
    connection.accessToken = QStringLiteral("token");
    connection.caCertificates = QStringLiteral("ca.pem");
    connection.clientCertificate = {QStringLiteral("cert"), QStringLiteral("key"),
                                    QStringLiteral("password")};
    connection.proxy = QStringLiteral("none");
    const RequestSettings settings = connection.requestSettings();
    QCOMPARE(settings.baseApi, connection.address);
    QCOMPARE(settings.accessToken, connection.accessToken);
    QCOMPARE(settings.caCertificates, connection.caCertificates);
    QCOMPARE(settings.clientCertificate.certificate, QStringLiteral("cert"));
    QCOMPARE(settings.clientCertificate.key, QStringLiteral("key"));
    QCOMPARE(settings.clientCertificate.password, QStringLiteral("password"));
    QCOMPARE(settings.proxy, connection.proxy);
}

QTEST_GUILESS_MAIN(TestClientConnection)
#include "tst_client_connection.moc"
