#include <documents/DocumentLookup.h>

VellDocument document_lookup::fetch(OperationRun &run, const QString &id)
{
    VellDocument document = run.query([&] {
        VellDocument answer;
        run.documents().getDoc(id, answer, false);
        return answer;
    });
    if (document._id.isEmpty())
        throw OperationFailure{VellError::of(VellError::Kind::NotFound)};
    return document;
}

QList<VellDocument> document_lookup::find(OperationRun &run, const QString &parentId,
                                          const QString &name)
{
    VellDocumentConditon condition;
    condition.parentId = parentId;
    condition.name = name;
    return run.query([&] {
        QList<VellDocument> found;
        run.documents().getDocuments(condition, found);
        return found;
    });
}

void document_lookup::requireFreeName(OperationRun &run, const QString &parentId,
                                      const QString &name, const QString &exceptId)
{
    const QList<VellDocument> found = find(run, parentId, name);
    for (const VellDocument &document : found) {
        if (document._id != exceptId)
            throw OperationFailure{VellError::of(VellError::Kind::NameTaken, {}, name)};
    }
}
