#include <service/ReferenceService.h>
#include <service/cli/Commands.h>
#include <service/cli/OpenFolder.h>
#include <service/cli/Output.h>

#include <QElapsedTimer>

#include <csignal>
#include <pthread.h>
#include <sys/resource.h>

namespace service {

namespace {

void addOptions(QCommandLineParser &parser)
{
    parser.setApplicationDescription(
        QStringLiteral(
            "The document service: both REST interfaces on a data folder.\n\n"
            "Other commands: user, project, role, share, check, sweep, backup, restore, copy, "
            "accept; "
            "each has --help.\n\n")
        + FaultRule::syntax());
    parser.addOptions(dataOptions());
    parser.addOptions({
        {QStringLiteral("listen"),
         QStringLiteral("The address to listen on (127.0.0.1:0; port 0: any free port)."),
         QStringLiteral("ADDRESS:PORT"), QStringLiteral("127.0.0.1:0")},
        {QStringLiteral("fault"), QStringLiteral("Simulate a fault; see above. May be repeated."),
         QStringLiteral("SPEC")},
        {QStringLiteral("access-log"),
         QStringLiteral("One line for each request; - for stderr. Reopened on SIGHUP."),
         QStringLiteral("FILE")},
        {QStringLiteral("database-connections"),
         QStringLiteral("The maximum number of connections to PostgreSQL (20)."),
         QStringLiteral("N"), QStringLiteral("20")},
        {QStringLiteral("trusted-proxy"),
         QStringLiteral("A proxy that tells who the client is, in Forwarded or X-Forwarded-For, "
                        "-Proto, -Host and -Prefix. May be repeated."),
         QStringLiteral("ADDRESS[/BITS]")},
        {QStringLiteral("path-prefix"),
         QStringLiteral("Serve everything below this path, for example /documents."),
         QStringLiteral("PATH")},
        {QStringLiteral("drain"),
         QStringLiteral("How long it goes on serving after SIGTERM, while /health/ready says 503 "
                        "(0)."),
         QStringLiteral("SECONDS"), QStringLiteral("0")},
        {QStringLiteral("metrics-token"),
         QStringLiteral("Lets other machines read /metrics with this token; "
                        "VELL_SERVICE_METRICS_TOKEN does the same and keeps it from others."),
         QStringLiteral("TOKEN")},
        {QStringLiteral("quota"),
         QStringLiteral("The maximum size of all contents in bytes (0: no limit)."),
         QStringLiteral("BYTES"), QStringLiteral("0")},
    });
}

//! Each connection needs a file descriptor.
void allowManyFiles()
{
    rlimit limit = {};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return;
    limit.rlim_cur = limit.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &limit);
}

//! Returns after \a seconds, or when a signal other than SIGHUP arrives.
void drain(ReferenceService &service, const sigset_t &signals, int seconds)
{
    service.drain();
    QElapsedTimer clock;
    clock.start();
    for (;;) {
        const qint64 left = seconds * qint64(1000) - clock.elapsed();
        if (left <= 0)
            return;
        const timespec time{left / 1000, (left % 1000) * 1000000};
        const int received = sigtimedwait(&signals, nullptr, &time);
        if (received == SIGTERM || received == SIGINT)
            return;
    }
}

int serve(ReferenceService &service, int drainSeconds)
{
    allowManyFiles();
    // Blocked before any thread starts, so that only sigwait() gets them.
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGHUP);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);

    QString error;
    if (!service.start(&error))
        return fail(error);
    printLine(QStringLiteral("vell-service listens on %1").arg(service.baseApi()));
    int received = SIGHUP;
    while (received == SIGHUP) {
        sigwait(&signals, &received);
        if (received == SIGHUP && !service.reopenAccessLog(&error))
            fail(error);
    }
    if (drainSeconds > 0)
        drain(service, signals, drainSeconds);
    service.stop();
    return 0;
}

//! A number of at least 0. \return false for another text
template <typename Number>
bool readNumber(const QCommandLineParser &parser, const char *option, Number *number)
{
    bool isNumber = false;
    const qint64 value = parser.value(QLatin1String(option)).toLongLong(&isNumber);
    *number = static_cast<Number>(value);
    return isNumber && value >= 0 && static_cast<qint64>(*number) == value;
}

//! \return what is wrong; empty if nothing is
QString readOptions(const QCommandLineParser &parser, ServiceOptions *options, int *drainSeconds)
{
    options->dataDir = parser.value(QStringLiteral("data"));
    options->database = databaseAddress(parser);
    options->accessLog = parser.value(QStringLiteral("access-log"));
    options->metricsToken = parser.isSet(QStringLiteral("metrics-token"))
        ? parser.value(QStringLiteral("metrics-token"))
        : qEnvironmentVariable("VELL_SERVICE_METRICS_TOKEN");
    if (options->dataDir.isEmpty())
        return QStringLiteral("Say which data folder: --data DIR.");
    if (!options->setListen(parser.value(QStringLiteral("listen"))))
        return QStringLiteral("--listen takes ADDRESS:PORT.");
    const QStringList proxies = parser.values(QStringLiteral("trusted-proxy"));
    for (const QString &proxy : proxies) {
        if (!options->addTrustedProxy(proxy))
            return QStringLiteral("--trusted-proxy takes ADDRESS or ADDRESS/BITS.");
    }
    if (!options->setPathPrefix(parser.value(QStringLiteral("path-prefix"))))
        return QStringLiteral("--path-prefix takes a path such as /documents.");
    if (!readNumber(parser, "quota", &options->storeQuotaBytes))
        return QStringLiteral("--quota takes a number of bytes.");
    if (!readNumber(parser, "database-connections", &options->databaseConnections)
        || options->databaseConnections == 0)
        return QStringLiteral("--database-connections takes a number above 0.");
    if (!readNumber(parser, "drain", drainSeconds))
        return QStringLiteral("--drain takes a number of seconds.");
    return {};
}

} // namespace

int runServe(const QStringList &arguments)
{
    QCommandLineParser parser;
    addOptions(parser);
    int code = 0;
    if (!parseArguments(parser, arguments, &code))
        return code;
    if (!parser.positionalArguments().isEmpty()) {
        return fail(QStringLiteral("There is no command \"%1\"; see --help.")
                        .arg(parser.positionalArguments().constFirst()),
                    ExitUsage);
    }
    ServiceOptions options;
    int drainSeconds = 0;
    const QString problem = readOptions(parser, &options, &drainSeconds);
    if (!problem.isEmpty())
        return fail(problem, ExitUsage);

    ReferenceService service(options);
    const QStringList faults = parser.values(QStringLiteral("fault"));
    for (const QString &fault : faults) {
        FaultRule rule;
        QString error;
        if (!FaultRule::parse(fault, &rule, &error))
            return fail(error, ExitUsage);
        service.addFault(rule);
    }
    return serve(service, drainSeconds);
}

} // namespace service
