#include <velldoc/documents/RemotePatterns.h>

#include <velldoc/program/Context.h>
#include <velldoc/program/Text.h>

#include <sync/VellPathFilter.h>

#include <QRegularExpression>

#include <algorithm>

namespace velldoc {

namespace {

bool isPattern(const QString &text)
{
    static const QRegularExpression signs(QStringLiteral("[*?\\[]"));
    return text.contains(signs);
}

QList<NamedDocument> fitting(Context &context, const NamedDocument &folder, const QString &name)
{
    QList<NamedDocument> found;
    if (!isFolder(folder.document))
        return found;
    QList<VellDocument> entries = context.tree().entries(folder.document._id);
    std::sort(entries.begin(), entries.end(),
              [](const VellDocument &a, const VellDocument &b) { return a.name < b.name; });
    const bool isLiteral =
        std::any_of(entries.cbegin(), entries.cend(),
                    [&](const VellDocument &entry) { return entry.name == name; });
    // With a "/" in front, the pattern must match the whole name.
    const VellPathFilter filter({QLatin1Char('/') + name}, {});
    for (const VellDocument &entry : qAsConst(entries)) {
        const bool isHidden =
            entry.name.startsWith(QLatin1Char('.')) && !name.startsWith(QLatin1Char('.'));
        const bool fits =
            isLiteral ? entry.name == name : !isHidden && !filter.leavesOut(entry.name, false);
        if (fits)
            found.append({folder.path.child(entry.name), entry});
    }
    return found;
}

QList<NamedDocument> expanded(Context &context, const RemotePath &path, const QString &text)
{
    RemotePath start = path;
    while (!start.names().isEmpty() && isPattern(start.text()))
        start = start.parent();
    QList<NamedDocument> found{{start, context.tree().findFolder(start)}};
    const QStringList names = path.names().mid(start.names().size());
    for (const QString &name : names) {
        QList<NamedDocument> next;
        for (const NamedDocument &folder : qAsConst(found))
            next += fitting(context, folder, name);
        found = next;
    }
    if (found.isEmpty())
        throw Failure(ExitNotFound, Text::tr("Nothing in the project matches %1.").arg(text));
    return found;
}

} // namespace

QList<NamedDocument> namedDocuments(Context &context, const QStringList &texts)
{
    QList<NamedDocument> found;
    for (const QString &text : texts) {
        const RemotePath path = RemotePath::parse(text);
        if (isPattern(path.names().join(QLatin1Char('/'))))
            found += expanded(context, path, text);
        else
            found.append({path, context.tree().find(path)});
    }
    return found;
}

} // namespace velldoc
