#include <velldoc/output/HumanText.h>

#include <velldoc/output/DisplayWidth.h>
#include <velldoc/program/Text.h>

#include <QLocale>
#include <QRegularExpression>

#include <array>

namespace velldoc {

QString sizeText(qint64 bytes)
{
    static const std::array<const char *, 6> units{"KiB", "MiB", "GiB", "TiB", "PiB", "EiB"};
    constexpr double Step = 1024;
    constexpr double LargestFigure = 999.5;
    if (bytes < qint64(Step))
        return QStringLiteral("%1 B").arg(bytes);
    double value = static_cast<double>(bytes) / Step;
    std::size_t unit = 0;
    while (value >= LargestFigure && unit + 1 < units.size()) {
        value /= Step;
        ++unit;
    }
    const int decimals = value < 9.95 ? 1 : 0;
    return QStringLiteral("%1 %2").arg(QString::number(value, 'f', decimals),
                                       QString::fromLatin1(units.at(unit)));
}

std::optional<qint64> bytesFromText(const QString &text)
{
    static const QRegularExpression form(
        QStringLiteral("^(\\d{1,12}(?:\\.\\d+)?)([KMGT]?)(?:i?B)?$"),
        QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    double bytes = match.captured(1).toDouble();
    const int step = QStringLiteral("KMGT").indexOf(match.captured(2).toUpper());
    constexpr double Unit = 1024;
    for (int i = 0; !match.captured(2).isEmpty() && i <= step; ++i)
        bytes *= Unit;
    constexpr double Most = 1e18;
    return bytes < Most ? std::make_optional(qint64(bytes)) : std::nullopt;
}

QString timeText(const QDateTime &time)
{
    return time.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm"));
}

QString durationText(std::chrono::seconds duration)
{
    const qint64 seconds = duration.count();
    const QString tail = QStringLiteral("%1").arg(seconds % 60, 2, 10, QLatin1Char('0'));
    const qint64 minutes = seconds / 60;
    if (minutes < 60)
        return QStringLiteral("%1:%2").arg(minutes).arg(tail);
    return QStringLiteral("%1:%2:%3")
        .arg(minutes / 60)
        .arg(minutes % 60, 2, 10, QLatin1Char('0'))
        .arg(tail);
}

QString rateText(qint64 bytesPerSecond)
{
    return Text::tr("%1/s").arg(sizeText(bytesPerSecond));
}

QString joinedSentences(const QStringList &sentences)
{
    QString text;
    for (const QString &sentence : sentences) {
        if (!text.isEmpty() && !sentence.isEmpty() && displayWidth(text.right(1)) == 1)
            text += QLatin1Char(' ');
        text += sentence;
    }
    return text;
}

QDateTime timeFromText(const QString &text)
{
    static const QRegularExpression ago(QStringLiteral("^(\\d{1,6})([hdw])$"));
    const QRegularExpressionMatch match = ago.match(text);
    if (!match.hasMatch())
        return QDateTime::fromString(text, Qt::ISODate);
    constexpr qint64 SecondsOfHour = 3600;
    constexpr qint64 HoursOfDay = 24;
    constexpr qint64 DaysOfWeek = 7;
    qint64 hours = match.captured(1).toLongLong();
    const QString unit = match.captured(2);
    if (unit == QLatin1String("d"))
        hours *= HoursOfDay;
    else if (unit == QLatin1String("w"))
        hours *= HoursOfDay * DaysOfWeek;
    return QDateTime::currentDateTime().addSecs(-hours * SecondsOfHour);
}

} // namespace velldoc
