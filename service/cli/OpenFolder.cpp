#include <service/cli/OpenFolder.h>

#include <service/cli/Output.h>

namespace service {

OpenFolder::OpenFolder(const QString &path, Missing missing)
    : folder(path), database(folder), store(folder, 0)
{
    if (!folder.hasRecords() && missing == Missing::Refuse) {
        throw std::runtime_error(
            QStringLiteral("%1 is no data folder of the service.").arg(path).toStdString());
    }
    folder.make();
    QString error;
    m_lock = FolderLock::take(folder, FolderLock::Holder::Command, &error);
    if (m_lock)
        database.open();
    else if (FolderLock::isTaken(folder))
        database.openBesideService();
    else
        throw std::runtime_error(error.toStdString());
}

QCommandLineOption dataOption()
{
    return {QStringLiteral("data"), QStringLiteral("The data folder of the service."),
            QStringLiteral("DIR")};
}

int withFolder(const QCommandLineParser &parser, OpenFolder::Missing missing,
               const std::function<int(OpenFolder &)> &command)
{
    const QString path = parser.value(QStringLiteral("data"));
    if (path.isEmpty())
        return fail(QStringLiteral("Say which data folder: --data DIR."), ExitUsage);
    try {
        OpenFolder folder(path, missing);
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
