#include <document_model/DocumentJson.h>
#include <document_service/ServiceRequest.h>
#include <document_service/VellDocService.h>

namespace VellDocService {

namespace {

QString fieldOrder(const VellDocumentSort &sort)
{
    return QLatin1String(sort.isAsc ? "&order=" : "&order=-") + sort.sortField;
}

QString pageOrder(const VellDocumentSort &sort)
{
    return sort.isDefault ? QStringLiteral("&order=type order -updatedAt") : fieldOrder(sort);
}

void count(const VellDocumentConditon &condition, int &count)
{
    const QString url = projectUrl(QStringLiteral("projects/%1/documents?where=%2&only_count=true"))
                            .arg(conditionToQuery(condition));
    count = get(url).object().value(QLatin1String("count")).toInt();
}

} // namespace

void getDoc(const QString &id, VellDocument &document)
{
    const QString url = serviceUrl(QStringLiteral("documents/%1?expand=true")).arg(id);
    VellPubDoc::jsonToDocObject(get(url).object(), document);
}

void getDocuments(const VellDocumentConditon &condition, QList<VellDocument> &documents)
{
    const QString url = projectUrl(QStringLiteral("projects/%1/documents?where=%2"))
                            .arg(conditionToQuery(condition));
    get(url).appendTo(documents, VellPubDoc::jsonToDocObject);
}

void getDocumentsRange(int limit, int skip, const VellDocumentConditon &condition,
                       const VellDocumentSort &sort, QList<VellDocument> &documents)
{
    QString url = projectUrl(QStringLiteral("projects/%1/documents?where=%2&expand=true"))
                      .arg(conditionToQuery(condition));
    if (limit > 0)
        url += QStringLiteral("&limit=%1&skip=%2").arg(limit).arg(skip);
    get(url + pageOrder(sort)).appendTo(documents, VellPubDoc::jsonToDocObject);
}

// Unlike getDocumentsRange(): nothing is expanded, limit and skip are always sent, and isDefault of the sort is
// ignored. A "%3" in the condition is replaced by the arguments that follow it.
void getRecycledDocumentsRange(int limit, int skip, const VellDocumentConditon &condition,
                               const VellDocumentSort &sort, QList<VellDocument> &documents)
{
    const QString url =
        projectUrl(QStringLiteral("projects/%1/documents?where=%2&limit=%3&skip=%4"))
            .arg(conditionToQuery(condition))
            .arg(limit)
            .arg(skip);
    get(url + fieldOrder(sort)).appendTo(documents, VellPubDoc::jsonToDocObject);
}

void getDocumentsRangeCount(const VellDocumentConditon &condition, const VellDocumentSort &,
                            int &count)
{
    VellDocService::count(condition, count);
}

// The same request: the category of the condition selects the recycle bin.
void getDocumentsRecycledRangeCount(const VellDocumentConditon &condition, const VellDocumentSort &,
                                    int &count)
{
    VellDocService::count(condition, count);
}

bool getFavorDocs(QList<VellDocument> &documents, VellDocumentConditon &condition,
                  const VellDocumentSort &sort)
{
    condition.projectId = projectId();
    const QString url = projectUrl(QStringLiteral("projects/%1/documents?where=%2"))
                            .arg(conditionToQuery(condition));
    const ServiceReply reply = get(url + fieldOrder(sort));
    reply.appendTo(documents, VellPubDoc::jsonToDocObject);
    return reply.isSuccessful();
}

bool getEntityDocByGuid(const QString &entityGuid, QList<VellDocumentLite> &documents)
{
    const ServiceReply reply =
        get(projectUrl(QStringLiteral("projects/%1/entities/%2/documents")).arg(entityGuid));
    const QList<QJsonObject> objects = reply.objectList();
    for (const QJsonObject &object : objects)
        documents.append(VellDocumentLite(object));
    return reply.isSuccessful();
}

} // namespace VellDocService
