#include <service/cli/OpenFolder.h>

#include <service/cli/Output.h>

namespace service {

OpenFolder::OpenFolder(const QString &path, const QString &databaseAddress, Missing missing)
    : folder(path), database(folder, databaseAddress), store(folder, 0)
{
    const bool isShared = database.dialect().isShared();
    if (!isShared && !folder.hasRecords() && missing == Missing::Refuse) {
        throw std::runtime_error(
            QStringLiteral("%1 is no data folder of the service.").arg(path).toStdString());
    }
    folder.make();
    QString error;
    m_lock = FolderLock::take(
        folder, isShared ? FolderLock::Holder::OneOfMany : FolderLock::Holder::Command, &error);
    if (m_lock)
        database.open();
    else if (!isShared && FolderLock::isTaken(folder))
        database.openBesideService();
    else
        throw std::runtime_error(error.toStdString());
}

QList<QCommandLineOption> dataOptions()
{
    return {
        {QStringLiteral("data"), QStringLiteral("The data folder of the service."),
         QStringLiteral("DIR")},
        {QStringLiteral("database"),
         QStringLiteral("postgresql://USER@HOST:PORT/NAME for records in PostgreSQL; "
                        "VELL_SERVICE_DATABASE does the same and keeps a password from others."),
         QStringLiteral("ADDRESS")}};
}

QString databaseAddress(const QCommandLineParser &parser)
{
    return parser.isSet(QStringLiteral("database")) ? parser.value(QStringLiteral("database"))
                                                    : qEnvironmentVariable("VELL_SERVICE_DATABASE");
}

int withFolder(const QCommandLineParser &parser, OpenFolder::Missing missing,
               const std::function<int(OpenFolder &)> &command)
{
    const QString path = parser.value(QStringLiteral("data"));
    if (path.isEmpty())
        return fail(QStringLiteral("Say which data folder: --data DIR."), ExitUsage);
    try {
        OpenFolder folder(path, databaseAddress(parser), missing);
        return command(folder);
    } catch (const std::exception &error) {
        return fail(QString::fromUtf8(error.what()));
    }
}

int wrongUse(const QString &usage)
{
    return fail(QStringLiteral("The command is: vell-service %1").arg(usage), ExitUsage);
}

} // namespace service
