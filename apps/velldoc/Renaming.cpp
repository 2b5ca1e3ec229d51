#include <velldoc/Renaming.h>

#include <async_ops/AsyncRenameDoc.h>
#include <document_service/VellDocumentData.h>
#include <velldoc/AwaitJob.h>
#include <velldoc/Context.h>
#include <velldoc/Text.h>

namespace velldoc {

VellDocument renameDocument(Context &context, const VellDocument &document, const QString &name)
{
    if (document.name == name)
        return document;
    const bool isTaken = context.session().ask([&] {
        return VellDocumentData::instance()->isDocNameExist(document.parentId, name, QString());
    });
    if (isTaken) {
        throw Failure(
            ExitFailed,
            Text::tr("There is a \"%1\" in that folder already: choose another name.").arg(name));
    }
    auto renamed = awaitJob<VellDocument, AsyncRenameDoc>(
        context.session(), &AsyncRenameDoc::renameDocFinish,
        [&](AsyncRenameDoc &job) { job.renameDoc(document._id, name); });
    if (renamed.name != name)
        throw Failure(
            ExitFailed,
            Text::tr("The service did not say that it has renamed %1.").arg(document.name));
    return renamed;
}

void requireFreeName(Context &context, const QString &folderId, const QString &folderPath,
                     const QString &name)
{
    if (context.tree().namesIn(folderId).contains(name)) {
        throw Failure(ExitFailed,
                      Text::tr("There is a \"%1\" in %2 already: rename one of them first.")
                          .arg(name, folderPath));
    }
}

} // namespace velldoc
