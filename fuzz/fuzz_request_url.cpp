#include "Fuzzing.h"

#include <RequestUrl.h>

#include <QJsonDocument>
#include <QJsonObject>

// What a server decodes is what the caller meant: path segments, plain values and the JSON object of "where".
namespace {

QString decoded(const QByteArray &text)
{
    const QByteArray bytes = QByteArray::fromPercentEncoding(text);
    return QString::fromUtf8(bytes.constData(), bytes.size()); // also what follows a zero byte
}

bool isSegment(const QString &text)
{
    return !text.isEmpty() && text != QLatin1String(".") && text != QLatin1String("..")
        && !text.contains(QLatin1Char('/')) && !text.contains(QLatin1Char('?'));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider input(data, size);
    const QString segment = takeText(input, 64);
    QString value = takeText(input, 64);
    value.remove(QLatin1Char('&')).remove(QLatin1Char('='));
    const QString where =
        QString::fromUtf8(QJsonDocument(QJsonObject{{takeText(input, 32), takeText(input, 64)}})
                              .toJson(QJsonDocument::Compact));
    const QString anything = takeText(input, 512);
    requestUrl(anything);
    requestUrl(QLatin1String("http://h/") + anything);
    if (!isSegment(segment))
        return 0;

    const QByteArray url =
        requestUrl(QLatin1String("http://h/base/") + segment + QLatin1String("?where=") + where
                   + QLatin1String("&name=") + value)
            .toEncoded();
    const int query = url.indexOf('?');
    require(url.startsWith("http://h/base/") && query > 0, "an address of its parts");
    require(decoded(url.mid(14, query - 14)) == segment, "the path segment");
    const QList<QByteArray> pairs = url.mid(query + 1).split('&');
    require(pairs.size() == 2, "two pairs in the query");
    require(decoded(pairs[0]) == QLatin1String("where=") + where, "the object of where");
    require(pairs[0].count('=') == 1, "one separator in the first pair");
    require(decoded(pairs[1]) == QLatin1String("name=") + value, "the plain value");
    return 0;
}
