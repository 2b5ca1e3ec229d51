#include <documents/VellDocumentStore.h>

#include <documents/StoreContent.h>
#include <operations/BackgroundRelease.h>

#include <QSet>

namespace {

bool isSame(const VellDocument &a, const VellDocument &b)
{
    return a.name == b.name && a.parentId == b.parentId && a.updatedAt == b.updatedAt
        && a.fileId == b.fileId && a.fileSize == b.fileSize && a.remark == b.remark
        && a.order == b.order && a.favorite == b.favorite && a.category == b.category
        && a.recycle == b.recycle && a.status == b.status && a.auths == b.auths
        && a.entity == b.entity && a.type == b.type && a.updatedBy == b.updatedBy
        && a.previewId == b.previewId;
}

} // namespace

VellDocumentStore::VellDocumentStore(QObject *parent)
    : QObject(parent), m_content(std::make_unique<Content>())
{}

VellDocumentStore::~VellDocumentStore()
{
    releaseInBackground(m_content->documents);
}

std::optional<VellDocument> VellDocumentStore::document(const QString &id) const
{
    const auto found = m_content->documents.constFind(id);
    return found == m_content->documents.cend() ? std::nullopt : std::make_optional(*found);
}

QString VellDocumentStore::folderName(const QString &id) const
{
    const auto found = m_content->documents.constFind(id);
    return found == m_content->documents.cend() ? QString() : found->name;
}

void VellDocumentStore::insert(const QList<VellDocument> &documents)
{
    ++m_content->changeNumber;
    for (const VellDocument &document : documents)
        m_content->noteChange(document._id);
    merge(documents);
}

void VellDocumentStore::merge(const QList<VellDocument> &documents)
{
    QList<VellDocument> changed;
    QSet<QString> folders;
    for (const VellDocument &document : documents) {
        if (document._id.isEmpty())
            continue;
        const auto known = m_content->documents.find(document._id);
        if (known == m_content->documents.end()) {
            m_content->documents.insert(document._id, document);
            changed.append(document);
            continue;
        }
        if (isSame(*known, document))
            continue;
        if (known->parentId != document.parentId || known->recycle != document.recycle
            || known->order != document.order)
            folders += {known->parentId, document.parentId};
        *known = document;
        changed.append(document);
    }
    if (!changed.isEmpty())
        Q_EMIT documentsChanged(changed);
    for (const QString &folder : qAsConst(folders))
        Q_EMIT folderChanged(folder);
}

void VellDocumentStore::remove(const QStringList &ids)
{
    QSet<QString> folders;
    ++m_content->changeNumber;
    for (const QString &id : ids) {
        m_content->noteChange(id);
        const auto known = m_content->documents.find(id);
        if (known == m_content->documents.end())
            continue;
        folders += known->parentId;
        m_content->documents.erase(known);
    }
    if (!ids.isEmpty())
        Q_EMIT documentsRemoved(ids);
    for (const QString &folder : qAsConst(folders))
        Q_EMIT folderChanged(folder);
}

void VellDocumentStore::markFolderChanged(const QString &id)
{
    Q_EMIT folderChanged(id);
}

void VellDocumentStore::clear()
{
    m_content->changes.clear();
    releaseInBackground(m_content->documents);
    Q_EMIT cleared();
}
