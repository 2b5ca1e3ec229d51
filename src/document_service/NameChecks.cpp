#include <document_service/VellDocService.h>
#include <document_service/VellDocumentData.h>

#include <VellSoftBase/VellSoftCache.h>

#include <QHash>
#include <QRegularExpression>

namespace {

const QLatin1String fileType("file");

//! Returns the files of a folder and category in \a cache, name to identifier; the first one if several have the same
//! name.
QHash<QString, QString> fileIdsByName(const QMap<QString, VellDocument> &cache,
                                      const QString &parentId, const QString &category)
{
    QHash<QString, QString> ids;
    for (const VellDocument &document : cache) {
        if (document.type == fileType && document.parentId == parentId
            && document.category == category && !ids.contains(document.name))
            ids.insert(document.name, document._id);
    }
    return ids;
}

//! Returns \a name, which ends with \a suffix, with its last "(digits)" replaced by \a mark; if there is none, with the mark
//! between \a base and suffix.
QString markedName(const QString &name, const QString &base, const QString &suffix,
                   const QString &mark)
{
    static const QRegularExpression lastMark(QStringLiteral("\\([0-9]*\\)"));

    QString stem = name.chopped(suffix.size());
    QRegularExpressionMatch match;
    const int position = stem.lastIndexOf(lastMark, -1, &match);
    if (position < 0)
        return base + mark + suffix;
    return stem.replace(position, match.capturedLength(), mark) + suffix;
}

} // namespace

bool VellDocumentData::isDocNameExist(const QString &parentId, const QString &name,
                                      const QString &category)
{
    VellDocumentConditon condition;
    condition.parentId = parentId;
    condition.name = name;
    condition.category = category;
    condition.projectId = GetSoftCache()->currentProjectId();
    condition.selectName = true;
    QList<VellDocument> documents;
    VellDocService::getDocuments(condition, documents);
    return !documents.isEmpty();
}

bool VellDocumentData::getDocumentIdByName(VellDocumentConditon &cond, QString &id)
{
    cond.projectId = GetSoftCache()->currentProjectId();
    cond.selectName = true;
    QList<VellDocument> documents;
    // By the facade, which stores nothing if only names are selected.
    getDocuments(cond, documents);
    if (documents.isEmpty())
        return false;
    id = documents.first()._id;
    return true;
}

QString VellDocumentData::getValidDocName(const QString &parentId, const QString &name,
                                          QString &existingId, const QString &category,
                                          const QStringList &reservedNames)
{
    const QHash<QString, QString> cachedIds = fileIdsByName(docCache, parentId, category);
    QString blockingId; // of the last conflict with a document
    const auto isTaken = [&](const QString &candidate) {
        if (reservedNames.contains(candidate))
            return true;
        const auto cached = cachedIds.constFind(candidate);
        if (cached != cachedIds.cend()) {
            blockingId = *cached;
            return true;
        }
        VellDocumentConditon condition;
        condition.parentId = parentId;
        condition.name = candidate;
        condition.type = fileType;
        condition.category = category;
        return getDocumentIdByName(condition, blockingId);
    };

    const int dot = name.lastIndexOf(QLatin1Char('.'));
    const QString suffix = dot < 0 ? QString() : name.mid(dot);
    const QString base = name.chopped(suffix.size());
    QString result = name;
    // Counts from 2, whatever number the name already has.
    for (int counter = 2; isTaken(result); ++counter) {
        if (existingId.isEmpty())
            existingId = blockingId;
        result = markedName(result, base, suffix, QStringLiteral("(%1)").arg(counter));
    }
    return result;
}
