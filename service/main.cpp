#include <service/cli/Commands.h>

#include <QCoreApplication>
#include <QMap>

#include <csignal>
#include <sys/stat.h>

int main(int argc, char *argv[])
{
    // All files that a command creates, including the log, are readable by their owner only.
    umask(S_IRWXG | S_IRWXO);
    // If a file may not grow further, the request is refused instead of ending the program.
    std::signal(SIGXFSZ, SIG_IGN);
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("vell-service"));

    using Command = int (*)(const QStringList &);
    const QMap<QString, Command> commands{
        {QStringLiteral("user"), service::runUser},
        {QStringLiteral("project"), service::runProject},
        {QStringLiteral("role"), service::runRole},
        {QStringLiteral("share"), service::runShare},
        {QStringLiteral("sweep"), service::runSweep},
        {QStringLiteral("check"), service::runCheck},
        {QStringLiteral("backup"), service::runBackup},
        {QStringLiteral("restore"), service::runRestore},
        {QStringLiteral("copy"), service::runCopy},
        {QStringLiteral("accept"), service::runAccept},
    };
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    const Command command = commands.value(arguments.value(0), nullptr);
    return command != nullptr ? command(arguments.mid(1)) : service::runServe(arguments);
}
