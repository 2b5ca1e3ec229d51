#include <service/http/ByteRange.h>

#include <algorithm>

namespace service {

ByteRange parseRange(const QByteArray &header, qint64 size)
{
    const ByteRange whole{ByteRange::Kind::Whole, 0, size};
    if (!header.startsWith("bytes=") || header.contains(','))
        return whole;
    const QByteArray range = header.mid(6).trimmed();
    const int dash = range.indexOf('-');
    if (dash < 0)
        return whole;

    bool hasFirst = false;
    bool hasLast = false;
    const qint64 first = range.left(dash).toLongLong(&hasFirst);
    const qint64 last = range.mid(dash + 1).toLongLong(&hasLast);
    const bool isOpen = dash == range.size() - 1;
    if (dash == 0 && hasLast && last >= 0) {
        const qint64 length = std::min(last, size);
        const auto kind = length > 0 ? ByteRange::Kind::Part : ByteRange::Kind::Unsatisfiable;
        return {kind, size - length, length};
    }
    if (!hasFirst || (!hasLast && !isOpen) || (hasLast && last < first))
        return whole;
    if (first >= size)
        return {ByteRange::Kind::Unsatisfiable, 0, 0};
    const qint64 end = isOpen ? size : std::min(last, size - 1) + 1;
    return {ByteRange::Kind::Part, first, end - first};
}

} // namespace service
