#include <transfer/DownloadRun.h>

#include <transfer/LocalNames.h>
#include <transfer/TransferText.h>

#include <QFileInfo>
#include <QSet>

void DownloadRun::downloadFolder(const VellDocument &folder)
{
    outcome().isFolder = true;
    const QFileInfo info(m_target);
    if (info.isSymLink() || (info.exists() && !info.isDir()))
        fail(VellError::Kind::LocalFile, TransferText::notAFolder());
    const QList<VellDocument> documents = entriesOf(folder);
    makeFolder(m_target);
    QSet<QString> names;
    for (const VellDocument &document : documents)
        names.insert(local_names::key(document.name));
    QSet<QString> used;
    for (const VellDocument &document : documents) {
        FolderEntry entry;
        entry.name = document.name;
        entry.localName = document.name;
        entry.documentId = document._id;
        entry.isFolder = document.type == QLatin1String("dir");
        entry.sizeBytes = entry.isFolder ? -1 : document.fileSize;
        if (!local_names::isLocalName(entry.name))
            entry.error =
                VellError::of(VellError::Kind::BadName, TransferText::badLocalName(entry.name));
        // The first keeps its name.
        for (int number = 2; used.contains(local_names::key(entry.localName)); ++number) {
            const QString numbered = local_names::numbered(entry.name, number);
            if (!names.contains(local_names::key(numbered)))
                entry.localName = numbered;
        }
        used.insert(local_names::key(entry.localName));
        outcome().entries.push_back(entry);
    }
    outcome().document = folder;
}

QList<VellDocument> DownloadRun::entriesOf(const VellDocument &folder)
{
    constexpr int PageSize = 1000;
    VellDocumentConditon condition;
    condition.parentId = folder._id;
    const VellDocumentSort byName{QStringLiteral("name"), true, false};
    QList<VellDocument> documents;
    for (;;) {
        const int before = documents.size();
        service().query([&] {
            service().documents().getDocumentsRange(documents, before, PageSize, condition, byName);
            return true;
        });
        if (documents.size() < before + PageSize)
            return documents;
    }
}
