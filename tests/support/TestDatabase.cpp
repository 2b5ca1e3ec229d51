#include "TestDatabase.h"

#include <QCryptographicHash>
#include <QDir>
#include <QProcess>
#include <QUrl>

namespace {

QString server()
{
    return qEnvironmentVariable("VELL_TEST_POSTGRES");
}

QString ask(const QString &address, const QString &statement, bool *isDone)
{
    QProcess psql;
    psql.start(QStringLiteral("psql"),
               {QStringLiteral("--no-psqlrc"), QStringLiteral("-qAt"), QStringLiteral("-v"),
                QStringLiteral("ON_ERROR_STOP=1"), QStringLiteral("-c"), statement, address});
    *isDone = psql.waitForFinished() && psql.exitCode() == 0;
    if (!*isDone)
        qWarning("psql: %s", psql.readAllStandardError().constData());
    return QString::fromUtf8(psql.readAllStandardOutput()).section(QLatin1Char('\n'), 0, 0);
}

} // namespace

bool TestDatabase::isPostgres()
{
    return !server().isEmpty();
}

QString TestDatabase::addressFor(const QString &dataDir)
{
    if (!isPostgres())
        return {};
    const QByteArray folder = QDir::cleanPath(QDir(dataDir).absolutePath()).toUtf8();
    const QString name = QLatin1String("t")
        + QString::fromLatin1(QCryptographicHash::hash(folder, QCryptographicHash::Md5).toHex());
    bool isDone = false;
    const QString found = ask(
        server(), QStringLiteral("SELECT 1 FROM pg_database WHERE datname = '%1'").arg(name), &isDone);
    if (found.isEmpty())
        ask(server(), QStringLiteral("CREATE DATABASE %1").arg(name), &isDone);
    QUrl address(server());
    address.setPath(QLatin1Char('/') + name);
    return address.toString();
}

QString TestDatabase::run(const QString &dataDir, const QString &statement, bool *isDone)
{
    return ask(addressFor(dataDir), statement, isDone);
}
