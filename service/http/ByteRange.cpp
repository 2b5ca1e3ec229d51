#include <service/http/ByteRange.h>

#include <QList>

#include <algorithm>
#include <limits>

namespace service {

namespace {

//! Parses a number that has digits only; -1 for anything else. A number with too many digits gives one that is larger than any content.
qint64 position(const QByteArray &digits)
{
    const bool isNumber =
        std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; });
    if (!isNumber || digits.isEmpty())
        return -1;
    bool fits = false;
    const qint64 number = digits.toLongLong(&fits);
    return fits ? number : std::numeric_limits<qint64>::max();
}

} // namespace

ByteRange parseRange(const QByteArray &header, qint64 size)
{
    const ByteRange whole{ByteRange::Kind::Whole, 0, size};
    const QByteArray unit = QByteArrayLiteral("bytes=");
    if (header.left(unit.size()).toLower() != unit)
        return whole;
    const QByteArray range = header.mid(unit.size()).trimmed();
    const int dash = range.indexOf('-');
    const QByteArray firstDigits = range.left(dash);
    const QByteArray lastDigits = range.mid(dash + 1);
    const qint64 first = position(firstDigits);
    const qint64 last = position(lastDigits);
    if (dash == 0 && last >= 0) {
        const qint64 length = std::min(last, size);
        const auto kind = length > 0 ? ByteRange::Kind::Part : ByteRange::Kind::Unsatisfiable;
        return {kind, size - length, length};
    }
    const bool isOpen = lastDigits.isEmpty();
    if (dash < 0 || first < 0 || (!isOpen && last < first))
        return whole;
    if (first >= size)
        return {ByteRange::Kind::Unsatisfiable, 0, 0};
    const qint64 end = isOpen ? size : std::min(last, size - 1) + 1;
    return {ByteRange::Kind::Part, first, end - first};
}

bool namesTag(const QByteArray &header, const QByteArray &tag, TagComparison comparison)
{
    if (header.trimmed() == "*")
        return true;
    const QList<QByteArray> entries = header.split(','); // the service's tags contain no comma
    return std::any_of(entries.begin(), entries.end(), [&](const QByteArray &entry) {
        const QByteArray text = entry.trimmed();
        return text == tag || (comparison == TagComparison::Weak && text == "W/" + tag);
    });
}

} // namespace service
