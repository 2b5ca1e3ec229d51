#pragma once

#include <document_model/VellDocument.h>

#include <QDateTime>
#include <QList>
#include <QString>

namespace desktop {

//! \brief A document that was fetched to be opened with a program of this computer.
struct EditedFile
{
    QString path; //!< the local file
    QString address; //!< of the service
    VellDocument
        document; //!< what it was made from: `_id`, `name`, `parentId`, `fileId`, `fileSize`, `updatedAt`, `projectId`
    qint64 localSize = 0; //!< the local file as it was fetched or last stored
    QDateTime localTime; //!< the same

    //! Returns whether the local file has been changed since it was fetched or last stored. False if it is not there.
    bool isChanged() const;

    //! Notes the local file as it is now.
    void noteLocalState();
};

//! The list of these files, in a file beside them, so that no change is lost when the program ends.
namespace edited_file_list {

QList<EditedFile> read(const QString &path);
bool write(const QString &path, const QList<EditedFile> &files);

} // namespace edited_file_list

} // namespace desktop
