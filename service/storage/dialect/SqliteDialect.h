#pragma once

#include <service/storage/GroupSync.h>
#include <service/storage/dialect/SqlDialect.h>

namespace service {

//! \brief SQLite, in a file of the data folder that one service uses at a time.
//!
//! Readers never wait for writers (WAL); writers queue up. A commit is on the disk after waitForDisk(), which writes the log for all
//! threads that wait for it.
class SqliteDialect : public SqlDialect
{
public:
    SqliteDialect(const DataFolder &folder, int busyTimeoutMs);

    QString name() const override;
    bool isShared() const override { return false; }
    void connect(const QString &connectionName) const override;
    DatabaseError error(const QSqlQuery &query) const override;
    void begin(Database &database) const override;
    void commit(Database &database) const override;
    void rollBack(Database &database) const override;
    void waitForDisk(Database &database) const override;
    QString clockQuery() const override { return {}; }
    void requireSound(Database &database) const override;
    int schema(Database &database) const override;
    void copyBefore(Database &database, int version) const override;
    void migrateTo(Database &database, int version) const override;
    void finishOpening(Database &database) const override;
    int newestSchema() const override { return 3; }
    QString rowKey() const override { return QStringLiteral("rowid"); }
    QString jsonOfPairs(const QString &first, const QString &second) const override;
    QString matches(const QString &column) const override;
    QVariantList patternValues(const QString &pattern, const QString &options) const override;

private:
    const DataFolder &m_folder;
    const int m_busyTimeoutMs;
    mutable GroupSync m_log;
};

} // namespace service
