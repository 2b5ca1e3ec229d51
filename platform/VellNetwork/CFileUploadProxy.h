#pragma once

#include <VellNetwork/vellnetwork_export.h>

#include <QString>

class QFile;
class QHttpMultiPart;

//! \brief Builds the body of an upload of a whole file.
class VELLNETWORK_EXPORT CFileUploadProxy
{
public:
    //! Opens the file at \a path and returns a form-data body with one part, named "file", that
    //! carries the file's name, its MIME type and its bytes.
    //!
    //! The bytes are read from the open file while they are sent, never all at once. The caller
    //! owns both the body and the open file that it finds in \a file, may close or delete the file at
    //! any time (the upload then ends with an error), and may delete the body unsent.
    //!
    //! \param file receives the open file; an earlier value is overwritten, not closed. Untouched on
    //!        failure.
    //! \return null when \a path is no file that can be read.
    static QHttpMultiPart *getFileHttpMultiPart(QFile **file, const QString &path);
};
