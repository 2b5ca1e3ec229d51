#include <velldoc/documents/Renaming.h>

#include <velldoc/program/Context.h>
#include <velldoc/program/Text.h>

namespace velldoc {

VellDocument renameDocument(Context &context, const VellDocument &document, const QString &name)
{
    if (document.name == name)
        return document;
    Session &session = context.session();
    VellError error;
    VellDocument renamed = session.await(session.documents().rename(document._id, name), &error);
    if (error.kind == VellError::Kind::NameTaken) {
        throw Failure(
            ExitFailed,
            Text::tr("That folder already has an entry \"%1\": choose another name.").arg(name));
    }
    if (error.kind == VellError::Kind::Unclear)
        throw Failure(
            ExitFailed,
            Text::tr("The service did not confirm the new name of %1.").arg(document.name));
    if (error)
        throw session.describe(error);
    return renamed;
}

void requireFreeName(Context &context, const QString &folderId, const QString &folderPath,
                     const QString &name)
{
    if (context.tree().namesIn(folderId).contains(name)) {
        throw Failure(ExitFailed,
                      Text::tr("%2 already has an entry \"%1\": rename one of them first.")
                          .arg(name, folderPath));
    }
}

} // namespace velldoc
