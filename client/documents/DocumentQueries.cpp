#include <documents/VellDocuments.h>

#include <documents/DocumentLookup.h>
#include <documents/StoreReading.h>
#include <session/SessionAccess.h>

#include <algorithm>

using Lane = OperationLanes::Lane;

VellResult<VellDocument> *VellDocuments::document(const QString &id)
{
    return SessionAccess::start<VellDocument>(
        m_session, Lane::Short, [id](OperationRun &run) { return document_lookup::fetch(run, id); },
        [reading = StoreReading::begin(m_store)](VellDocument &document) {
            reading->store(document);
        });
}

VellResult<std::optional<VellDocument>> *VellDocuments::find(const QString &parentId,
                                                             const QString &name)
{
    return SessionAccess::start<std::optional<VellDocument>>(
        m_session, Lane::Short,
        [parentId, name](OperationRun &run) {
            const QList<VellDocument> found = document_lookup::find(run, parentId, name);
            return found.isEmpty() ? std::nullopt : std::make_optional(found.constFirst());
        },
        [reading = StoreReading::begin(m_store)](std::optional<VellDocument> &found) {
            if (found)
                reading->store(*found);
        });
}

VellResult<QList<VellDocument>> *VellDocuments::foldersAbove(const QString &id)
{
    return SessionAccess::start<QList<VellDocument>>(
        m_session, Lane::Short,
        [id](OperationRun &run) {
            QList<VellDocument> folders;
            for (QString above = document_lookup::fetch(run, id).parentId; !above.isEmpty();
                 above = folders.constLast().parentId)
                folders.append(document_lookup::fetch(run, above));
            std::reverse(folders.begin(), folders.end());
            return folders;
        },
        [reading = StoreReading::begin(m_store)](QList<VellDocument> &folders) {
            reading->store(folders);
        });
}

VellResult<QList<VellDocument>> *VellDocuments::history(const QString &id)
{
    return SessionAccess::start<QList<VellDocument>>(
        m_session, Lane::List, [id](OperationRun &run) {
            QList<VellDocument> versions;
            run.change([&] { return run.documents().getDocHistory(id, versions); });
            return versions;
        });
}

VellResult<QString> *VellDocuments::password(const QString &id)
{
    return SessionAccess::start<QString>(m_session, Lane::Short, [id](OperationRun &run) {
        return run.query([&] {
            QString password;
            run.documents().getDocPwd(id, password);
            return password;
        });
    });
}

VellResult<bool> *VellDocuments::isFavorite(const QString &id)
{
    return SessionAccess::start<bool>(m_session, Lane::Short, [id](OperationRun &run) {
        int mark = 0;
        run.change([&] { return run.documents().getFavorDoc(mark, id); });
        return mark != 0;
    });
}

VellResult<bool> *VellDocuments::may(VellRight right, const QString &id, const QString &category)
{
    return SessionAccess::start<bool>(m_session, Lane::Short, [=](OperationRun &run) {
        return run.query([&] {
            VellDocumentData &service = run.documents();
            switch (right) {
            case VellRight::Download:
                return service.canDownloadDocFolder(id, category);
            case VellRight::Upload:
                return service.canUploadDocFolder(id, category);
            case VellRight::Edit:
                return service.canEditDocFolder(id, category);
            case VellRight::Delete:
                return service.canDeleteDocFolder(id, category);
            case VellRight::EditOwn:
                return service.canEditSelf(category);
            case VellRight::DeleteOwn:
                return service.canDeleteSelf(category);
            }
            return false;
        });
    });
}

VellResult<QString> *VellDocuments::freeName(const QString &parentId, const QString &name,
                                             const QString &category, const QStringList &reserved)
{
    return SessionAccess::start<QString>(m_session, Lane::Short, [=](OperationRun &run) {
        return run.query([&] {
            QString existing;
            return run.documents().getValidDocName(parentId, name, existing, category, reserved);
        });
    });
}
