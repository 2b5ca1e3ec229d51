#include <document_service/ServiceRequest.h>
#include <document_service/VellDocService.h>

#include <VellPublicFun/VellPub.h>

#include <QJsonDocument>

namespace VellDocService {

namespace {

QString compactJson(const QJsonObject &object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

QString selectionToQuery(const VellDocumentConditon &condition)
{
    if (condition.noSelect)
        return QString();
    if (condition.selectName)
        return QStringLiteral("&select=name");
    // A tree always has the parameter "deep", so that with isDeep it occurs twice.
    if (condition.selectTree)
        return QStringLiteral("&select=parentId name type suffix fileType fileSize fileId updatedAt"
                              "&deep=true");
    return QStringLiteral("&select=-entities&linkedEntity=true");
}

} // namespace

QJsonObject timeSpanToJson(const VellDocumentConditon &condition)
{
    return {
        {QStringLiteral("$gte"), VellPub::getQStringByDateTime(condition.startTime)},
        // Exclusive and one day later, so that the whole last day is included.
        {QStringLiteral("$lt"), VellPub::getQStringByDateTime(condition.endTime.addDays(1))},
    };
}

QJsonObject searchNameToJson(const VellDocumentConditon &condition)
{
    return {
        {QStringLiteral("$regex"), condition.searchName},
        {QStringLiteral("$options"), QStringLiteral("i")},
    };
}

QJsonObject stringListToIn(const QStringList &list)
{
    QJsonArray values;
    for (const QString &value : list)
        values.append(idOrNull(value));
    return {{QStringLiteral("$in"), values}};
}

QJsonObject conditionToWhere(const VellDocumentConditon &condition)
{
    QJsonObject where;
    if (!condition.isAllTime)
        where.insert(QStringLiteral("updatedAt"), timeSpanToJson(condition));
    if (!condition.searchName.isEmpty())
        where.insert(QStringLiteral("name"), searchNameToJson(condition));
    return where;
}

QString conditionToQuery(const VellDocumentConditon &condition)
{
    QJsonObject where = conditionToWhere(condition);
    if (condition.hasParentId)
        where.insert(QStringLiteral("parentId"), idOrNull(condition.parentId));
    // Replaces the pattern: the exact name takes precedence.
    if (!condition.name.isEmpty())
        where.insert(QStringLiteral("name"), condition.name);
    if (!condition.documentId.isEmpty())
        where.insert(QStringLiteral("documentId"), condition.documentId);
    if (!condition.type.isEmpty())
        where.insert(QStringLiteral("type"), condition.type);
    if (!condition.isAllUser)
        where.insert(QStringLiteral("updatedBy"), stringListToIn(condition.userIds));

    QString query = compactJson(where);
    if (!condition.category.isEmpty())
        query += QLatin1String("&category=") + condition.category;
    if (condition.recordType > 0)
        query += QLatin1String("&recordType=") + QString::number(condition.recordType);
    if (!condition.name.isEmpty())
        query += QLatin1String("&words=true");
    if (condition.isFrequent)
        query += QLatin1String("&frequent=true");
    if (condition.isDeep)
        query += QLatin1String("&deep=true");
    return query + selectionToQuery(condition);
}

} // namespace VellDocService
