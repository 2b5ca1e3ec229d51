#include <velldoc/output/ResultRows.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>

namespace velldoc {

namespace {

//! The fields that are printed by default, if the result has them.
const QStringList &usualColumns()
{
    static const QStringList columns{
        QStringLiteral("path"),   QStringLiteral("name"),      QStringLiteral("number"),
        QStringLiteral("action"), QStringLiteral("reason"),    QStringLiteral("local"),
        QStringLiteral("type"),   QStringLiteral("kind"),      QStringLiteral("size"),
        QStringLiteral("files"),  QStringLiteral("updatedAt"), QStringLiteral("createdAt"),
        QStringLiteral("role"),   QStringLiteral("expiresAt"), QStringLiteral("id")};
    return columns;
}

//! Fields of a document inside an entry are treated as fields of the entry.
QJsonObject flattened(const QJsonObject &entry)
{
    QJsonObject flat = entry.value(QLatin1String("document")).toObject();
    for (auto it = entry.begin(); it != entry.end(); ++it) {
        if (it.key() != QLatin1String("document"))
            flat.insert(it.key(), it.value());
    }
    return flat;
}

QList<QJsonObject> entriesOf(const QJsonObject &result)
{
    QList<QJsonObject> entries;
    for (const QJsonValue &value : result) {
        if (!value.isArray())
            continue;
        const QJsonArray array = value.toArray();
        for (const QJsonValue &item : array) {
            const QJsonObject object = item.toObject();
            const QJsonValue below = object.value(QLatin1String("entries"));
            if (!below.isArray()) {
                entries.append(flattened(object));
                continue;
            }
            const QJsonArray inside = below.toArray();
            for (const QJsonValue &entry : inside)
                entries.append(entry.toObject());
        }
        return entries;
    }
    return {result};
}

QString textOf(const QJsonValue &value)
{
    if (value.isObject())
        return QString::fromUtf8(QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact));
    if (value.isArray())
        return QString::fromUtf8(QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact));
    if (value.isDouble())
        return QString::number(value.toDouble(), 'f', 0);
    if (value.isBool())
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    return value.toString();
}

QStringList columnsOf(const QList<QJsonObject> &entries)
{
    QStringList columns;
    for (const QString &column : usualColumns()) {
        for (const QJsonObject &entry : entries) {
            if (entry.contains(column)) {
                columns.append(column);
                break;
            }
        }
    }
    if (columns.isEmpty() && !entries.isEmpty())
        columns = entries.constFirst().keys();
    return columns;
}

} // namespace

ResultRows rowsOf(const QJsonObject &result, const QStringList &columns)
{
    const QList<QJsonObject> entries = entriesOf(result);
    ResultRows rows{columns.isEmpty() ? columnsOf(entries) : columns, {}};
    for (const QJsonObject &entry : entries) {
        QStringList cells;
        for (const QString &column : qAsConst(rows.columns))
            cells.append(textOf(entry.value(column)));
        rows.rows.append(cells);
    }
    return rows;
}

QStringList fieldsOf(const QJsonObject &result)
{
    const QList<QJsonObject> entries = entriesOf(result);
    if (entries.isEmpty())
        return {};
    QSet<QString> fields(usualColumns().cbegin(), usualColumns().cend());
    for (const QJsonObject &entry : entries) {
        for (auto field = entry.begin(); field != entry.end(); ++field)
            fields.insert(field.key());
    }
    return fields.values();
}

QString rowText(const QStringList &cells, bool isCsv)
{
    QStringList written;
    for (QString cell : cells) {
        if (!isCsv) {
            cell.replace(QLatin1Char('\\'), QLatin1String("\\\\"))
                .replace(QLatin1Char('\t'), QLatin1String("\\t"))
                .replace(QLatin1Char('\n'), QLatin1String("\\n"));
        } else if (cell.contains(QLatin1Char(',')) || cell.contains(QLatin1Char('"'))
                   || cell.contains(QLatin1Char('\n')) || cell.contains(QLatin1Char('\r'))) {
            cell.replace(QLatin1Char('"'), QLatin1String("\"\""));
            cell = QLatin1Char('"') + cell + QLatin1Char('"');
        }
        written.append(cell);
    }
    return written.join(QLatin1Char(isCsv ? ',' : '\t'));
}

} // namespace velldoc
