#include <velldoc/Renaming.h>

#include <velldoc/Context.h>
#include <velldoc/Text.h>

namespace velldoc {

VellDocument renameDocument(Context &context, const VellDocument &document, const QString &name)
{
    if (document.name == name)
        return document;
    Session &session = context.session();
    VellError error;
    const VellDocument renamed =
        session.await(session.documents().rename(document._id, name), &error);
    if (error.kind == VellError::Kind::NameTaken) {
        throw Failure(
            ExitFailed,
            Text::tr("There is a \"%1\" in that folder already: choose another name.").arg(name));
    }
    if (error.kind == VellError::Kind::Unclear)
        throw Failure(
            ExitFailed,
            Text::tr("The service did not say that it has renamed %1.").arg(document.name));
    if (error)
        throw session.describe(error);
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
