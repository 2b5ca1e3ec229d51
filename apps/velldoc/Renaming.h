#pragma once

#include <QString>

struct VellDocument;

namespace velldoc {

class Context;

//! Gives \a document the new \a name, unless its folder has an entry of that name. \return it as the service has it now
//! \throws Failure
VellDocument renameDocument(Context &context, const VellDocument &document, const QString &name);

//! \throws Failure when the folder \a folderId, at \a folderPath, has an entry called \a name
void requireFreeName(Context &context, const QString &folderId, const QString &folderPath,
                     const QString &name);

} // namespace velldoc
