#pragma once

#include <QString>
#include <QStringList>

class QMimeData;

namespace desktop {

//! Documents and local files on the clipboard and in drags.
namespace document_mime {

//! The type of documents of this program.
QString type();

//! Puts documents of the project \a projectId into \a data.
void set(QMimeData *data, const QString &projectId, const QStringList &ids);

//! Documents of the project \a projectId. The caller owns what is returned.
QMimeData *make(const QString &projectId, const QStringList &ids);

//! The identifiers of documents of the project \a projectId in \a data; nothing if there are none.
QStringList ids(const QMimeData *data, const QString &projectId);

//! The paths of local files and folders in \a data.
QStringList localPaths(const QMimeData *data);

} // namespace document_mime

} // namespace desktop
