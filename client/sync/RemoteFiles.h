#pragma once

#include <operations/OperationRun.h>
#include <sync/SyncTree.h>

#include <QHash>
#include <QString>
#include <QStringList>

class SyncFilter;

//! \brief What the service knows of a tree, for the work of an operation. All throw OperationFailure.
namespace RemoteFiles {

//! Everything below the folder \a rootId, asked for with one request.
SyncTree read(OperationRun &run, const QString &rootId, const SyncFilter &filter);

//! Reads the local files \a paths and asks the service for the identifiers of their contents: empty for a content that
//! it does not know. A file that cannot be read is missing in the result.
QHash<QString, QString> contentIds(OperationRun &run, const QStringList &paths);

} // namespace RemoteFiles
