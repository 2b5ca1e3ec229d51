#include <service/records/DocumentQuery.h>

#include <service/records/Documents.h>
#include <service/records/ServiceError.h>
#include <service/records/WhereClause.h>
#include <service/storage/RegexFunction.h>
#include <service/storage/Statement.h>

#include <algorithm>
#include <optional>

namespace service {

namespace {

const char *const parentKey = "parentId";

//! Removes the folder whose children are listed from \a where and returns it: null for the top level.
QJsonValue takeParent(QJsonObject &where)
{
    const QString key = QString::fromLatin1(parentKey);
    const QJsonValue parent = where.value(key);
    if (parent.isObject())
        return QJsonValue::Undefined;
    if (!parent.isUndefined() && !parent.isNull() && !parent.isString())
        throw ServiceError(Refusal::Invalid,
                           QStringLiteral("The value for parentId has the wrong type."));
    where.remove(key);
    return parent.isString() && parent.toString().isEmpty() ? QJsonValue() : parent;
}

void addBelow(const QString &folderId, const QString &state, SqlFilter &filter)
{
    filter.add(QStringLiteral("d.id IN (WITH RECURSIVE below (id) AS ("
                              "SELECT id FROM document WHERE parent_id = ? AND %1 UNION ALL "
                              "SELECT c.id FROM document c JOIN below b ON c.parent_id = b.id "
                              "WHERE c.%1) SELECT id FROM below)")
                   .arg(state),
               {folderId});
}

//! The condition for the place in the tree, or in the recycle bin: its top level has the documents that were deleted themselves,
//! wherever they were.
void addPlace(const DocumentQuery &query, const QJsonValue &parent, SqlFilter &filter)
{
    const bool isBin = query.category == QLatin1String("recycle");
    const QString state = isBin ? QStringLiteral("recycle > 0") : QStringLiteral("recycle = 0");
    filter.add(QStringLiteral("d.project_id = ?"), {query.projectId});
    if (parent.isString() && query.isDeep)
        addBelow(parent.toString(), state, filter);
    else if (parent.isString())
        filter.add(QStringLiteral("d.parent_id = ?"), {parent.toString()});
    else if (isBin && !query.isDeep)
        filter.add(QStringLiteral("d.recycle = 1"));
    else if (parent.isNull() && !query.isDeep)
        filter.add(QStringLiteral("d.parent_id IS NULL"));
    filter.add(QStringLiteral("d.") + state);
}

SqlFilter filterOf(const DocumentQuery &query, const QString &userId, const SqlDialect &dialect)
{
    SqlFilter filter;
    QJsonObject where = query.where;
    const QJsonValue parent = takeParent(where);
    addPlace(query, parent, filter);
    if (!query.category.isEmpty() && query.category != QLatin1String("recycle"))
        filter.add(QStringLiteral("d.category = ?"), {query.category});
    for (const int type : query.markTypes) {
        filter.add(
            QStringLiteral("d.id IN (SELECT document_id FROM mark WHERE user_id = ? AND type = ?)"),
            {userId, type});
    }
    addWhere(where, dialect, filter);
    return filter;
}

struct TypeOrder
{
    bool isFolderFirst = true;
    QString rest; // the order among those of one type
};

//! Nothing unless \a query lists one folder by type and then by something else. What sorts so by itself has an index.
std::optional<TypeOrder> typeOrder(const DocumentQuery &query)
{
    const QJsonValue parent = query.where.value(QString::fromLatin1(parentKey));
    const bool isOneFolder = !query.isDeep && (parent.isString() || parent.isNull());
    QStringList keys = query.order.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (!isOneFolder || query.category == QLatin1String("recycle") || keys.size() < 2)
        return std::nullopt;
    const QString first = keys.takeFirst();
    if (first != QLatin1String("type") && first != QLatin1String("-type"))
        return std::nullopt;
    if (keys.constFirst() == QLatin1String("order"))
        return std::nullopt;
    return TypeOrder{first == QLatin1String("type"), keys.join(QLatin1Char(' '))};
}

//! Finds the rows of one page, in any order, with an index alone.
class PageFinder
{
public:
    PageFinder(const DocumentQuery &query, const SqlFilter &filter, const SqlDialect &dialect)
        : m_query(query), m_filter(filter), m_rowKey(dialect.rowKey())
    {}

    //! \param values gets the values of the statement
    QString sql(QVariantList &values) const
    {
        const std::optional<TypeOrder> byType = typeOrder(m_query);
        if (byType)
            return typeByType(*byType, values);
        values += m_filter.values;
        values += {rowLimit(m_query.limit), m_query.skip};
        return rows({}, m_query.order) + QStringLiteral(" LIMIT ? OFFSET ?");
    }

private:
    QString rows(const QString &condition, const QString &order) const
    {
        return QStringLiteral("SELECT d.%1 AS r FROM document d WHERE %2%3%4")
            .arg(m_rowKey, m_filter.text(), condition, orderClause(order));
    }

    //! One walk along an index for the folders and one for the files: sorted together, all entries would be read for each page. How
    //! many of the second type are on the page, and which, follows from the numbers of the first.
    QString typeByType(const TypeOrder &order, QVariantList &values) const
    {
        // Not question marks: the folders have an index of their own.
        const QString folders = QStringLiteral(" AND d.type = 'dir'");
        const QString files = QStringLiteral(" AND d.type = 'file'");
        const QString first = order.isFolderFirst ? folders : files;
        const QString second = order.isFolderFirst ? files : folders;
        const QVariant limit = rowLimit(m_query.limit);
        values << m_filter.values << limit << m_query.skip << m_filter.values << limit;
        QString offset;
        if (m_query.skip > 0) {
            offset =
                QStringLiteral(" OFFSET (SELECT CASE WHEN count(*) < ? THEN ? - count(*) ELSE 0 "
                               "END FROM document d WHERE %1%2)")
                    .arg(m_filter.text(), first);
            values << m_query.skip << m_query.skip << m_filter.values;
        }
        return QStringLiteral("WITH first AS (%1 LIMIT ? OFFSET ?) SELECT r FROM first UNION ALL "
                              "SELECT r FROM (%2 LIMIT ? - (SELECT count(*) FROM first)%3) second")
            .arg(rows(first, order.rest), rows(second, order.rest), offset);
    }

    const DocumentQuery &m_query;
    const SqlFilter &m_filter;
    const QString m_rowKey;
};

bool hasPattern(const DocumentQuery &query)
{
    return std::any_of(query.where.begin(), query.where.end(), [](const QJsonValue &value) {
        return value.toObject().contains(QStringLiteral("$regex"));
    });
}

[[noreturn]] void rethrow(const DatabaseError &error, bool hasPattern)
{
    const bool isSlow = error.kind() == DatabaseError::Kind::Slow;
    if (error.kind() == DatabaseError::Kind::SlowPattern || (isSlow && hasPattern))
        throw ServiceError(Refusal::Invalid, regexLimitMessage());
    if (error.kind() == DatabaseError::Kind::BadPattern) {
        throw ServiceError(Refusal::Invalid,
                           QStringLiteral("The regular expression cannot be read: %1.")
                               .arg(QString::fromUtf8(error.what())));
    }
    throw error;
}

} // namespace

DocumentLister::DocumentLister(Database &database, const QString &userId)
    : m_database(database), m_userId(userId)
{}

void DocumentLister::list(const DocumentQuery &query, const Visitor &visit)
{
    const SqlFilter filter = filterOf(query, m_userId, m_database.dialect());
    const QString order = orderClause(query.order);
    QVariantList values{m_userId, m_userId};
    if (query.limit <= 0 && query.skip <= 0) {
        run(QStringLiteral("SELECT %1 FROM document d WHERE %2%3")
                .arg(Documents::columns(m_database), filter.text(), order),
            values + filter.values, visit, hasPattern(query));
        return;
    }
    // The page is found with the index alone; only its own rows are read completely.
    const QString rows = PageFinder(query, filter, m_database.dialect()).sql(values);
    run(QStringLiteral("SELECT %1 FROM (%2) page JOIN document d ON d.%4 = page.r%3")
            .arg(Documents::columns(m_database), rows, order, m_database.dialect().rowKey()),
        values, visit, hasPattern(query));
}

qint64 DocumentLister::count(const DocumentQuery &query)
{
    const SqlFilter filter = filterOf(query, m_userId, m_database.dialect());
    try {
        Statement row(m_database,
                      QStringLiteral("SELECT count(*) FROM document d WHERE %1").arg(filter.text()),
                      filter.values);
        row.next();
        return row.number(0);
    } catch (const DatabaseError &error) {
        rethrow(error, hasPattern(query));
    }
}

void DocumentLister::linkedTo(const QString &projectId, const QString &entityId,
                              const Visitor &visit)
{
    run(QStringLiteral("SELECT %1 FROM document d WHERE d.project_id = ? AND d.recycle = 0 "
                       "AND d.id IN (SELECT document_id FROM link WHERE entity_id = ?) "
                       "ORDER BY d.name, d.id")
            .arg(Documents::columns(m_database)),
        {m_userId, m_userId, projectId, entityId}, visit, false);
}

void DocumentLister::run(const QString &sql, const QVariantList &values, const Visitor &visit,
                         bool hasPattern)
{
    try {
        Statement row(m_database, sql, values);
        while (row.next())
            visit(Documents::read(row));
    } catch (const DatabaseError &error) {
        rethrow(error, hasPattern);
    }
}

} // namespace service
