#include <service/api/JsonList.h>

#include <QJsonDocument>

#include <atomic>
#include <utility>

namespace service {

namespace {

std::atomic<int> longLists{0};

} // namespace

JsonList::~JsonList()
{
    if (m_isLong)
        --longLists;
}

void JsonList::append(const QJsonObject &entry)
{
    if (m_count++ > 0)
        m_text += ',';
    m_text += QJsonDocument(entry).toJson(QJsonDocument::Compact);
    if (m_count > MaxEntries || m_text.size() > MaxBytes) {
        throw HttpError(400,
                        QStringLiteral("The list has more than %1 entries or %2 MiB; ask for it in "
                                       "pages, with limit and skip.")
                            .arg(MaxEntries)
                            .arg(MaxBytes / (1024 * 1024)));
    }
    if (m_text.size() > LongBytes && !m_isLong)
        claimPlace();
}

void JsonList::claimPlace()
{
    m_isLong = true;
    if (++longLists > MaxLongLists)
        throw HttpError(503,
                        QStringLiteral("Too many long lists are asked for at the same time; please "
                                       "try again."));
}

HttpResponse JsonList::response()
{
    HttpResponse response;
    m_text += ']';
    response.body = std::move(m_text);
    return response;
}

} // namespace service
