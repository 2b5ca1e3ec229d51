#pragma once

#include <VellSoftBase/vellsoftbase_export.h>

#include <QMutex>
#include <QString>

//! \brief The settings of the client that the library uses.
//!
//! Thread-safe.
//!
//! \since 0.1
class VELLSOFTBASE_EXPORT VellSettings
{
public:
    //! The folder for temporary PDF files, which is neither created nor checked. The default is "pdf" in the user's folder for
    //! temporary files.
    QString pdfFileTempPath() const;
    void setPdfFileTempPath(const QString &path);

private:
    mutable QMutex m_mutex;
    QString m_pdfFileTempPath;
};

//! Returns the settings object of the process. It is never null and must not be deleted.
//! \since 0.1
VELLSOFTBASE_EXPORT VellSettings *GetSettings();
