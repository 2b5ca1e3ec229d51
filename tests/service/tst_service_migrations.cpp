#include <service/ServiceFixture.h>

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QtTest>

//! The schema and how a database file gets it.
class TestServiceMigrations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewFolderGetsTheWholeSchema();
    void aFileOfANewerVersionIsRefused();
    void aFileThatIsNoDatabaseIsRefused();
    void aBrokenMigrationLeavesNothing();

private:
    //! Runs statements on the records of a stopped service; the first value of the last one's result.
    static QVariant run(const QString &file, const QStringList &statements)
    {
        QVariant result;
        {
            QSqlDatabase database =
                QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("test"));
            database.setDatabaseName(file);
            if (!database.open())
                return result;
            QSqlQuery query(database);
            for (const QString &statement : statements) {
                if (!query.exec(statement))
                    qWarning("%s", qUtf8Printable(query.lastError().text()));
            }
            if (query.next())
                result = query.value(0);
        }
        QSqlDatabase::removeDatabase(QStringLiteral("test"));
        return result;
    }
    static bool startOn(const QString &folder, QString *error)
    {
        ServiceOptions options;
        options.dataDir = folder;
        ReferenceService service(options);
        return service.start(error);
    }
};

void TestServiceMigrations::aNewFolderGetsTheWholeSchema()
{
    QTemporaryDir folder;
    QString error;
    QVERIFY2(startOn(folder.path(), &error), qUtf8Printable(error));
    const QString file = folder.filePath(QStringLiteral("records.sqlite"));
    QCOMPARE(run(file, {QStringLiteral("PRAGMA user_version")}).toInt(), 1);
    QCOMPARE(run(file, {QStringLiteral("PRAGMA journal_mode")}).toString(), QStringLiteral("wal"));
    QCOMPARE(run(file, {QStringLiteral("SELECT name FROM user")}).toString(),
             QStringLiteral("local"));
    QVERIFY2(startOn(folder.path(), &error), qUtf8Printable(error));
}

void TestServiceMigrations::aFileOfANewerVersionIsRefused()
{
    QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("records.sqlite"));
    run(file, {QStringLiteral("PRAGMA user_version = 99")});
    QString error;
    QVERIFY(!startOn(folder.path(), &error));
    QVERIFY2(error.contains(QStringLiteral("newer version")), qUtf8Printable(error));
    QCOMPARE(run(file, {QStringLiteral("PRAGMA user_version")}).toInt(), 99);
}

void TestServiceMigrations::aFileThatIsNoDatabaseIsRefused()
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("records.sqlite")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(10000, 'x'));
    file.close();
    QString error;
    QVERIFY(!startOn(folder.path(), &error));
    QVERIFY2(error.contains(QStringLiteral("cannot be used")), qUtf8Printable(error));
}

void TestServiceMigrations::aBrokenMigrationLeavesNothing()
{
    QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("records.sqlite"));
    // A table that the first migration makes late is in its way.
    run(file, {QStringLiteral("CREATE TABLE share_document (x)")});
    QString error;
    QVERIFY(!startOn(folder.path(), &error));
    QCOMPARE(run(file, {QStringLiteral("PRAGMA user_version")}).toInt(), 0);
    QCOMPARE(run(file, {QStringLiteral("SELECT count(*) FROM sqlite_master")}).toInt(), 1);
    run(file, {QStringLiteral("DROP TABLE share_document")});
    QVERIFY2(startOn(folder.path(), &error), qUtf8Printable(error));
}

QTEST_GUILESS_MAIN(TestServiceMigrations)
#include "tst_service_migrations.moc"
