#include <service/ReferenceService.h>

#include <service/api/Dispatcher.h>
#include <service/api/ServiceContext.h>
#include <service/http/AccessLog.h>
#include <service/http/HttpServer.h>
#include <service/records/Users.h>
#include <service/storage/DataFolder.h>

#include <arpa/inet.h>

using namespace service;

namespace {

bool isLoopback(const QString &address)
{
    const QByteArray text = address.toLatin1();
    in_addr v4 = {};
    if (inet_pton(AF_INET, text.constData(), &v4) == 1)
        return ntohl(v4.s_addr) >> 24 == 127;
    in6_addr v6 = {};
    if (inet_pton(AF_INET6, text.constData(), &v6) == 1)
        return IN6_IS_ADDR_LOOPBACK(&v6);
    return text == "localhost";
}

} // namespace

class ReferenceService::Private
{
public:
    explicit Private(const ServiceOptions &serviceOptions)
        : options(serviceOptions), context(serviceOptions), dispatcher(context)
    {}

    bool openData(QString *error);
    bool mayListen(QString *error);
    bool serve(QString *error);
    void close();

    //! Runs a change and turns what it throws into the sentence.
    template <typename Change>
    bool administer(Change change, QString *error);

    const ServiceOptions options;
    ServiceContext context;
    Dispatcher dispatcher;
    AccessLog log;
    std::unique_ptr<FolderLock> lock;
    std::unique_ptr<HttpServer> server;
};

bool ReferenceService::Private::openData(QString *error)
{
    lock = FolderLock::take(options.dataDir, error);
    if (!lock)
        return false;
    try {
        context.database.open();
        context.contents.open();
    } catch (const std::exception &failure) {
        *error = QStringLiteral("The data folder %1 cannot be used: %2.")
                     .arg(options.dataDir, QString::fromUtf8(failure.what()));
        return false;
    }
    return log.open(options.accessLog, error);
}

bool ReferenceService::Private::mayListen(QString *error)
{
    if (isLoopback(options.listenAddress) || Users(context.database).haveTokens())
        return true;
    *error = QStringLiteral("Without users everybody may do everything, so the service listens on "
                            "loopback addresses only, not on %1; add a user first.")
                 .arg(options.listenAddress);
    return false;
}

bool ReferenceService::Private::serve(QString *error)
{
    context.isStopping = false;
    server = std::make_unique<HttpServer>(
        HttpServer::Settings{options.listenAddress, options.port, options.maxBodyBytes},
        [this](HttpRequest &request, ReplyControl &reply, ServedRequest &served) {
            return dispatcher.handle(request, reply, served);
        },
        [this](const ServedRequest &request) { log.write(request); });
    return server->start(error);
}

void ReferenceService::Private::close()
{
    context.isStopping = true;
    server.reset();
    log.close();
    lock.reset();
}

template <typename Change>
bool ReferenceService::Private::administer(Change change, QString *error)
{
    QString sentence;
    try {
        change();
        return true;
    } catch (const std::exception &failure) {
        sentence = QString::fromUtf8(failure.what());
    }
    if (error != nullptr)
        *error = sentence;
    return false;
}

ReferenceService::ReferenceService(const ServiceOptions &options)
    : d(std::make_unique<Private>(options))
{}

ReferenceService::~ReferenceService()
{
    stop();
}

bool ReferenceService::start(QString *error)
{
    if (d->server)
        return true;
    if (d->openData(error) && d->mayListen(error) && d->serve(error))
        return true;
    d->close();
    return false;
}

void ReferenceService::stop()
{
    if (d->server)
        d->close();
}

quint16 ReferenceService::port() const
{
    return d->server ? d->server->port() : quint16(0);
}

QString ReferenceService::baseApi() const
{
    if (!d->server)
        return {};
    const bool isV6 = d->options.listenAddress.contains(QLatin1Char(':'));
    const QString host =
        isV6 ? QStringLiteral("[%1]").arg(d->options.listenAddress) : d->options.listenAddress;
    return QStringLiteral("http://%1:%2/").arg(host).arg(port());
}

QString ReferenceService::addUser(const QString &name, QString *error)
{
    QString token;
    d->administer([&] { token = Users(d->context.database).add(name); }, error);
    return token;
}

bool ReferenceService::addProject(const QString &id, const QString &name, QString *error)
{
    return d->administer([&] { Users(d->context.database).addProject(id, name); }, error);
}

bool ReferenceService::setRole(const QString &project, const QString &user, const QString &role,
                               QString *error)
{
    return d->administer([&] { Users(d->context.database).setRole(project, user, role); }, error);
}

void ReferenceService::addFault(const FaultRule &rule)
{
    d->context.faults.add(rule);
}

void ReferenceService::clearFaults()
{
    d->context.faults.clear();
}
