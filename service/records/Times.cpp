#include <service/records/Times.h>

#include <service/records/ServiceError.h>

#include <QDateTime>

namespace service {

QString timeText(qint64 ms)
{
    if (ms == 0)
        return QString();
    return QDateTime::fromMSecsSinceEpoch(ms, Qt::UTC).toString(Qt::ISODateWithMs);
}

qint64 parseTime(const QString &text, const QString &what)
{
    QDateTime time = QDateTime::fromString(text, Qt::ISODateWithMs);
    if (!time.isValid())
        throw ServiceError(
            Refusal::Invalid,
            QStringLiteral("%1 is not a date-time: \"%2\".").arg(what, text.left(60)));
    if (time.timeSpec() == Qt::LocalTime)
        time.setTimeSpec(Qt::UTC);
    return time.toMSecsSinceEpoch();
}

} // namespace service
