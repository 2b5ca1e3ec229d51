#pragma once

#include <operations/OperationRun.h>
#include <sync/SyncTree.h>

#include <QHash>
#include <QString>
#include <QStringList>

class SyncFilter;

//! \brief Requests about a tree, for the work of an operation. All throw OperationFailure.
namespace remote_files {

//! Requests everything below the folder \a rootId, with one request.
SyncTree read(OperationRun &run, const QString &rootId, const SyncFilter &filter);

//! Reads the local files \a paths and requests the identifiers of their contents: empty for a content that the service does not
//! have. Files that cannot be read are not in the result.
QHash<QString, QString> contentIds(OperationRun &run, const QStringList &paths);

} // namespace remote_files
