#include "HttpHead.h"

HttpHead::HttpHead(const QByteArray &text)
{
    const QList<QByteArray> lines = text.split('\n');
    words = lines.first().trimmed().split(' ');
    for (int i = 1; i < lines.size() && !lines.at(i).trimmed().isEmpty(); ++i) {
        const int colon = lines.at(i).indexOf(':');
        headers.insert(lines.at(i).left(colon).toLower(), lines.at(i).mid(colon + 1).trimmed());
    }
}

int HttpHead::sizeIn(const QByteArray &text)
{
    const int end = text.indexOf("\r\n\r\n");
    return end < 0 ? -1 : end + 4;
}
