#pragma once

#include <QString>
#include <QStringList>

class QMimeData;

namespace desktop {

//! Documents and local files on the clipboard and in drags.
namespace document_mime {

//! The MIME type of documents of this program.
QString type();

//! Stores documents of the project \a projectId in \a data.
void set(QMimeData *data, const QString &projectId, const QStringList &ids);

//! Returns data with documents of the project \a projectId. The caller takes ownership.
QMimeData *make(const QString &projectId, const QStringList &ids);

//! Returns the identifiers of documents of the project \a projectId in \a data; an empty list if there are none.
QStringList ids(const QMimeData *data, const QString &projectId);

//! Returns the paths of local files and folders in \a data.
QStringList localPaths(const QMimeData *data);

} // namespace document_mime

} // namespace desktop
