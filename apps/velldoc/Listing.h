#pragma once

#include <document_model/VellDocument.h>
#include <velldoc/RemotePath.h>
#include <velldoc/output/Table.h>

#include <QList>
#include <QString>

namespace velldoc {

class Context;
class FolderPaths;
class Output;
class Session;

//! \file
//! \brief How documents look in the lists of all commands.

//! Kind, size, time of the last change, who made it, name.
Table longTable(const QList<VellDocument> &documents, Session &session);

//! Shows documents from anywhere in the project by their paths, as a table with --long, and makes them the
//! result under \a key.
void showDocuments(Context &context, const QList<VellDocument> &documents, const QString &key,
                   const FolderPaths &paths);

//! One name a line; folders end with "/".
void printNames(const QList<VellDocument> &documents, Output &output);

//! The name, with "/" behind that of a folder.
QString shownName(const VellDocument &document);

//! A path without characters that would steer the terminal.
QString printedPath(const RemotePath &path);

//! "Folder", or the category of the file for people.
QString kindText(const VellDocument &document);

//! The size, nothing for a folder.
QString sizeCell(const VellDocument &document);

} // namespace velldoc
