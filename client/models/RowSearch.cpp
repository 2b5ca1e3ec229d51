#include <models/RowSearch.h>

#include <session/SessionAccess.h>

namespace {

constexpr int StepSize = 10000;

} // namespace

VellResult<QHash<QString, int>> *findRows(VellSession *session,
                                          const VellDocumentConditon &condition,
                                          const VellDocumentSort &sort, const QSet<QString> &ids)
{
    VellDocumentConditon names = condition;
    names.noSelect = false;
    names.selectName = true;
    const bool isBin = condition.category == QLatin1String("recycle");
    return SessionAccess::start<QHash<QString, int>>(
        session, OperationLanes::Lane::List, [=](OperationRun &run) {
            QHash<QString, int> rows;
            for (int skip = 0; rows.size() < ids.size(); skip += StepSize) {
                QList<VellDocument> documents;
                run.query([&] {
                    if (isBin)
                        run.documents().getRecycledDocumentsRange(documents, skip, StepSize, names,
                                                                  sort);
                    else
                        run.documents().getDocumentsRange(documents, skip, StepSize, names, sort);
                    return true;
                });
                for (int i = 0; i < documents.size(); ++i) {
                    if (ids.contains(documents.at(i)._id))
                        rows.insert(documents.at(i)._id, skip + i);
                }
                if (documents.size() < StepSize)
                    break;
            }
            return rows;
        });
}
