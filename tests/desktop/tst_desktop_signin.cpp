#include "DesktopWorld.h"

#include <desktop/signin/CertificateDialog.h>
#include <desktop/signin/SignInDialog.h>

#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QSslKey>
#include <QSslSocket>
#include <QTcpServer>

using namespace desktop;

// Connecting: the own service, addresses, tokens, projects, certificates, and what is remembered.
class TestDesktopSignin : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ownServiceWorksWithNothingSetUp();
    void rememberedConnectionIsUsed();
    void forgottenConnectionIsGone();
    void wrongInputIsExplained_data();
    void wrongInputIsExplained();
    void projectIsChosen();
    void tokenFileIsPrivate();
#ifndef Q_OS_WIN // the certificates are made by OpenSSL's program
    void authorityIsTrustedAfterComparing();
#endif
};

namespace {

//! The program on files of its own, not connected to anything.
struct Program
{
    Program() { start(); }

    void start(bool isNoService = false)
    {
        desktop.reset();
        StartOptions options;
        options.paths = AppPaths::below(folder.path());
        options.isNoService = isNoService;
        desktop = std::make_unique<Desktop>(options);
    }

    bool isOpen() const { return !desktop->workspace()->session.projectId().isEmpty(); }

    template <typename Widget>
    Widget *find(const char *name)
    {
        auto *const found = desktop->window()->findChild<Widget *>(QLatin1String(name));
        if (!found)
            qFatal("there is no %s", name);
        return found;
    }

    void signIn(const QString &address, const QString &token = {})
    {
        find<QLineEdit>("address")->setText(address);
        find<QLineEdit>("token")->setText(token);
        find<QLineEdit>("proxy")->setText(QStringLiteral("none"));
        QTest::keyClick(find<QLineEdit>("token"), Qt::Key_Return);
    }

    QString message() { return find<QLabel>("message")->text(); }

    QTemporaryDir folder;
    std::unique_ptr<Desktop> desktop;
};

//! Speaks TLS with a certificate that nobody knows, and answers every request with 404.
class TlsServer : public QTcpServer
{
public:
    explicit TlsServer(const QTemporaryDir &folder)
    {
        const QString key = folder.filePath(QStringLiteral("key.pem"));
        const QString certificate = folder.filePath(QStringLiteral("certificate.pem"));
        QProcess openssl;
        openssl.start(QStringLiteral("openssl"),
                      {QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"),
                       QStringLiteral("rsa:2048"), QStringLiteral("-nodes"),
                       QStringLiteral("-keyout"), key, QStringLiteral("-out"), certificate,
                       QStringLiteral("-days"), QStringLiteral("2"), QStringLiteral("-subj"),
                       QStringLiteral("/CN=localhost/O=Bridge Office"), QStringLiteral("-addext"),
                       QStringLiteral("subjectAltName=DNS:localhost")});
        openssl.waitForFinished();
        if (openssl.exitStatus() != QProcess::NormalExit || openssl.exitCode() != 0)
            qFatal("openssl makes no certificate");
        QFile keyFile(key);
        if (!keyFile.open(QIODevice::ReadOnly))
            qFatal("there is no key");
        m_key = QSslKey(&keyFile, QSsl::Rsa);
        m_certificate = QSslCertificate::fromPath(certificate).constFirst();
        if (!listen(QHostAddress::LocalHost))
            qFatal("no port is free");
    }

    QString address() const { return QStringLiteral("https://localhost:%1/").arg(serverPort()); }
    const QSslCertificate &certificate() const { return m_certificate; }

protected:
    void incomingConnection(qintptr handle) override
    {
        auto *const socket = new QSslSocket(this);
        socket->setSocketDescriptor(handle);
        socket->setPrivateKey(m_key);
        socket->setLocalCertificate(m_certificate);
        connect(socket, &QSslSocket::readyRead, socket, [socket] {
            socket->readAll();
            socket->write("HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n");
        });
        socket->startServerEncryption();
    }

private:
    QSslKey m_key;
    QSslCertificate m_certificate;
};

} // namespace

void TestDesktopSignin::ownServiceWorksWithNothingSetUp()
{
    Program program;
    program.desktop->start();
    if (!EmbeddedService::isAvailable()) {
        QVERIFY(program.desktop->window()->findChild<SignInDialog *>());
        return;
    }
    QTRY_VERIFY_WITH_TIMEOUT(program.isOpen(), WaitMs);
    await(program.desktop->workspace()->documents.createFolder(QString(), QStringLiteral("Mine")));
    QTRY_COMPARE_WITH_TIMEOUT(program.desktop->window()->pane()->model()->rowCount(), 1, WaitMs);
    const QString address = program.desktop->workspace()->connector.connection().address;
    // The next time it is there again, at the same address, for transfers that wait.
    program.start();
    program.desktop->start();
    QTRY_COMPARE_WITH_TIMEOUT(program.desktop->window()->pane()->model()->rowCount(), 1, WaitMs);
    QCOMPARE(program.desktop->workspace()->connector.connection().address, address);
}

void TestDesktopSignin::rememberedConnectionIsUsed()
{
    ClientWorld world;
    Program program;
    program.start(true);
    program.desktop->start();
    program.signIn(world.service.baseApi());
    QTRY_VERIFY_WITH_TIMEOUT(program.isOpen(), WaitMs);
    program.start(true);
    program.desktop->start();
    QTRY_VERIFY_WITH_TIMEOUT(program.isOpen(), WaitMs);
    QCOMPARE(program.desktop->workspace()->connector.connection().address, world.service.baseApi());
}

void TestDesktopSignin::forgottenConnectionIsGone()
{
    const QTemporaryDir folder;
    ConnectionStore store(folder.filePath(QStringLiteral("connections.json")));
    SavedConnection connection;
    connection.address = QStringLiteral("https://one.example/");
    connection.token = QStringLiteral("secret");
    connection.projectId = QStringLiteral("p1");
    const QString id = store.save(connection);
    QCOMPARE(store.save(connection), id); // the same one
    connection.projectId = QStringLiteral("p2");
    QVERIFY(store.save(connection) != id);
    QCOMPARE(store.connections().size(), 2);
    QCOMPARE(store.last()->projectId, QStringLiteral("p2"));
    QVERIFY(store.remove(store.last()->id));
    QVERIFY(!store.last());
    QCOMPARE(store.connections().size(), 1);
    QCOMPARE(store.connections().constFirst().token, QStringLiteral("secret"));
}

void TestDesktopSignin::wrongInputIsExplained_data()
{
    QTest::addColumn<QString>("address"); // %1 is that of the service
    QTest::addColumn<QString>("token");
    QTest::addColumn<QString>("message");
    QTest::newRow("no scheme") << "documents.example.com"
                               << ""
                               << "has no scheme";
    QTest::newRow("nothing") << ""
                             << ""
                             << "missing";
    QTest::newRow("nobody listens") << "http://127.0.0.1:1/"
                                    << ""
                                    << "Check the address";
    QTest::newRow("wrong token") << "%1"
                                 << "wrong"
                                 << "Enter the access token";
}

void TestDesktopSignin::wrongInputIsExplained()
{
    QFETCH(QString, address);
    QFETCH(QString, token);
    QFETCH(QString, message);
    ClientWorld world;
    world.service.addUser(QStringLiteral("anna"));
    Program program;
    program.start(true);
    program.desktop->start();
    program.signIn(address.contains(QLatin1String("%1")) ? address.arg(world.service.baseApi())
                                                         : address,
                   token);
    QTRY_VERIFY_WITH_TIMEOUT(program.message().contains(message), WaitMs);
    QVERIFY(!program.isOpen());
    QVERIFY(program.find<QPushButton>("connect")->isEnabled());
}

void TestDesktopSignin::projectIsChosen()
{
    ClientWorld world;
    QVERIFY(world.service.addProject(QStringLiteral("bridge"), QStringLiteral("The Bridge")));
    QVERIFY(world.service.addProject(QStringLiteral("tower"), QStringLiteral("The Tower")));
    Program program;
    program.start(true);
    program.desktop->start();
    program.signIn(world.service.baseApi());
    auto *const projects = program.find<QComboBox>("project");
    QTRY_VERIFY_WITH_TIMEOUT(projects->isVisible(), WaitMs);
    projects->setCurrentIndex(projects->findText(QStringLiteral("The Tower")));
    QTest::mouseClick(program.find<QPushButton>("connect"), Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(program.desktop->workspace()->session.projectId(),
                              QStringLiteral("tower"), WaitMs);
    QCOMPARE(program.desktop->workspace()->connections.last()->projectName,
             QStringLiteral("The Tower"));
}

void TestDesktopSignin::tokenFileIsPrivate()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("below/connections.json"));
    ConnectionStore store(path);
    SavedConnection connection;
    connection.address = QStringLiteral("https://one.example/");
    connection.token = QStringLiteral("secret");
    QVERIFY(!store.save(connection).isEmpty());
#ifndef Q_OS_WIN
    QCOMPARE(int(QFileInfo(path).permissions()
                 & (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther)),
             0);
#endif
    const ConnectionStore impossible(folder.filePath(QStringLiteral("below/connections.json/x")));
    QVERIFY(impossible.connections().isEmpty());
    QVERIFY(ConnectionStore(folder.filePath(QStringLiteral("below/connections.json/x")))
                .save(connection)
                .isEmpty());
}

#ifndef Q_OS_WIN
void TestDesktopSignin::authorityIsTrustedAfterComparing()
{
    Program program;
    TlsServer server(program.folder);
    program.start(true);
    program.desktop->start();
    program.signIn(server.address());
    auto *const show = program.find<QPushButton>("certificate");
    QTRY_VERIFY_WITH_TIMEOUT(show->isVisible(), WaitMs);
    QTest::mouseClick(show, Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(qobject_cast<CertificateDialog *>(QApplication::activeModalWidget()),
                             WaitMs);
    auto *const dialog = QApplication::activeModalWidget();
    bool isPrintShown = false;
    const auto labels = dialog->findChildren<QLabel *>();
    for (const QLabel *const label : labels)
        isPrintShown =
            isPrintShown || label->text() == CertificateDialog::fingerprint(server.certificate());
    QVERIFY(isPrintShown);
    auto *const trust = dialog->findChild<QPushButton *>(QStringLiteral("trust"));
    QVERIFY(!trust->isEnabled());
    dialog->findChild<QCheckBox *>(QStringLiteral("compared"))->click();
    QTest::mouseClick(trust, Qt::LeftButton);
    // The connection is safe then, but this is no document service.
    QTRY_VERIFY_WITH_TIMEOUT(program.message().contains(QLatin1String("no document service")),
                             WaitMs);
    QVERIFY(!show->isVisible());
}
#endif

QTEST_MAIN(TestDesktopSignin)
#include "tst_desktop_signin.moc"
