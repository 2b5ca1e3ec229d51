#include <desktop/search/SavedSearches.h>

#include <desktop/settings/AppSettings.h>

#include <session/VellSession.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace desktop {

namespace {

QJsonObject toJson(const SavedSearch &search)
{
    return {{QStringLiteral("name"), search.name},
            {QStringLiteral("text"), search.terms.text},
            {QStringLiteral("kind"), int(search.terms.kind)},
            {QStringLiteral("period"), int(search.terms.period)},
            {QStringLiteral("user"), search.terms.userId},
            {QStringLiteral("folder"), search.terms.folderId}};
}

SavedSearch fromJson(const QJsonObject &json)
{
    SavedSearch search;
    search.name = json.value(QLatin1String("name")).toString();
    search.terms.text = json.value(QLatin1String("text")).toString();
    search.terms.kind = SearchTerms::Kind(json.value(QLatin1String("kind")).toInt());
    search.terms.period = SearchTerms::Period(json.value(QLatin1String("period")).toInt());
    search.terms.userId = json.value(QLatin1String("user")).toString();
    search.terms.folderId = json.value(QLatin1String("folder")).toString();
    return search;
}

QList<SavedSearch>::iterator find(QList<SavedSearch> &searches, const QString &name)
{
    return std::find_if(searches.begin(), searches.end(),
                        [&name](const SavedSearch &search) { return search.name == name; });
}

} // namespace

SavedSearches::SavedSearches(AppSettings *settings, const VellSession *session, QObject *parent)
    : QObject(parent), m_settings(settings), m_session(session)
{
    connect(session, &VellSession::projectChanged, this, &SavedSearches::changed);
}

QString SavedSearches::key() const
{
    return QStringLiteral("searches/") + m_session->projectId();
}

QList<SavedSearch> SavedSearches::list() const
{
    QList<SavedSearch> searches;
    if (m_session->projectId().isEmpty())
        return searches;
    const QJsonArray array = QJsonDocument::fromJson(m_settings->state(key())).array();
    for (const QJsonValue &value : array)
        searches.append(fromJson(value.toObject()));
    return searches;
}

void SavedSearches::save(const SavedSearch &search)
{
    QList<SavedSearch> searches = list();
    const auto found = find(searches, search.name);
    if (found == searches.end())
        searches.append(search);
    else
        *found = search;
    write(searches);
}

void SavedSearches::remove(const QString &name)
{
    QList<SavedSearch> searches = list();
    const auto found = find(searches, name);
    if (found == searches.end())
        return;
    searches.erase(found);
    write(searches);
}

void SavedSearches::write(const QList<SavedSearch> &searches)
{
    QJsonArray array;
    for (const SavedSearch &search : searches)
        array.append(toJson(search));
    m_settings->setState(key(), QJsonDocument(array).toJson(QJsonDocument::Compact));
    Q_EMIT changed();
}

} // namespace desktop
