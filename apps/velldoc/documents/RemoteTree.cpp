#include <velldoc/documents/RemoteTree.h>

#include <velldoc/output/HumanText.h>
#include <velldoc/program/Text.h>
#include <velldoc/program/Usage.h>
#include <velldoc/session/Session.h>

#include <QRegularExpression>

namespace velldoc {

namespace {

//! Returns \a text as it must be typed in a shell.
QString shellWord(QString text)
{
    static const QRegularExpression special(QStringLiteral("[^\\w/.,:+@-]"),
                                            QRegularExpression::UseUnicodePropertiesOption);
    if (!text.contains(special))
        return text;
    text.replace(QLatin1Char('\''), QLatin1String("'\\''"));
    return QLatin1Char('\'') + text + QLatin1Char('\'');
}

constexpr int ComparedNames = 200;

} // namespace

Failure notAFolder(const RemotePath &path)
{
    return {ExitFailed, Text::tr("%1 is a file, not a folder: name a folder.").arg(path.text())};
}

RemoteTree::RemoteTree(Session &session) : m_session(session) {}

//! Only the first names are compared: a folder may have thousands, which take seconds.
QStringList RemoteTree::someNamesIn(const QString &folderId)
{
    VellDocumentConditon condition;
    condition.parentId = folderId;
    const VellPage page = m_session.await(
        m_session.documents().page(condition, VellDocumentSort(), 0, ComparedNames));
    QStringList names;
    for (const VellDocument &document : page.documents)
        names.append(document.name);
    return names;
}

Failure RemoteTree::notFound(const RemotePath &path)
{
    QString like;
    try {
        if (!path.isBareId())
            like = mostAlike(path.name(), someNamesIn(find(path.parent())._id));
    } catch (const Failure &) { // the names are only for the suggestion
    }
    if (!like.isEmpty()) {
        return {ExitNotFound,
                joinedSentences({Text::tr("There is no %1 in the project.").arg(path.text()),
                                 didYouMean(path.parent().child(like).text())})};
    }
    return {ExitNotFound,
            Text::tr("There is no %1 in the project: \"velldoc ls %2\" lists the existing entries.")
                .arg(path.text(), shellWord(path.parent().text()))};
}

VellDocument RemoteTree::find(const RemotePath &path)
{
    const std::optional<VellDocument> found = tryFind(path);
    if (!found)
        throw notFound(path);
    if (path.endsWithSlash() && !isFolder(*found))
        throw notAFolder(path);
    return *found;
}

std::optional<VellDocument> RemoteTree::tryFind(const RemotePath &path)
{
    VellDocument place = start(path);
    RemotePath here = path;
    while (!here.names().isEmpty())
        here = here.parent();
    const QStringList names = path.names();
    for (int i = 0; i < names.size(); ++i) {
        if (!isFolder(place))
            throw notAFolder(here);
        here = here.child(names.at(i));
        const std::optional<VellDocument> next = step(place, names.at(i), here);
        if (!next && i + 1 == names.size())
            return std::nullopt;
        if (!next)
            throw notFound(here);
        place = *next;
    }
    return place;
}

VellDocument RemoteTree::findFolder(const RemotePath &path)
{
    VellDocument folder = find(path);
    if (!isFolder(folder))
        throw notAFolder(path);
    return folder;
}

QList<VellDocument> RemoteTree::entries(const QString &id)
{
    VellDocumentConditon condition;
    condition.parentId = id;
    return list(condition);
}

QHash<QString, VellDocument> &RemoteTree::namesIn(const QString &folderId)
{
    const auto known = m_names.find(folderId);
    if (known != m_names.end())
        return known.value();
    QHash<QString, VellDocument> names;
    const QList<VellDocument> documents = entries(folderId);
    for (const VellDocument &document : documents) {
        if (!names.contains(document.name))
            names.insert(document.name, document);
    }
    return m_names.insert(folderId, names).value();
}

VellDocument RemoteTree::makeFolder(const QString &parentId, const QString &name, bool isPretended)
{
    VellDocument folder;
    folder._id = parentId + QLatin1Char('/') + name; // different from all identifiers of documents
    folder.name = name;
    folder.parentId = parentId;
    folder.type = QStringLiteral("dir");
    if (!isPretended)
        folder = m_session.await(m_session.documents().createFolder(parentId, name));
    m_names.insert(folder._id, {});
    const auto siblings = m_names.find(parentId);
    if (siblings != m_names.end())
        siblings->insert(name, folder);
    return folder;
}

VellDocument RemoteTree::makePath(const RemotePath &path)
{
    VellDocument place = start(path);
    RemotePath here = path;
    while (!here.names().isEmpty())
        here = here.parent();
    const QStringList names = path.names();
    for (const QString &name : names) {
        here = here.child(name);
        const std::optional<VellDocument> next = step(place, name, here);
        if (next && !isFolder(*next))
            throw notAFolder(here);
        place = next ? *next : makeFolder(place._id, name);
    }
    return place;
}

QString RemoteTree::pathOf(const VellDocument &document)
{
    QString path = QLatin1Char('/') + document.name;
    QString parentId = document.parentId;
    while (!parentId.isEmpty()) {
        const VellDocument parent = byId(parentId);
        path = QLatin1Char('/') + parent.name + path;
        parentId = parent.parentId;
    }
    return path;
}

QList<VellDocument> RemoteTree::list(const VellDocumentConditon &condition,
                                     const VellDocumentSort &sort)
{
    return m_session.await(m_session.documents().list(condition, sort));
}

VellDocument RemoteTree::start(const RemotePath &path)
{
    return path.id().isEmpty() ? VellDocument() : byId(path.id());
}

std::optional<VellDocument> RemoteTree::step(const VellDocument &folder, const QString &name,
                                             const RemotePath &path)
{
    const auto known = m_names.constFind(folder._id);
    if (known != m_names.constEnd()) {
        const auto entry = known->constFind(name);
        return entry == known->constEnd() ? std::nullopt : std::make_optional(entry.value());
    }
    VellDocumentConditon condition;
    condition.parentId = folder._id;
    condition.name = name;
    const QList<VellDocument> found = list(condition);
    if (found.isEmpty())
        return std::nullopt;
    if (found.size() > 1) {
        QStringList ids;
        for (const VellDocument &document : found)
            ids.append(QStringLiteral("id:") + document._id);
        throw Failure(
            ExitFailed,
            Text::tr("%2 entries have the name %1: choose one of %3.")
                .arg(path.text(), QString::number(found.size()), ids.join(QStringLiteral(", "))));
    }
    return found.constFirst();
}

VellDocument RemoteTree::byId(const QString &id)
{
    const auto known = m_known.constFind(id);
    if (known != m_known.constEnd())
        return known.value();
    VellError error;
    VellDocument document = m_session.await(m_session.documents().document(id), &error);
    if (error.kind == VellError::Kind::NotFound && error.httpStatus == 0)
        throw Failure(
            ExitNotFound,
            Text::tr("There is no document id:%1: \"velldoc info PATH\" prints identifiers.")
                .arg(id));
    if (error)
        throw m_session.describe(error);
    m_known.insert(id, document);
    return document;
}

} // namespace velldoc
