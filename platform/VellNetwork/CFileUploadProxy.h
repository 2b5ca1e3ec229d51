#pragma once

#include <VellNetwork/vellnetwork_export.h>

#include <QString>

class QFile;
class QHttpMultiPart;

//! \brief Creates the body of the upload of a whole file.
//!
//! \since 0.1
class VELLNETWORK_EXPORT CFileUploadProxy
{
public:
    //! Opens the file at \a path and returns a form-data body with one part called "file", which has the name, the MIME type and
    //! the content of the file.
    //!
    //! The content is read from the open file while it is sent. The caller owns the body and the open file. The file may be
    //! closed or deleted at any time, which ends the upload with an error; the body may be deleted without being sent.
    //!
    //! \param file set to the open file; an earlier file is not closed. Unchanged on failure.
    //! \return null if \a path is not a file that can be read.
    //! \sa AsyncNetManager::post()
    static QHttpMultiPart *getFileHttpMultiPart(QFile **file, const QString &path);
};
