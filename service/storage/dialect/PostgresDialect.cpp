#include <service/storage/dialect/PostgresDialect.h>

#include <service/storage/Statement.h>
#include <service/storage/dialect/MigrationScript.h>

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QUrlQuery>

namespace service {

namespace {

using Kind = DatabaseError::Kind;

constexpr int ConnectTimeoutS = 5;
constexpr int LongestStatementMs = 10000;
constexpr qint64 ChangeLock = 0x76656c6c; // an advisory lock

Kind kindOf(const QString &state)
{
    static const QHash<QString, Kind> kinds{
        {QStringLiteral("53100"), Kind::Full},
        {QStringLiteral("25006"), Kind::ReadOnly},
        {QStringLiteral("55P03"), Kind::Busy}, // lock_timeout
        {QStringLiteral("53300"), Kind::NoConnection},
        {QStringLiteral("40001"), Kind::Busy},
        {QStringLiteral("40P01"), Kind::Busy}, // a deadlock
        {QStringLiteral("XX001"), Kind::Damaged},
        {QStringLiteral("XX002"), Kind::Damaged},
        {QStringLiteral("2201B"), Kind::BadPattern},
        {QStringLiteral("57014"), Kind::Slow}, // statement_timeout
    };
    // 57P…: the server stops or starts. Without a state libpq itself has failed.
    if (state.isEmpty() || state.startsWith(QLatin1String("08"))
        || state.startsWith(QLatin1String("57P")))
        return Kind::Lost;
    return kinds.value(state, Kind::Other);
}

} // namespace

PostgresDialect::PostgresDialect(const QUrl &address, int busyTimeoutMs)
    : m_address(address), m_busyTimeoutMs(busyTimeoutMs)
{}

QString PostgresDialect::name() const
{
    return m_address.toString(QUrl::RemovePassword | QUrl::RemoveQuery);
}

void PostgresDialect::connect(const QString &connectionName) const
{
    const QStringList schemes{QStringLiteral("postgresql"), QStringLiteral("postgres")};
    if (!m_address.isValid() || !schemes.contains(m_address.scheme())
        || m_address.path().size() < 2) {
        throw DatabaseError(
            QStringLiteral("a database's address is postgresql://USER@HOST:PORT/NAME"));
    }
    QSqlDatabase connection = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), connectionName);
    if (!connection.isValid())
        throw DatabaseError(QStringLiteral("Qt's driver for PostgreSQL is not installed"));
    QStringList options{QStringLiteral("connect_timeout=%1").arg(ConnectTimeoutS),
                        QStringLiteral("application_name=vell-service")};
    QString host = m_address.host();
    const auto given = QUrlQuery(m_address).queryItems(QUrl::FullyDecoded);
    for (const auto &option : given) {
        if (option.first == QLatin1String("host"))
            host = option.second;
        else
            options.append(option.first + QLatin1Char('=') + option.second);
    }
    connection.setHostName(host);
    connection.setPort(m_address.port(-1));
    connection.setUserName(m_address.userName());
    connection.setPassword(m_address.password());
    connection.setDatabaseName(m_address.path().mid(1));
    connection.setConnectOptions(options.join(QLatin1Char(';')));
    if (!connection.open()) {
        throw DatabaseError(QStringLiteral("The database %1 cannot be opened: %2")
                                .arg(name(), connection.lastError().databaseText().trimmed()),
                            Kind::Lost);
    }
    QSqlQuery settings(connection);
    const bool isSet = settings.exec(
        QStringLiteral(
            "SET client_min_messages = warning; SET client_encoding = 'UTF8';"
            "SET synchronous_commit = on; SET statement_timeout = %1; SET lock_timeout = %2;"
            "SET idle_in_transaction_session_timeout = 60000")
            .arg(LongestStatementMs)
            .arg(m_busyTimeoutMs));
    if (!isSet)
        throw error(settings);
}

DatabaseError PostgresDialect::error(const QSqlQuery &query) const
{
    return DatabaseError(query.lastError().databaseText().trimmed(),
                         kindOf(query.lastError().nativeErrorCode()));
}

void PostgresDialect::begin(Database &database) const
{
    // Changes may take long: the bound is for searches.
    const QString statements = QStringLiteral("BEGIN; SET LOCAL statement_timeout = 0; "
                                              "SELECT pg_advisory_xact_lock(%1)")
                                   .arg(ChangeLock);
    try {
        executeDirectly(database, statements);
    } catch (const DatabaseError &error) {
        if (error.kind() == Kind::Lost && database.reconnect()) {
            executeDirectly(database, statements);
            return;
        }
        rollBack(database);
        throw;
    }
}

// These statements cannot be prepared.
void PostgresDialect::commit(Database &database) const
{
    executeDirectly(database, QStringLiteral("COMMIT"));
}

void PostgresDialect::rollBack(Database &database) const
{
    executeDirectly(database, QStringLiteral("ROLLBACK"));
}

QString PostgresDialect::clockQuery() const
{
    return QStringLiteral("SELECT (extract(epoch FROM clock_timestamp()) * 1000)::bigint");
}

int PostgresDialect::schema(Database &database) const
{
    {
        // Not to_regclass(), which does not see a table that another service has made while this one waited for its turn.
        Statement table(database,
                        QStringLiteral("SELECT NOT EXISTS (SELECT 1 FROM pg_class WHERE relname = "
                                       "'schema_version' AND pg_table_is_visible(oid))"));
        if (!table.next() || table.value(0).toBool())
            return 0;
    }
    Statement current(database, QStringLiteral("SELECT max(version) FROM schema_version"));
    current.next();
    return static_cast<int>(current.number(0));
}

void PostgresDialect::migrateTo(Database &database, int version) const
{
    Transaction transaction(database);
    if (schema(database) >= version)
        return;
    executeDirectly(database,
                    QString::fromUtf8(migrationScript(QStringLiteral("postgresql"), version)));
    execute(database, QStringLiteral("INSERT INTO schema_version (version) VALUES (?)"), {version});
    transaction.commit();
}

QString PostgresDialect::jsonOfPairs(const QString &first, const QString &second) const
{
    return QStringLiteral("json_agg(json_build_array(%1, %2))").arg(first, second);
}

QString PostgresDialect::matches(const QString &column) const
{
    return column + QStringLiteral(" ~ ?");
}

QVariantList PostgresDialect::patternValues(const QString &pattern, const QString &options) const
{
    // Of what a dot and the ends of lines mean PostgreSQL has the same four kinds, under other letters.
    const bool isMultiline = options.contains(QLatin1Char('m'));
    const bool hasWideDot = options.contains(QLatin1Char('s'));
    QString letters = isMultiline ? (hasWideDot ? QStringLiteral("w") : QStringLiteral("n"))
                                  : (hasWideDot ? QStringLiteral("s") : QStringLiteral("p"));
    for (const char letter : {'i', 'x'}) {
        if (options.contains(QLatin1Char(letter)))
            letters += QLatin1Char(letter);
    }
    return {QStringLiteral("(?%1)%2").arg(letters, pattern)};
}

} // namespace service
