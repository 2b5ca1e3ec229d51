#include <VellPublicFun/VellPub.h>

#include <QRegularExpression>

namespace {

constexpr qint64 SecondMs = 1000;
constexpr qint64 MinuteMs = 60 * SecondMs;
constexpr qint64 HourMs = 60 * MinuteMs;
constexpr qint64 DayMs = 24 * HourMs;

// A hyphen in the date, "(?<extended>-)?", requires the second one and the colons in the time.
const QRegularExpression &pattern()
{
    static const QRegularExpression expression(QRegularExpression::anchoredPattern(QStringLiteral(
        "(?<year>\\d{4})(?<extended>-)?(?<month>\\d\\d)(?(<extended>)-)(?<day>\\d\\d)"
        "(?:[Tt ](?<hour>\\d\\d)"
        "(?:(?(<extended>):)(?<minute>\\d\\d)(?:(?(<extended>):)(?<second>\\d\\d))?)?"
        "(?:[.,](?<fraction>\\d+))?"
        "(?:[Zz]|(?<sign>[+-])(?<offsetHour>\\d\\d)(?::?(?<offsetMinute>\\d\\d))?)?)?")));
    return expression;
}

qint64 number(const QRegularExpressionMatch &match, const char *name)
{
    return match.capturedRef(QLatin1String(name)).toLongLong();
}

bool has(const QRegularExpressionMatch &match, const char *name)
{
    return match.capturedLength(QLatin1String(name)) > 0;
}

// The decimal fraction is one of the smallest unit that is given; it is truncated to milliseconds.
qint64 fractionMs(const QRegularExpressionMatch &match)
{
    constexpr int Digits = 9;
    constexpr qint64 Whole = 1000000000;
    const qint64 unitMs = has(match, "second") ? SecondMs
        : has(match, "minute")                 ? MinuteMs
                                               : HourMs;
    const QString digits = match.captured(QStringLiteral("fraction")).left(Digits);
    return digits.leftJustified(Digits, QLatin1Char('0')).toLongLong() * unitMs / Whole;
}

// Milliseconds since midnight, without the offset; -1 for an invalid time. 24:00 is the end of the day, and
// a leap second is the first second of the next minute.
qint64 timeOfDayMs(const QRegularExpressionMatch &match)
{
    const qint64 hour = number(match, "hour");
    const qint64 minute = number(match, "minute");
    const qint64 second = number(match, "second");
    const qint64 lastSecond = minute == 59 ? 60 : 59;
    const qint64 ms = hour * HourMs + minute * MinuteMs + second * SecondMs + fractionMs(match);
    const bool known = hour <= 23 ? minute <= 59 && second <= lastSecond : ms == DayMs;
    return known ? ms : -1;
}

int digits(const QChar *text, int count)
{
    int value = 0;
    for (int i = 0; i < count; ++i)
        value = value * 10 + (text[i].unicode() - u'0');
    return value;
}

// Parses the form of getQStringByDateTime() without the regular expression, because a list of documents
// has thousands of them. Invalid for any other text.
QDateTime readServiceForm(const QString &text)
{
    constexpr char16_t Form[] = u"0000-00-00T00:00:00.000Z";
    constexpr int Length = 24;
    if (text.size() != Length)
        return {};
    const QChar *const c = text.constData();
    for (int i = 0; i < Length; ++i) {
        const ushort unit = c[i].unicode();
        if (Form[i] == u'0' ? unit < u'0' || unit > u'9' : unit != Form[i])
            return {};
    }
    const QDate date(digits(c, 4), digits(c + 5, 2), digits(c + 8, 2));
    const QTime time(digits(c + 11, 2), digits(c + 14, 2), digits(c + 17, 2), digits(c + 20, 3));
    return date.isValid() && time.isValid() ? QDateTime(date, time, Qt::UTC) : QDateTime();
}

} // namespace

QDateTime VellPub::getDateTimeByQString(const QString &text)
{
    if (text.isEmpty())
        return {};
    QDateTime serviceForm = readServiceForm(text);
    if (serviceForm.isValid())
        return serviceForm;
    const QRegularExpressionMatch match = pattern().match(text);
    if (!match.hasMatch())
        return {};
    const QDate date(int(number(match, "year")), int(number(match, "month")),
                     int(number(match, "day")));
    const qint64 timeMs = timeOfDayMs(match);
    const qint64 offsetHour = number(match, "offsetHour");
    const qint64 offsetMinute = number(match, "offsetMinute");
    if (!date.isValid() || timeMs < 0 || offsetHour > 23 || offsetMinute > 59)
        return {};
    const qint64 offsetMs = offsetHour * HourMs + offsetMinute * MinuteMs;
    const bool ahead = match.captured(QStringLiteral("sign")) == QLatin1String("+");
    return QDateTime(date, QTime(0, 0), Qt::UTC).addMSecs(timeMs + (ahead ? -offsetMs : offsetMs));
}

QString VellPub::getQStringByDateTime(const QDateTime &dateTime)
{
    return dateTime.toUTC().toString(Qt::ISODateWithMs);
}
