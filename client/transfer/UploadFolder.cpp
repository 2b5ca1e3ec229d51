#include <transfer/UploadRun.h>

#include <transfer/LocalNames.h>
#include <transfer/TransferText.h>

#include <documents/DocumentLookup.h>

#include <algorithm>

void UploadRun::uploadFolder()
{
    outcome().isFolder = true;
    VellError error;
    std::vector<FolderEntry> entries = local_names::entriesOf(m_path, &error);
    if (error)
        throw OperationFailure{error};
    service().checkAborted();
    outcome().document = remoteFolder();
    outcome().entries = std::move(entries);
}

VellDocument UploadRun::remoteFolder()
{
    const auto find = [this]() -> std::optional<VellDocument> {
        const QList<VellDocument> found =
            document_lookup::find(service(), record().folderId, record().name);
        const auto folder = std::find_if(found.begin(), found.end(), [](const VellDocument &entry) {
            return entry.type == QLatin1String("dir");
        });
        if (folder != found.end())
            return *folder;
        if (!found.isEmpty())
            fail(VellError::Kind::NameTaken, TransferText::fileInTheWay());
        return std::nullopt;
    };
    if (const std::optional<VellDocument> folder = find())
        return *folder;
    VellDocument folder;
    folder.name = record().name;
    folder.parentId = record().folderId;
    folder.category = task().category;
    try {
        service().change([&] { return service().documents().createDocFolder(folder); });
    } catch (const OperationFailure &failure) {
        // The response may have been lost.
        if (!failure.error.isTemporary())
            throw;
        const std::optional<VellDocument> made = find();
        if (!made)
            throw;
        return *made;
    }
    return folder;
}
