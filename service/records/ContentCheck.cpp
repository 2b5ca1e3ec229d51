#include <service/records/ContentCheck.h>

#include <service/records/DocumentTree.h>
#include <service/records/Files.h>
#include <service/storage/ContentLock.h>
#include <service/storage/ContentStore.h>
#include <service/storage/Statement.h>

#include <QFileInfo>

namespace service {

ContentCheck::ContentCheck(Database &database, ContentStore &store)
    : m_database(database), m_store(store)
{}

QList<DamagedContent> ContentCheck::run()
{
    QStringList ids;
    {
        Statement row(m_database, QStringLiteral("SELECT id FROM file ORDER BY id"));
        while (row.next())
            ids.append(row.text(0));
    }
    QList<DamagedContent> damaged;
    Files files(m_database);
    for (const QString &id : qAsConst(ids)) {
        std::optional<StoredFile> file = files.find(id);
        if (!file)
            continue;
        const ContentLock lock(m_store.folder(), file->md5);
        file = files.find(id); // a sweep may have removed it meanwhile
        if (!file)
            continue;
        ++m_checkedCount;
        const QString reason = damageOf(*file);
        if (!reason.isEmpty())
            damaged.append({file->md5, reason, documentsWith(id)});
    }
    return damaged;
}

QString ContentCheck::damageOf(const StoredFile &file)
{
    const QString path = m_store.contentPath(file.md5);
    if (!QFile::exists(path))
        return QStringLiteral("the file is missing");
    const qint64 size = QFileInfo(path).size();
    if (size != file.size) {
        m_store.moveAside(path);
        return QStringLiteral("the file has %1 bytes instead of %2").arg(size).arg(file.size);
    }
    const ContentDigest digest = m_store.digestOf(path);
    if (digest.md5 != file.md5 || (!file.sha256.isEmpty() && digest.sha256 != file.sha256)) {
        m_store.moveAside(path);
        return QStringLiteral("the bytes have changed");
    }
    if (file.sha256.isEmpty()) {
        execute(m_database, QStringLiteral("UPDATE file SET sha256 = ? WHERE id = ?"),
                {digest.sha256, file.id});
    }
    return {};
}

QStringList ContentCheck::documentsWith(const QString &fileId)
{
    Statement row(
        m_database,
        QStringLiteral("SELECT id, project_id, name FROM document WHERE file_id = ? UNION "
                       "SELECT d.id, d.project_id, d.name FROM version v "
                       "JOIN document d ON d.id = v.document_id WHERE v.file_id = ?"),
        {fileId, fileId});
    DocumentTree tree(m_database);
    QStringList documents;
    while (row.next()) {
        QStringList path{row.text(1)};
        const auto folders = tree.foldersAbove(row.text(0));
        for (const auto &folder : folders)
            path.append(folder.second);
        path.append(row.text(2));
        documents.append(QStringLiteral("%1 (%2)").arg(path.join(QLatin1Char('/')), row.text(0)));
    }
    return documents;
}

} // namespace service
