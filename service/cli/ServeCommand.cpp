#include <service/ReferenceService.h>
#include <service/cli/Commands.h>
#include <service/cli/Output.h>

#include <QCoreApplication>

#include <csignal>
#include <pthread.h>
#include <thread>

namespace service {

namespace {

//! "127.0.0.1:8080", "[::1]:8080"; a port of 0 is any free one.
bool parseAddress(const QString &text, ServiceOptions *options)
{
    const int colon = text.lastIndexOf(QLatin1Char(':'));
    bool isNumber = false;
    const uint port = text.mid(colon + 1).toUInt(&isNumber);
    if (colon <= 0 || !isNumber || port > 65535)
        return false;
    QString address = text.left(colon);
    if (address.startsWith(QLatin1Char('[')) && address.endsWith(QLatin1Char(']')))
        address = address.mid(1, address.size() - 2);
    options->listenAddress = address;
    options->port = static_cast<quint16>(port);
    return true;
}

void addOptions(QCommandLineParser &parser)
{
    parser.setApplicationDescription(
        QStringLiteral("The document service: both REST interfaces on a data folder.\n\n"
                       "Other commands: user, project, role, sweep; each has --help.\n\n")
        + FaultRule::syntax());
    parser.addOptions({
        {QStringLiteral("data"), QStringLiteral("The data folder; made when it is missing."),
         QStringLiteral("DIR")},
        {QStringLiteral("listen"),
         QStringLiteral("Where to listen (127.0.0.1:0; port 0: any free one)."),
         QStringLiteral("ADDRESS:PORT"), QStringLiteral("127.0.0.1:0")},
        {QStringLiteral("fault"), QStringLiteral("Misbehave as told; see above. May be repeated."),
         QStringLiteral("SPEC")},
        {QStringLiteral("access-log"), QStringLiteral("One line for each request; - for stderr."),
         QStringLiteral("FILE")},
        {QStringLiteral("quota"),
         QStringLiteral("How many bytes the contents may take (0: no limit)."),
         QStringLiteral("BYTES"), QStringLiteral("0")},
    });
}

int serve(ReferenceService &service)
{
    // Blocked before any thread starts, so that none but this one takes them.
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);

    QString error;
    if (!service.start(&error))
        return fail(error);
    printLine(QStringLiteral("vell-service listens on %1").arg(service.baseApi()));
    int received = 0;
    sigwait(&signals, &received);
    service.stop();
    return 0;
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
    options.dataDir = parser.value(QStringLiteral("data"));
    options.accessLog = parser.value(QStringLiteral("access-log"));
    if (options.dataDir.isEmpty())
        return fail(QStringLiteral("Say which data folder: --data DIR."), ExitUsage);
    if (!parseAddress(parser.value(QStringLiteral("listen")), &options))
        return fail(QStringLiteral("--listen takes ADDRESS:PORT."), ExitUsage);
    bool isNumber = false;
    options.storeQuotaBytes = parser.value(QStringLiteral("quota")).toLongLong(&isNumber);
    if (!isNumber || options.storeQuotaBytes < 0)
        return fail(QStringLiteral("--quota takes a number of bytes."), ExitUsage);

    ReferenceService service(options);
    const QStringList faults = parser.values(QStringLiteral("fault"));
    for (const QString &fault : faults) {
        FaultRule rule;
        QString error;
        if (!FaultRule::parse(fault, &rule, &error))
            return fail(error, ExitUsage);
        service.addFault(rule);
    }
    return serve(service);
}

} // namespace service
