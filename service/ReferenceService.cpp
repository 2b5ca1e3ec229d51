#include <service/ReferenceService.h>

#include <service/api/Dispatcher.h>
#include <service/api/ServiceContext.h>
#include <service/http/AccessLog.h>
#include <service/http/HttpServer.h>
#include <service/http/Loopback.h>
#include <service/records/Projects.h>
#include <service/records/Users.h>
#include <service/storage/FolderLock.h>
#include <service/storage/Generation.h>
#include <service/storage/StoredBytes.h>

#include <QRegularExpression>

using namespace service;

bool ServiceOptions::setListen(const QString &text)
{
    constexpr uint LargestPort = 65535;
    const int colon = text.lastIndexOf(QLatin1Char(':'));
    bool isNumber = false;
    const uint number = text.mid(colon + 1).toUInt(&isNumber);
    if (colon <= 0 || !isNumber || number > LargestPort)
        return false;
    listenAddress = text.left(colon);
    if (listenAddress.startsWith(QLatin1Char('[')) && listenAddress.endsWith(QLatin1Char(']')))
        listenAddress = listenAddress.mid(1, listenAddress.size() - 2);
    port = static_cast<quint16>(number);
    return true;
}

bool ServiceOptions::addTrustedProxy(const QString &text)
{
    if (!TrustedProxies().add(text))
        return false;
    trustedProxies.append(text);
    return true;
}

bool ServiceOptions::setPathPrefix(const QString &text)
{
    static const QRegularExpression path(QStringLiteral("\\A((/[A-Za-z0-9._~-]+)*)/?\\z"));
    const QRegularExpressionMatch match = path.match(text);
    pathPrefix = match.captured(1);
    return match.hasMatch();
}

class ReferenceService::Private
{
public:
    explicit Private(const ServiceOptions &serviceOptions)
        : options(serviceOptions),
          context(serviceOptions.dataDir, serviceOptions.database, serviceOptions.storeQuotaBytes,
                  serviceOptions.busyTimeoutMs, serviceOptions.databaseConnections),
          dispatcher(context)
    {}

    bool openData(QString *error);
    static void raise(Generation &generation);
    bool mayListen(QString *error);
    bool serve(QString *error);
    void close();

    //! Runs a change, and sets the error to the message of an exception.
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
    const DatabaseUse use(context.database);
    try {
        context.folder.make();
        const bool isShared = context.database.dialect().isShared();
        lock = FolderLock::take(
            context.folder, isShared ? FolderLock::Holder::OneOfMany : FolderLock::Holder::Service,
            error);
        if (!lock)
            return false;
        context.database.open();
        if (isShared)
            context.contents.openShared([this] { return storedBytes(context.database); });
        else
            context.contents.open();
        Generation generation(context.database, context.folder);
        if (!generation.fits()) {
            *error =
                QStringLiteral("The database in %1 is older than the contents in the folder; "
                               "restore the newest records.sqlite, or continue without what is "
                               "missing with \"vell-service accept --data %1\".")
                    .arg(options.dataDir);
            return false;
        }
        raise(generation);
    } catch (const std::exception &failure) {
        *error = QStringLiteral("The data folder %1 cannot be used: %2.")
                     .arg(options.dataDir, QString::fromUtf8(failure.what()));
        return false;
    }
    return log.open(options.accessLog, error);
}

//! Downloads must be possible when the disk is full.
void ReferenceService::Private::raise(Generation &generation)
{
    try {
        generation.raise();
    } catch (const std::exception &failure) {
        qWarning("vell-service: %s", failure.what());
    }
}

bool ReferenceService::Private::mayListen(QString *error)
{
    if (isLoopback(options.listenAddress) || Users(context.database).isTokenNeeded())
        return true;
    *error = QStringLiteral("Without users everybody may do everything, so the service listens on "
                            "loopback addresses only, not on %1; add a user first.")
                 .arg(options.listenAddress);
    return false;
}

bool ReferenceService::Private::serve(QString *error)
{
    HttpServer::Settings settings;
    settings.address = options.listenAddress;
    settings.port = options.port;
    settings.temporaryFolder = context.contents.temporaryPath();
    settings.limits.maxBodyBytes = options.maxBodyBytes;
    for (const QString &proxy : options.trustedProxies)
        settings.proxies.add(proxy);
    settings.handler = [this](HttpRequest &request) { return dispatcher.handlerFor(request); };
    settings.loggedPath = &Dispatcher::loggedPath;
    settings.logger = [this](const ServedRequest &request) {
        context.metrics.count(request);
        log.write(request);
    };
    server = std::make_unique<HttpServer>(std::move(settings));
    context.pathPrefix = options.pathPrefix;
    context.metricsToken = options.metricsToken;
    context.isDraining = false;
    context.openConnections = [this] { return server->connectionCount(); };
    return server->start(error);
}

void ReferenceService::Private::close()
{
    server.reset();
    context.openConnections = {};
    log.close();
    context.contents.close();
    context.database.close();
    lock.reset();
}

template <typename Change>
bool ReferenceService::Private::administer(Change change, QString *error)
{
    QString sentence;
    const DatabaseUse use(context.database);
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

bool ReferenceService::isInUse(const QString &dataDir)
{
    return FolderLock::isTaken(DataFolder(dataDir));
}

bool ReferenceService::start(QString *error)
{
    if (d->server)
        return true;
    if (d->options.dataDir.isEmpty()) {
        *error = QStringLiteral("No data folder was given.");
        return false;
    }
    if (d->openData(error) && d->mayListen(error) && d->serve(error))
        return true;
    d->close();
    return false;
}

void ReferenceService::drain()
{
    if (!d->server)
        return;
    d->context.isDraining = true;
    d->server->drain();
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
    return QStringLiteral("http://%1:%2%3/").arg(host).arg(port()).arg(d->options.pathPrefix);
}

QString ReferenceService::addUser(const QString &name, QString *error)
{
    QString token;
    d->administer([&] { token = Users(d->context.database).add(name); }, error);
    return token;
}

bool ReferenceService::removeUser(const QString &name, QString *error)
{
    return d->administer(
        [&] {
            Users users(d->context.database);
            users.remove(users.require(name));
        },
        error);
}

bool ReferenceService::addProject(const QString &id, const QString &name, QString *error)
{
    return d->administer([&] { Projects(d->context.database).add(id, name); }, error);
}

bool ReferenceService::setRole(const QString &project, const QString &user, const QString &role,
                               QString *error)
{
    return d->administer(
        [&] {
            const User member = Users(d->context.database).require(user);
            Projects(d->context.database).setRole(project, member, role);
        },
        error);
}

bool ReferenceService::reopenAccessLog(QString *error)
{
    return d->log.reopen(error);
}

void ReferenceService::addFault(const FaultRule &rule)
{
    d->context.faults.add(rule);
}

void ReferenceService::clearFaults()
{
    d->context.faults.clear();
}
