#include <desktop/changes/DocumentMime.h>

#include <QDataStream>
#include <QIODevice>
#include <QMimeData>
#include <QUrl>

namespace desktop {

QString document_mime::type()
{
    return QStringLiteral("application/x-vell-documents");
}

void document_mime::set(QMimeData *data, const QString &projectId, const QStringList &ids)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << projectId << ids;
    data->setData(type(), bytes);
}

QMimeData *document_mime::make(const QString &projectId, const QStringList &ids)
{
    auto *const data = new QMimeData;
    set(data, projectId, ids);
    return data;
}

QStringList document_mime::ids(const QMimeData *data, const QString &projectId)
{
    if (!data || !data->hasFormat(type()))
        return {};
    QString project;
    QStringList ids;
    QDataStream stream(data->data(type()));
    stream >> project >> ids;
    return project == projectId ? ids : QStringList();
}

QStringList document_mime::localPaths(const QMimeData *data)
{
    QStringList paths;
    if (!data)
        return paths;
    const QList<QUrl> urls = data->urls();
    for (const QUrl &url : urls) {
        if (url.isLocalFile())
            paths.append(url.toLocalFile());
    }
    return paths;
}

} // namespace desktop
