#pragma once

#include <QString>

struct VellDocument;

namespace velldoc {

class Context;

//! Renames \a document to \a name, unless its folder has an entry with that name. \return the new record
//! \throws Failure
VellDocument renameDocument(Context &context, const VellDocument &document, const QString &name);

//! \throws Failure if the folder \a folderId, at \a folderPath, has an entry \a name
void requireFreeName(Context &context, const QString &folderId, const QString &folderPath,
                     const QString &name);

} // namespace velldoc
