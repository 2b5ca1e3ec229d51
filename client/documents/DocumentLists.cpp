#include <documents/VellDocuments.h>

#include <documents/StoreReading.h>
#include <session/SessionAccess.h>

#include <async_ops/AsyncGetRecent.h>

#include <QEventLoop>

using Lane = OperationLanes::Lane;

namespace {

bool isRecycleBin(const VellDocumentConditon &condition)
{
    return condition.category == QLatin1String("recycle");
}

//! Returns true if the service sends whole records.
bool hasAllFields(const VellDocumentConditon &condition)
{
    return condition.noSelect || !(condition.selectName || condition.selectTree);
}

} // namespace

VellResult<QList<VellDocument>> *VellDocuments::list(const VellDocumentConditon &condition,
                                                     const VellDocumentSort &sort, int skip,
                                                     int limit)
{
    return SessionAccess::start<QList<VellDocument>>(
        m_session, Lane::List,
        [=](OperationRun &run) {
            return run.query([&] {
                QList<VellDocument> documents;
                run.documents().getDocumentsRange(documents, skip, limit, condition, sort);
                return documents;
            });
        },
        [reading = StoreReading::begin(m_store), condition](QList<VellDocument> &documents) {
            if (hasAllFields(condition) && !isRecycleBin(condition))
                reading->store(documents);
        });
}

VellResult<VellPage> *VellDocuments::page(const VellDocumentConditon &condition,
                                          const VellDocumentSort &sort, int skip, int limit)
{
    return SessionAccess::start<VellPage>(
        m_session, Lane::List,
        [=](OperationRun &run) {
            VellPage page;
            page.skip = skip;
            VellDocumentData &service = run.documents();
            page.documents = run.query([&] {
                QList<VellDocument> documents;
                if (isRecycleBin(condition))
                    service.getRecycledDocumentsRange(documents, skip, limit, condition, sort);
                else
                    service.getDocumentsRange(documents, skip, limit, condition, sort);
                return documents;
            });
            page.total = run.query([&] {
                return isRecycleBin(condition) ? service.getDocumentsRecycledRangeCount(condition)
                                               : service.getDocumentsRangeCount(condition);
            });
            return page;
        },
        [reading = StoreReading::begin(m_store), condition](VellPage &page) {
            if (hasAllFields(condition) && !isRecycleBin(condition))
                reading->store(page.documents);
        });
}

VellResult<int> *VellDocuments::count(const VellDocumentConditon &condition)
{
    return SessionAccess::start<int>(m_session, Lane::Short, [condition](OperationRun &run) {
        return run.query([&] {
            return isRecycleBin(condition)
                ? run.documents().getDocumentsRecycledRangeCount(condition)
                : run.documents().getDocumentsRangeCount(condition);
        });
    });
}

VellResult<QList<VellDocument>> *VellDocuments::favorites(const VellDocumentConditon &condition,
                                                          const VellDocumentSort &sort)
{
    return SessionAccess::start<QList<VellDocument>>(
        m_session, Lane::List,
        [condition, sort](OperationRun &run) {
            QList<VellDocument> documents;
            VellDocumentConditon wanted = condition;
            run.change([&] { return run.documents().getFavorDocs(documents, wanted, sort); });
            return documents;
        },
        [reading = StoreReading::begin(m_store)](QList<VellDocument> &documents) {
            reading->renew(documents);
        });
}

VellResult<QList<VellDocument>> *VellDocuments::recent(const QString &category)
{
    return SessionAccess::start<QList<VellDocument>>(
        m_session, Lane::List,
        [category](OperationRun &run) {
            return run.query([&] {
                QList<VellDocument> documents;
                AsyncGetRecent job;
                QEventLoop loop;
                QObject::connect(&job, &AsyncGetRecent::getRecentDocsFinish, &loop,
                                 [&](const VellDocumentList &answer) {
                                     documents = answer;
                                     loop.quit();
                                 });
                QObject::connect(&job, &AsyncGetRecent::error, &loop, &QEventLoop::quit);
                job.getRecentDocs(QString(), category);
                loop.exec();
                return documents;
            });
        },
        [reading = StoreReading::begin(m_store)](QList<VellDocument> &documents) {
            reading->renew(documents);
        });
}

VellResult<QList<VellDocumentLite>> *VellDocuments::linkedTo(const QString &entityGuid)
{
    return SessionAccess::start<QList<VellDocumentLite>>(
        m_session, Lane::List, [entityGuid](OperationRun &run) {
            QList<VellDocumentLite> documents;
            run.change([&] { return run.documents().getEntityDocByGuid(entityGuid, documents); });
            return documents;
        });
}
