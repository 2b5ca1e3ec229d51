#include <service/ReferenceService.h>

#include <QCoreApplication>
#include <QHostAddress>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>

#include <cstdio>
#include <memory>

// Runs a test under Wine, and for it the reference service, which does not run there.
//   service_host COMMAND [ARGUMENTS]
// The test connects to the port in VELL_SERVICE_HOST_PORT; each connection is a ReferenceService, which
// is destroyed with it. A line of JSON is a call, and another one its result: see RemoteService.cpp.

namespace {

//! Converts a path of Wine to one of this system: drives are links in Wine's folder.
QString nativePath(const QString &path)
{
    if (path.size() < 2 || path.at(1) != QLatin1Char(':'))
        return path;
    return qEnvironmentVariable("WINEPREFIX") + QLatin1String("/dosdevices/")
        + path.left(2).toLower() + path.mid(2);
}

ServiceOptions optionsOf(const QJsonObject &call)
{
    ServiceOptions options;
    options.dataDir = nativePath(call.value(QLatin1String("dataDir")).toString());
    options.listenAddress = call.value(QLatin1String("listenAddress")).toString();
    options.port = static_cast<quint16>(call.value(QLatin1String("port")).toInt());
    options.accessLog = nativePath(call.value(QLatin1String("accessLog")).toString());
    options.maxBodyBytes =
        static_cast<qint64>(call.value(QLatin1String("maxBodyBytes")).toDouble());
    options.storeQuotaBytes =
        static_cast<qint64>(call.value(QLatin1String("storeQuotaBytes")).toDouble());
    return options;
}

FaultRule faultOf(const QJsonObject &call)
{
    FaultRule rule;
    rule.kind = static_cast<FaultRule::Kind>(call.value(QLatin1String("kind")).toInt());
    rule.value = static_cast<qint64>(call.value(QLatin1String("value")).toDouble());
    rule.verb = call.value(QLatin1String("verb")).toString().toLatin1();
    rule.pathPrefix = call.value(QLatin1String("pathPrefix")).toString();
    rule.nth = call.value(QLatin1String("nth")).toInt();
    rule.times = call.value(QLatin1String("times")).toInt();
    return rule;
}

class HostedService : public QObject
{
public:
    explicit HostedService(QTcpSocket *socket);

private:
    QJsonObject answer(const QJsonObject &call);
    //! addUser, addProject, setRole.
    QJsonObject administer(const QString &name, const QJsonObject &call);

    std::unique_ptr<ReferenceService> m_service;
};

HostedService::HostedService(QTcpSocket *socket) : QObject(socket)
{
    connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
        while (socket->canReadLine()) {
            const QJsonObject call = QJsonDocument::fromJson(socket->readLine()).object();
            socket->write(QJsonDocument(answer(call)).toJson(QJsonDocument::Compact) + '\n');
        }
    });
}

QJsonObject HostedService::answer(const QJsonObject &call)
{
    const QString name = call.value(QLatin1String("call")).toString();
    QString error;
    if (name == QLatin1String("open"))
        m_service = std::make_unique<ReferenceService>(optionsOf(call));
    else if (name == QLatin1String("start"))
        m_service->start(&error);
    else if (name == QLatin1String("stop"))
        m_service->stop();
    else if (name == QLatin1String("addFault"))
        m_service->addFault(faultOf(call));
    else if (name == QLatin1String("clearFaults"))
        m_service->clearFaults();
    else
        return administer(name, call);
    return {{QStringLiteral("error"), error},
            {QStringLiteral("baseApi"), m_service->baseApi()},
            {QStringLiteral("port"), m_service->port()}};
}

QJsonObject HostedService::administer(const QString &name, const QJsonObject &call)
{
    const auto text = [&call](const char *key) {
        return call.value(QLatin1String(key)).toString();
    };
    QString error;
    QString token;
    if (name == QLatin1String("addUser"))
        token = m_service->addUser(text("name"), &error);
    else if (name == QLatin1String("addProject"))
        m_service->addProject(text("id"), text("name"), &error);
    else if (name == QLatin1String("setRole"))
        m_service->setRole(text("project"), text("user"), text("role"), &error);
    else
        error = QStringLiteral("service_host knows no call \"%1\"").arg(name);
    return {{QStringLiteral("error"), error}, {QStringLiteral("token"), token}};
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QStringList command = QCoreApplication::arguments().mid(1);
    QTcpServer server;
    QObject::connect(&server, &QTcpServer::newConnection, &server, [&server] {
        while (QTcpSocket *socket = server.nextPendingConnection())
            new HostedService(socket);
    });
    if (command.isEmpty() || !server.listen(QHostAddress::LocalHost)) {
        std::fprintf(stderr, "service_host COMMAND [ARGUMENTS]: %s\n",
                     qPrintable(server.errorString()));
        return 2;
    }
    qputenv("VELL_SERVICE_HOST_PORT", QByteArray::number(server.serverPort()));

    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.setInputChannelMode(QProcess::ForwardedInputChannel);
    QObject::connect(&process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished),
                     [](int code, QProcess::ExitStatus status) {
                         QCoreApplication::exit(status == QProcess::NormalExit ? code : 1);
                     });
    const QString program = command.takeFirst();
    process.start(program, command);
    if (!process.waitForStarted()) {
        std::fprintf(stderr, "service_host: %s: %s\n", qPrintable(program),
                     qPrintable(process.errorString()));
        return 127;
    }
    return QCoreApplication::exec();
}
