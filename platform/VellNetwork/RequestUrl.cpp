#include "RequestUrl.h"

#include <QByteArray>
#include <QStringView>

#include <algorithm>

namespace {

// True for nearly all texts; Qt handles the others.
bool isPlain(QStringView text, const QByteArray &keep)
{
    return std::all_of(text.begin(), text.end(), [&](QChar c) {
        const char16_t code = c.unicode();
        return (code >= 'a' && code <= 'z') || (code >= '0' && code <= '9')
            || (code >= 'A' && code <= 'Z') || code == '-' || code == '_' || code == '.'
            || (code < 128 && keep.contains(char(code)));
    });
}

QString encoded(QStringView text, const QByteArray &keep)
{
    if (isPlain(text, keep))
        return text.toString();
    return QString::fromLatin1(QUrl::toPercentEncoding(text.toString(), keep));
}

// QUrl decodes "%2E" and resolves such segments when the request is written, so that they cannot be
// transmitted at all: DELETE "documents/.." would address something else.
bool hasDotSegment(QStringView path)
{
    for (qsizetype start = 0; start <= path.size();) {
        const qsizetype slash = path.indexOf(QLatin1Char('/'), start);
        const qsizetype end = slash < 0 ? path.size() : slash;
        const QStringView segment = path.mid(start, end - start);
        if (segment == QStringView(u".") || segment == QStringView(u".."))
            return true;
        start = end + 1;
    }
    return false;
}

// Returns the position after the JSON object that begins at start; -1 if it has no end.
qsizetype endOfObject(QStringView text, qsizetype start)
{
    int depth = 0;
    bool inString = false;
    for (qsizetype i = start; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (inString) {
            if (c == QLatin1Char('\\'))
                ++i;
            else if (c == QLatin1Char('"'))
                inString = false;
        } else if (c == QLatin1Char('"')) {
            inString = true;
        } else if (c == QLatin1Char('{')) {
            ++depth;
        } else if (c == QLatin1Char('}') && --depth == 0) {
            return i + 1;
        }
    }
    return -1;
}

QString encodedQuery(QStringView query)
{
    const QStringView marker(u"where={");
    QString result;
    bool objectsEnd = true;
    for (qsizetype start = 0; start < query.size();) {
        qsizetype end = -1;
        if (objectsEnd && query.mid(start).startsWith(marker)) {
            const qsizetype brace = start + marker.size() - 1;
            end = endOfObject(query, brace);
            // Otherwise each later object would be searched to the end of the text again.
            objectsEnd = end >= 0;
            if (objectsEnd) {
                result += encoded(query.mid(start, brace - start), "=");
                result += encoded(query.mid(brace, end - brace), {});
                start = end;
            }
        }
        end = query.indexOf(QLatin1Char('&'), start);
        end = end < 0 ? query.size() : end + 1;
        result += encoded(query.mid(start, end - start), "&=");
        start = end;
    }
    return result;
}

int endOfAuthority(const QString &text, int start)
{
    for (int i = start; i < text.size(); ++i) {
        if (text.at(i) == QLatin1Char('/') || text.at(i) == QLatin1Char('?'))
            return i;
    }
    return text.size();
}

} // namespace

QUrl requestUrl(const QString &text)
{
    const int colon = text.indexOf(QLatin1String("://"));
    const QString scheme = text.left(qMax(colon, 0)).toLower();
    if (scheme != QLatin1String("http") && scheme != QLatin1String("https"))
        return {};

    const int end = endOfAuthority(text, colon + 3);
    QUrl url(text.left(end));
    // A "#" before the path would be data in the authority, which is invalid.
    if (!url.isValid() || url.host().isEmpty() || url.hasFragment())
        return {};

    const QStringView rest = QStringView(text).mid(end);
    const qsizetype mark = rest.indexOf(QLatin1Char('?'));
    QStringView path = mark < 0 ? rest : rest.left(mark);
    while (path.startsWith(QLatin1String("//"))) // if the base address ends with several
        path = path.mid(1);
    if (hasDotSegment(path))
        return {};
    url.setPath(encoded(path, "/"), QUrl::StrictMode);
    if (mark >= 0)
        url.setQuery(encodedQuery(rest.mid(mark + 1)), QUrl::StrictMode);
    return url;
}
