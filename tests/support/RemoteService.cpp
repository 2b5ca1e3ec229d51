#include <service/ReferenceService.h>

#include <QHostAddress>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpSocket>

// For Windows, where the reference service does not run: the same class, implemented by the program service_host on the
// system that has started the tests. Each connection to it is a service.

namespace {

constexpr int TimeoutMs = 60'000;

} // namespace

class ReferenceService::Private
{
public:
    //! Calls a function of the service. \return its result
    QJsonObject call(const char *name, QJsonObject arguments = {});

    //! The same. On failure returns false and sets \a error to a sentence.
    bool isDone(const char *name, const QJsonObject &arguments, QString *error);

    QTcpSocket socket;
    QString baseApi;
    quint16 port = 0;
};

QJsonObject ReferenceService::Private::call(const char *name, QJsonObject arguments)
{
    arguments.insert("call", QLatin1String(name));
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
            {{"dataDir", options.dataDir},
             {"listenAddress", options.listenAddress},
             {"port", options.port},
             {"accessLog", options.accessLog},
             {"maxBodyBytes", options.maxBodyBytes},
             {"storeQuotaBytes", options.storeQuotaBytes}});
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
    const QJsonObject answer = d->call("addUser", {{"name", name}});
    if (error != nullptr)
        *error = answer.value(QLatin1String("error")).toString();
    return answer.value(QLatin1String("token")).toString();
}

bool ReferenceService::addProject(const QString &id, const QString &name, QString *error)
{
    return d->isDone("addProject", {{"id", id}, {"name", name}}, error);
}

bool ReferenceService::setRole(const QString &project, const QString &user, const QString &role,
                               QString *error)
{
    return d->isDone("setRole", {{"project", project}, {"user", user}, {"role", role}}, error);
}

void ReferenceService::addFault(const FaultRule &rule)
{
    d->call("addFault",
            {{"kind", static_cast<int>(rule.kind)},
             {"value", rule.value},
             {"verb", QString::fromLatin1(rule.verb)},
             {"pathPrefix", rule.pathPrefix},
             {"nth", rule.nth},
             {"times", rule.times}});
}

void ReferenceService::clearFaults()
{
    d->call("clearFaults");
}
