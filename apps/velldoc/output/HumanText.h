#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>

namespace velldoc {

//! \name Readable numbers
//! @{

//! Returns "0 B", "999 B", "1.5 KiB", "12 MiB": at most three digits, in steps of 1024.
QString sizeText(qint64 bytes);

//! Parses "999", "1.5K", "12M", "3G", in steps of 1024. Returns no value for any other text.
std::optional<qint64> bytesFromText(const QString &text);

//! Returns "2026-11-21 08:15" in local time; empty for an invalid time.
QString timeText(const QDateTime &time);

//! Returns "0:07", "12:30", "2:05:00".
QString durationText(std::chrono::seconds duration);

//! Returns "1.5 MiB/s".
QString rateText(qint64 bytesPerSecond);
//! @}

//! Returns \a sentences one after the other: with spaces, but not after full-width punctuation.
QString joinedSentences(const QStringList &sentences);

//! Parses the value of --from and --to: a date ("2026-11-21"), a date with a time, or a number of
//! hours, days or weeks ago ("12h", "3d", "2w"). Returns an invalid time for any other text.
QDateTime timeFromText(const QString &text);

} // namespace velldoc
