#include <VellSoftBase/VellSettings.h>

#include <QDir>
#include <QMutexLocker>

QString VellSettings::pdfFileTempPath() const
{
    const QMutexLocker lock(&m_mutex);
    if (m_pdfFileTempPath.isEmpty())
        return QDir::temp().filePath(QStringLiteral("pdf"));
    return m_pdfFileTempPath;
}

void VellSettings::setPdfFileTempPath(const QString &path)
{
    const QMutexLocker lock(&m_mutex);
    m_pdfFileTempPath = path;
}

VellSettings *GetSettings()
{
    static VellSettings settings;
    return &settings;
}
