#pragma once

#include <document_model/VellDocument.h>
#include <velldoc/documents/RemotePath.h>
#include <velldoc/output/Table.h>

#include <QList>
#include <QString>

namespace velldoc {

class Context;
class FolderPaths;
class Output;
class Session;

//! \file
//! \brief The format of documents in the lists of all commands.

//! Returns a table with type, size, time and user of the last change, and name.
Table longTable(const QList<VellDocument> &documents, Session &session);

//! Prints documents of all folders with their paths, as a table with --long, and sets them as the
//! result with the key \a key.
void showDocuments(Context &context, const QList<VellDocument> &documents, const QString &key,
                   const FolderPaths &paths);

//! Prints one name per line; folders end with "/".
void printNames(const QList<VellDocument> &documents, Output &output);

//! Returns the name, with "/" after that of a folder.
QString shownName(const VellDocument &document);

//! Returns a path without control characters for the terminal.
QString printedPath(const RemotePath &path);

//! Returns "Folder", or the name of the file type.
QString kindText(const VellDocument &document);

//! Returns the size, or an empty string for a folder.
QString sizeCell(const VellDocument &document);

} // namespace velldoc
