#pragma once

#include <document_model/VellDocument.h>

#include <QDateTime>
#include <QList>
#include <QString>

namespace desktop {

//! \brief A document that was downloaded and opened in another program.
struct EditedFile
{
    QString path; //!< the local file
    QString address; //!< of the service
    VellDocument
        document; //!< the document of the file: `_id`, `name`, `parentId`, `fileId`, `fileSize`, `updatedAt`, `projectId`
    qint64 localSize = 0; //!< size of the local file when it was downloaded or last uploaded
    QDateTime localTime; //!< its time of modification then

    //! Returns true if the local file exists and has changed since it was downloaded or last uploaded.
    bool isChanged() const;

    //! Notes the present state of the local file.
    void noteLocalState();
};

//! The list of these files is stored next to them, so that no change is lost when the program ends.
namespace edited_file_list {

QList<EditedFile> read(const QString &path);
bool write(const QString &path, const QList<EditedFile> &files);

} // namespace edited_file_list

} // namespace desktop
