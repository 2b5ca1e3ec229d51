#include <desktop/changes/DraggedDocuments.h>

#include <desktop/changes/DocumentMime.h>

#include <QUrl>

namespace desktop {

namespace {

QString urlType()
{
    return QStringLiteral("text/uri-list");
}

} // namespace

DraggedDocuments::DraggedDocuments(const QString &projectId, const QStringList &ids,
                                   const Fetch &fetch)
    : m_fetch(fetch)
{
    document_mime::set(this, projectId, ids);
}

QStringList DraggedDocuments::formats() const
{
    return QMimeData::formats() << urlType();
}

bool DraggedDocuments::hasFormat(const QString &type) const
{
    return formats().contains(type);
}

QVariant DraggedDocuments::retrieveData(const QString &type, QVariant::Type wanted) const
{
    if (type != urlType())
        return QMimeData::retrieveData(type, wanted);
    if (!m_urls) {
        m_urls = QVariantList(); // programs may request the data again during the download
        QVariantList urls;
        const QStringList paths = m_fetch();
        for (const QString &path : paths)
            urls.append(QUrl::fromLocalFile(path));
        m_urls = urls;
    }
    return *m_urls;
}

} // namespace desktop
