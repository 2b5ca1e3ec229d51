#include <VellSoftBase/VellSettings.h>

#include <QDir>

QString VellSettings::pdfFileTempPath() const
{
    if (m_pdfFileTempPath.isEmpty())
        return QDir::temp().filePath(QStringLiteral("pdf"));
    return m_pdfFileTempPath;
}

void VellSettings::setPdfFileTempPath(const QString &path)
{
    m_pdfFileTempPath = path;
}

VellSettings *GetSettings()
{
    static VellSettings settings;
    return &settings;
}
