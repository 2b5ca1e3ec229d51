#include <service/storage/dialect/MigrationScript.h>

#include <service/storage/DatabaseError.h>

#include <QFile>

// A static library's resources are not registered by themselves; the macro needs the global scope.
static void initMigrations()
{
    Q_INIT_RESOURCE(migrations);
}

namespace service {

QByteArray migrationScript(const QString &kind, int version)
{
    initMigrations();
    QFile script(
        QStringLiteral(":/vell-service/%1/%2.sql").arg(kind).arg(version, 3, 10, QLatin1Char('0')));
    if (!script.open(QIODevice::ReadOnly))
        throw DatabaseError(QStringLiteral("migration %1 is missing").arg(script.fileName()));
    return script.readAll();
}

} // namespace service
