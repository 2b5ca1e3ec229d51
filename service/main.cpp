#include <service/cli/Commands.h>

#include <QCoreApplication>
#include <QMap>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("vell-service"));

    using Command = int (*)(const QStringList &);
    const QMap<QString, Command> commands{
        {QStringLiteral("user"), service::runUser},
        {QStringLiteral("project"), service::runProject},
        {QStringLiteral("role"), service::runRole},
        {QStringLiteral("sweep"), service::runSweep},
    };
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    const Command command = commands.value(arguments.value(0), nullptr);
    return command != nullptr ? command(arguments.mid(1)) : service::runServe(arguments);
}
