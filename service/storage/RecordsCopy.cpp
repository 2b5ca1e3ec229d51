#include <service/storage/RecordsCopy.h>

#include <service/storage/Statement.h>

#include <QCryptographicHash>

#include <array>

namespace service {

namespace {

struct Table
{
    const char *name;
    const char *key; //!< what its rows are ordered by
};

//! Each after those that it refers to.
constexpr std::array<Table, 13> Tables{{
    {"\"user\"", "id"},
    {"project", "id"},
    {"member", "project_id, user_id"},
    {"file", "id"},
    {"file_uploader", "file_id, user_id"},
    {"large_file", "id"},
    {"document", "id"},
    {"version", "id"},
    {"mark", "user_id, type, document_id"},
    {"download", "document_id, user_id"},
    {"link", "document_id, kind, entity_id"},
    {"share", "id"},
    {"share_document", "share_id, document_id"},
}};

[[noreturn]] void refuse(const QString &sentence)
{
    throw std::runtime_error(sentence.toStdString());
}

QStringList columnsOf(Database &database, const QString &table)
{
    const Statement nothing(database, QStringLiteral("SELECT * FROM %1 LIMIT 0").arg(table));
    return nothing.columns();
}

void addTo(QCryptographicHash &hash, const QVariantList &values)
{
    for (const QVariant &value : values) {
        const QByteArray bytes =
            value.type() == QVariant::ByteArray ? value.toByteArray() : value.toString().toUtf8();
        // SQLite's NULL has the type of its column.
        hash.addData(value.isNull() ? QByteArrayLiteral("-") : QByteArray::number(bytes.size()));
        hash.addData(":", 1);
        hash.addData(bytes);
    }
}

QVariantList rowOf(const Statement &row, int columns)
{
    QVariantList values;
    for (int i = 0; i < columns; ++i)
        values.append(row.isNull(i) ? QVariant() : row.value(i));
    return values;
}

QByteArray digestOf(Database &database, const QString &select, int columns)
{
    QCryptographicHash hash(QCryptographicHash::Md5);
    Statement row(database, select);
    while (row.next())
        addTo(hash, rowOf(row, columns));
    return hash.result();
}

} // namespace

RecordsCopy::RecordsCopy(Database &source, Database &target) : m_source(source), m_target(target) {}

QStringList RecordsCopy::run()
{
    Transaction transaction(m_target);
    requireEmptyTarget();
    execute(m_target, QStringLiteral("DELETE FROM \"user\"")); // the built-in user is copied, too
    QStringList lines;
    for (const Table &table : Tables) {
        const QString name = QLatin1String(table.name);
        const qint64 rows = copyTable(name, QLatin1String(table.key));
        lines.append(
            QStringLiteral("%1: %2 rows").arg(QString(name).remove(QLatin1Char('"'))).arg(rows));
    }
    // The contents belong to this database from now on.
    Statement stamp(m_source, QStringLiteral("SELECT id, generation FROM store"));
    stamp.next();
    execute(m_target, QStringLiteral("UPDATE store SET id = ?, generation = ?"),
            {stamp.value(0), stamp.value(1)});
    transaction.commit();
    return lines;
}

void RecordsCopy::requireEmptyTarget()
{
    for (const char *table : {"document", "file", "project", "large_file"}) {
        if (Statement(m_target,
                      QStringLiteral("SELECT 1 FROM %1 LIMIT 1").arg(QLatin1String(table)))
                .next())
            refuse(QStringLiteral("%1 has records already; copy into an empty database.")
                       .arg(m_target.dialect().name()));
    }
    if (Statement(m_target, QStringLiteral("SELECT 1 FROM \"user\" WHERE id <> 'local'")).next())
        refuse(QStringLiteral("%1 has users already; copy into an empty database.")
                   .arg(m_target.dialect().name()));
}

qint64 RecordsCopy::copyTable(const QString &table, const QString &key)
{
    const QStringList columns = columnsOf(m_source, table);
    const QString select = QStringLiteral("SELECT %1 FROM %2 ORDER BY %3")
                               .arg(columns.join(QStringLiteral(", ")), table, key);
    const QString insert =
        QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
            .arg(table, columns.join(QStringLiteral(", ")), placeholders(columns.size()));
    QCryptographicHash hash(QCryptographicHash::Md5);
    qint64 rows = 0;
    Statement row(m_source, select);
    while (row.next()) {
        const QVariantList values = rowOf(row, columns.size());
        addTo(hash, values);
        execute(m_target, insert, values);
        ++rows;
    }
    Statement count(m_target, QStringLiteral("SELECT count(*) FROM %1").arg(table));
    count.next();
    if (count.number(0) != rows || digestOf(m_target, select, columns.size()) != hash.result())
        refuse(QStringLiteral("The table %1 was not copied as it is; nothing was changed.")
                   .arg(table));
    return rows;
}

} // namespace service
