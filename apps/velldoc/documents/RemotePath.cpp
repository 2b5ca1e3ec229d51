#include <velldoc/documents/RemotePath.h>

namespace velldoc {

namespace {

const QLatin1String idPrefix("id:");

} // namespace

RemotePath RemotePath::parse(const QString &text)
{
    RemotePath path;
    QStringList segments = text.split(QLatin1Char('/'));
    if (text.startsWith(idPrefix))
        path.m_id = segments.takeFirst().mid(idPrefix.size());
    path.m_endsWithSlash = text.endsWith(QLatin1Char('/'));
    for (const QString &segment : qAsConst(segments)) {
        if (segment.isEmpty() || segment == QLatin1String("."))
            continue;
        if (segment != QLatin1String(".."))
            path.m_names.append(segment);
        else if (!path.m_names.isEmpty())
            path.m_names.removeLast();
    }
    return path;
}

RemotePath RemotePath::parent() const
{
    RemotePath path = *this;
    path.m_endsWithSlash = false;
    if (!path.m_names.isEmpty())
        path.m_names.removeLast();
    return path;
}

RemotePath RemotePath::child(const QString &name) const
{
    RemotePath path = *this;
    path.m_endsWithSlash = false;
    path.m_names.append(name);
    return path;
}

QString RemotePath::text() const
{
    const QString names = m_names.join(QLatin1Char('/'));
    if (m_id.isEmpty())
        return QLatin1Char('/') + names;
    return idPrefix + m_id + (m_names.isEmpty() ? QString() : QLatin1Char('/') + names);
}

} // namespace velldoc
