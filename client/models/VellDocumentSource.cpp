#include <models/VellDocumentSource.h>

#include <document_model/VellRecordType.h>

namespace {

VellDocumentConditon anywhere(const QString &category)
{
    VellDocumentConditon condition;
    condition.hasParentId = false;
    condition.category = category;
    return condition;
}

VellDocumentConditon in(const QString &folderId, const QString &category)
{
    VellDocumentConditon condition;
    condition.parentId = folderId;
    condition.category = category;
    return condition;
}

} // namespace

VellDocumentSource::VellDocumentSource(Kind kind, const VellDocumentConditon &condition)
    : m_kind(kind), m_condition(condition)
{}

VellDocumentSource VellDocumentSource::folder(const QString &id, const QString &category)
{
    return {Kind::Folder, in(id, category)};
}

VellDocumentSource VellDocumentSource::search(const VellDocumentConditon &condition)
{
    return {Kind::Search, condition};
}

VellDocumentSource VellDocumentSource::favorites(const QString &category)
{
    VellDocumentConditon condition = anywhere(category);
    condition.recordType = VellRecordType::Favorite;
    return {Kind::Favorites, condition};
}

VellDocumentSource VellDocumentSource::frequent(const QString &category)
{
    VellDocumentConditon condition = anywhere(category);
    condition.isFrequent = true;
    return {Kind::Frequent, condition};
}

VellDocumentSource VellDocumentSource::recent(const QString &category)
{
    return {Kind::Recent, anywhere(category)};
}

VellDocumentSource VellDocumentSource::recycleBin(const QString &folderId)
{
    return {Kind::RecycleBin, in(folderId, QStringLiteral("recycle"))};
}
