#include <service/ReferenceService.h>

#include <QHostAddress>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpSocket>

// For Windows, where the reference service does not run: the same class, as one that runs in the program
// service_host on the system that the tests were started from. A connection to it is a service.

namespace {

constexpr int TimeoutMs = 60'000;

} // namespace

class ReferenceService::Private
{
public:
    //! Has the other side do it. \return its answer
    QJsonObject call(const char *name, QJsonObject arguments = {});

    //! The same; true if it was done, otherwise with the sentence in \a error.
    bool isDone(const char *name, const QJsonObject &arguments, QString *error);

    QTcpSocket socket;
    QString baseApi;
    quint16 port = 0;
};

QJsonObject ReferenceService::Private::call(const char *name, QJsonObject arguments)
{
    arguments.insert(QStringLiteral("call"), QLatin1String(name));
    socket.write(QJsonDocument(arguments).toJson(QJsonDocument::Compact) + '\n');
    while (!socket.canReadLine()) {
        if (!socket.waitForReadyRead(TimeoutMs))
            qFatal("service_host does not answer: %s", qPrintable(socket.errorString()));
    }
    return QJsonDocument::fromJson(socket.readLine()).object();
}

bool ReferenceService::Private::isDone(const char *name, const QJsonObject &arguments,
                                       QString *error)
{
    const QString sentence = call(name, arguments).value(QLatin1String("error")).toString();
    if (error != nullptr)
        *error = sentence;
    return sentence.isEmpty();
}

ReferenceService::ReferenceService(const ServiceOptions &options) : d(std::make_unique<Private>())
{
    d->socket.connectToHost(QHostAddress(QHostAddress::LocalHost),
                            qEnvironmentVariable("VELL_SERVICE_HOST_PORT").toUShort());
    if (!d->socket.waitForConnected(TimeoutMs))
        qFatal("This test needs to be started by service_host: %s",
               qPrintable(d->socket.errorString()));
    d->call("open",
            {{QStringLiteral("dataDir"), options.dataDir},
             {QStringLiteral("listenAddress"), options.listenAddress},
             {QStringLiteral("port"), options.port},
             {QStringLiteral("accessLog"), options.accessLog},
             {QStringLiteral("maxBodyBytes"), options.maxBodyBytes},
             {QStringLiteral("storeQuotaBytes"), options.storeQuotaBytes}});
}

ReferenceService::~ReferenceService()
{
    stop();
}

bool ReferenceService::start(QString *error)
{
    const QJsonObject answer = d->call("start");
    d->baseApi = answer.value(QLatin1String("baseApi")).toString();
    d->port = static_cast<quint16>(answer.value(QLatin1String("port")).toInt());
    *error = answer.value(QLatin1String("error")).toString();
    return error->isEmpty();
}

void ReferenceService::stop()
{
    d->call("stop");
    d->baseApi.clear();
    d->port = 0;
}

quint16 ReferenceService::port() const
{
    return d->port;
}

QString ReferenceService::baseApi() const
{
    return d->baseApi;
}

QString ReferenceService::addUser(const QString &name, QString *error)
{
    const QJsonObject answer = d->call("addUser", {{QStringLiteral("name"), name}});
    if (error != nullptr)
        *error = answer.value(QLatin1String("error")).toString();
    return answer.value(QLatin1String("token")).toString();
}

bool ReferenceService::addProject(const QString &id, const QString &name, QString *error)
{
    return d->isDone("addProject", {{QStringLiteral("id"), id}, {QStringLiteral("name"), name}},
                     error);
}

bool ReferenceService::setRole(const QString &project, const QString &user, const QString &role,
                               QString *error)
{
    return d->isDone("setRole",
                     {{QStringLiteral("project"), project},
                      {QStringLiteral("user"), user},
                      {QStringLiteral("role"), role}},
                     error);
}

void ReferenceService::addFault(const FaultRule &rule)
{
    d->call("addFault",
            {{QStringLiteral("kind"), static_cast<int>(rule.kind)},
             {QStringLiteral("value"), rule.value},
             {QStringLiteral("verb"), QString::fromLatin1(rule.verb)},
             {QStringLiteral("pathPrefix"), rule.pathPrefix},
             {QStringLiteral("nth"), rule.nth},
             {QStringLiteral("times"), rule.times}});
}

void ReferenceService::clearFaults()
{
    d->call("clearFaults");
}
