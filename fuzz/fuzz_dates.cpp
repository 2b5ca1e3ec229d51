#include "Fuzzing.h"

#include <VellPublicFun/VellPub.h>

#include <optional>

// Dates beside a plain reader of the same grammar, character by character.
namespace {

//! Reads an ISO 8601 calendar date from the left.
class PlainReader
{
public:
    explicit PlainReader(const std::u16string &text) : m_rest(text) {}

    //! Milliseconds since 1970 in UTC.
    std::optional<qint64> read()
    {
        const auto year = digits(4);
        const bool isExtended = take(u"-");
        const auto month = digits(2);
        if (isExtended && !take(u"-"))
            return {};
        const auto day = digits(2);
        if (!year || !month || !day)
            return {};
        const QDate date{int(*year), int(*month), int(*day)};
        if (!date.isValid())
            return {};
        const auto time = m_rest.empty() ? 0 : timeOfDay(isExtended);
        if (!time || !m_rest.empty())
            return {};
        return QDateTime(date, QTime(0, 0), Qt::UTC).toMSecsSinceEpoch() + *time;
    }

private:
    static constexpr qint64 HourMs = 3'600'000;
    static constexpr qint64 MinuteMs = 60'000;

    bool take(const char16_t *anyOf)
    {
        if (m_rest.empty() || std::u16string(anyOf).find(m_rest[0]) == std::u16string::npos)
            return false;
        m_taken = m_rest[0];
        m_rest.erase(0, 1);
        return true;
    }

    std::optional<qint64> digits(std::size_t count)
    {
        qint64 value = 0;
        for (std::size_t i = 0; i < count; ++i) {
            if (!take(u"0123456789"))
                return {};
            value = value * 10 + (m_taken - u'0');
        }
        return value;
    }

    bool startsUnit(bool isExtended)
    {
        if (!isExtended)
            return !m_rest.empty() && m_rest[0] >= u'0' && m_rest[0] <= u'9';
        return take(u":");
    }

    std::optional<qint64> timeOfDay(bool isExtended)
    {
        if (!take(u"Tt "))
            return {};
        const auto hour = digits(2);
        std::optional<qint64> minute = 0;
        std::optional<qint64> second = 0;
        qint64 unitMs = HourMs;
        if (startsUnit(isExtended)) {
            minute = digits(2);
            unitMs = MinuteMs;
            if (startsUnit(isExtended)) {
                second = digits(2);
                unitMs = 1000;
            }
        }
        if (!hour || !minute || !second)
            return {};
        const qint64 fraction = fractionOf(unitMs);
        const qint64 offset = offsetMs();
        if (fraction < 0 || m_isBroken)
            return {};
        const qint64 ms = *hour * HourMs + *minute * MinuteMs + *second * 1000 + fraction;
        const bool isLeap = *minute == 59 && *second == 60;
        if (*hour == 24 ? ms != 24 * HourMs
                        : *hour > 24 || *minute > 59 || (*second > 59 && !isLeap))
            return {};
        return ms - offset;
    }

    //! The decimal fraction of \a unitMs, cut to milliseconds; -1 when the digits are missing.
    qint64 fractionOf(qint64 unitMs)
    {
        if (!take(u".,"))
            return 0;
        qint64 value = 0;
        qint64 scale = 1;
        bool isThere = false;
        while (const auto digit = digits(1)) {
            isThere = true;
            if (scale < 1'000'000'000) {
                value = value * 10 + *digit;
                scale *= 10;
            }
        }
        return isThere ? value * unitMs / scale : -1;
    }

    qint64 offsetMs()
    {
        if (m_rest.empty() || take(u"Zz"))
            return 0;
        m_isBroken = !take(u"+-");
        const bool isAhead = m_taken == u'+';
        const auto hour = digits(2);
        std::optional<qint64> minute = 0;
        if (!m_rest.empty()) {
            take(u":");
            minute = digits(2);
        }
        m_isBroken = m_isBroken || !hour || !minute || *hour > 23 || *minute > 59;
        if (m_isBroken)
            return 0;
        const qint64 ms = *hour * HourMs + *minute * MinuteMs;
        return isAhead ? ms : -ms;
    }

    std::u16string m_rest;
    char16_t m_taken = 0;
    bool m_isBroken = false;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), int(size));
    const QDateTime time = VellPub::getDateTimeByQString(text);
    const auto plain = PlainReader(text.toStdU16String()).read();
    require(time.isValid() == plain.has_value(), "the same texts are dates");
    if (!time.isValid())
        return 0;
    require(time.toMSecsSinceEpoch() == *plain, "the same moment");
    require(time.timeSpec() == Qt::UTC, "in UTC");
    const QString written = VellPub::getQStringByDateTime(time);
    // A year beyond four digits has no text.
    require(time.date().year() > 9999 || time.date().year() < 0
                || VellPub::getDateTimeByQString(written) == time,
            "what is written is read again");
    return 0;
}
