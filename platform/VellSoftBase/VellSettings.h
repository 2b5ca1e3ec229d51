#pragma once

#include <VellSoftBase/vellsoftbase_export.h>

#include <QMutex>
#include <QString>

//! \brief The client's settings, as far as the data layer asks for them.
//!
//! Thread-safe.
class VELLSOFTBASE_EXPORT VellSettings
{
public:
    //! The folder for temporary PDF files, neither created nor checked here; "pdf" below the
    //! user's folder for temporary files until it is set.
    QString pdfFileTempPath() const;
    void setPdfFileTempPath(const QString &path);

private:
    mutable QMutex m_mutex;
    QString m_pdfFileTempPath;
};

//! The one settings object of the process; never null, never to be deleted.
VELLSOFTBASE_EXPORT VellSettings *GetSettings();
