#include <service/records/WhereClause.h>

#include <service/records/DocumentFields.h>
#include <service/records/ServiceError.h>
#include <service/records/Times.h>
#include <service/storage/RegexFunction.h>
#include <service/storage/Statement.h>

#include <QJsonArray>

#include <algorithm>
#include <array>
#include <cmath>

namespace service {

namespace {

constexpr int MaxPatternLength = 1000;

using Kind = DocumentField::Kind;

struct Comparison
{
    const char *word;
    const char *sql;
};

constexpr std::array<Comparison, 6> Comparisons{{
    {"$eq", "="},
    {"$ne", "<>"},
    {"$gt", ">"},
    {"$gte", ">="},
    {"$lt", "<"},
    {"$lte", "<="},
}};

[[noreturn]] void refuseValue(const DocumentField &field)
{
    throw ServiceError(
        Refusal::Invalid,
        QStringLiteral("The value for %1 has the wrong type.").arg(QString::fromLatin1(field.key)));
}

//! A database that knows types would round a fraction that it compares with a whole number.
QVariant number(double value)
{
    constexpr double LargestExact = 9007199254740992; // 2^53
    if (std::abs(value) <= LargestExact && std::floor(value) == value)
        return static_cast<qint64>(value);
    return value;
}

QVariant sqlValue(const DocumentField &field, const QJsonValue &value)
{
    if (field.kind == Kind::Number) {
        if (!value.isDouble() || !std::isfinite(value.toDouble()))
            refuseValue(field);
        return number(value.toDouble());
    }
    if (value.isNull() && field.kind != Kind::Time)
        return QStringLiteral("");
    if (!value.isString())
        refuseValue(field);
    if (field.kind == Kind::Time)
        return parseTime(value.toString(), QString::fromLatin1(field.key));
    return value.toString();
}

//! Null and an empty string both mean no id.
bool isNoId(const DocumentField &field, const QJsonValue &value)
{
    return field.kind == Kind::Id
        && (value.isNull() || (value.isString() && value.toString().isEmpty()));
}

void addComparison(const DocumentField &field, const Comparison &comparison,
                   const QJsonValue &value, SqlFilter &filter)
{
    const QString column = field.sqlName();
    const QString sql = QString::fromLatin1(comparison.sql);
    if (isNoId(field, value)) {
        if (sql != QLatin1String("=") && sql != QLatin1String("<>"))
            refuseValue(field);
        filter.add(column
                   + (sql == QLatin1String("=") ? QStringLiteral(" IS NULL")
                                                : QStringLiteral(" IS NOT NULL")));
        return;
    }
    // A client sends an invalid date, which is an empty string, for no bound.
    if (field.kind == Kind::Time && value.isString() && value.toString().isEmpty())
        return;
    if (field.kind == Kind::Id && sql == QLatin1String("<>"))
        filter.add(QStringLiteral("%1 IS DISTINCT FROM ?").arg(column), {sqlValue(field, value)});
    else
        filter.add(QStringLiteral("%1 %2 ?").arg(column, sql), {sqlValue(field, value)});
}

void addMembership(const DocumentField &field, const QString &word, const QJsonValue &value,
                   SqlFilter &filter)
{
    if (!value.isArray())
        throw ServiceError(Refusal::Invalid, QStringLiteral("%1 needs an array.").arg(word));
    QVariantList values;
    const QJsonArray members = value.toArray();
    for (const QJsonValue &member : members)
        values.append(sqlValue(field, member));
    if (values.isEmpty()) {
        filter.add(word == QLatin1String("$in") ? QStringLiteral("1 = 0")
                                                : QStringLiteral("1 = 1"));
        return;
    }
    const QString column = field.kind == Kind::Id
        ? QStringLiteral("coalesce(%1, '')").arg(field.sqlName())
        : field.sqlName();
    filter.add(
        QStringLiteral("%1 %2 (%3)")
            .arg(column,
                 word == QLatin1String("$in") ? QStringLiteral("IN") : QStringLiteral("NOT IN"),
                 placeholders(values.size())),
        values);
}

void addPattern(const DocumentField &field, const QJsonObject &operators, const SqlDialect &dialect,
                SqlFilter &filter)
{
    const QJsonValue pattern = operators.value(QStringLiteral("$regex"));
    const QJsonValue options = operators.value(QStringLiteral("$options"));
    if (field.kind != Kind::Text || !pattern.isString()
        || !(options.isString() || options.isUndefined()))
        refuseValue(field);
    if (pattern.toString().size() > MaxPatternLength)
        throw ServiceError(Refusal::Invalid, QStringLiteral("The regular expression is too long."));
    const QRegularExpression expression = boundedExpression(pattern.toString(), options.toString());
    if (!expression.isValid()) {
        throw ServiceError(Refusal::Invalid,
                           QStringLiteral("The regular expression cannot be read: %1.")
                               .arg(expression.errorString()));
    }
    filter.add(dialect.matches(field.sqlName()),
               dialect.patternValues(pattern.toString(), options.toString()));
}

void addOperators(const DocumentField &field, const QJsonObject &operators,
                  const SqlDialect &dialect, SqlFilter &filter)
{
    for (auto it = operators.begin(); it != operators.end(); ++it) {
        const QString word = it.key();
        const auto *const comparison =
            std::find_if(Comparisons.begin(), Comparisons.end(),
                         [&word](const Comparison &c) { return word == QLatin1String(c.word); });
        if (comparison != Comparisons.end())
            addComparison(field, *comparison, it.value(), filter);
        else if (word == QLatin1String("$in") || word == QLatin1String("$nin"))
            addMembership(field, word, it.value(), filter);
        else if (word == QLatin1String("$regex"))
            addPattern(field, operators, dialect, filter);
        else if (word != QLatin1String("$options"))
            throw ServiceError(Refusal::Invalid,
                               QStringLiteral("The operator %1 is unknown.").arg(word.left(60)));
        else if (!operators.contains(QStringLiteral("$regex")))
            throw ServiceError(Refusal::Invalid, QStringLiteral("$options needs a $regex."));
    }
}

} // namespace

void SqlFilter::add(const QString &condition, const QVariantList &conditionValues)
{
    conditions.append(condition);
    values.append(conditionValues);
}

void addWhere(const QJsonObject &where, const SqlDialect &dialect, SqlFilter &filter)
{
    for (auto it = where.begin(); it != where.end(); ++it) {
        const DocumentField *const field = findAskedField(it.key());
        if (field == nullptr)
            throw ServiceError(Refusal::Invalid,
                               QStringLiteral("The field %1 is unknown.").arg(it.key().left(60)));
        if (it.value().isObject())
            addOperators(*field, it.value().toObject(), dialect, filter);
        else
            addComparison(*field, Comparisons.front(), it.value(), filter);
    }
}

QString orderClause(const QString &order)
{
    const QString usual = QStringLiteral("type order -updatedAt");
    const QStringList keys =
        (order.trimmed().isEmpty() ? usual : order).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    QStringList terms;
    QStringList columns;
    QString direction;
    for (const QString &key : keys) {
        const bool isDescending = key.startsWith(QLatin1Char('-'));
        const DocumentField *const field = findAskedField(isDescending ? key.mid(1) : key);
        if (field == nullptr)
            throw ServiceError(Refusal::Invalid,
                               QStringLiteral("The sort key %1 is unknown.").arg(key.left(60)));
        direction = isDescending ? QStringLiteral(" DESC") : QStringLiteral(" ASC");
        if (columns.contains(field->sqlName()))
            continue; // has no effect, and SQLite allows only 2,000 terms
        columns.append(field->sqlName());
        // Databases differ in where they put null.
        const bool isNullable = field->kind == Kind::Id;
        const QString nulls =
            isDescending ? QStringLiteral(" NULLS LAST") : QStringLiteral(" NULLS FIRST");
        terms.append(field->sqlName() + direction + (isNullable ? nulls : QString()));
    }
    const QString id = QStringLiteral("d.id");
    if (!columns.contains(id))
        terms.append(id + direction);
    return QStringLiteral(" ORDER BY ") + terms.join(QStringLiteral(", "));
}

} // namespace service
