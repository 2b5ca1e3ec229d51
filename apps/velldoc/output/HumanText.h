#pragma once

#include <QDateTime>
#include <QString>

#include <chrono>
#include <optional>

namespace velldoc {

//! \name Figures as people read them
//! @{

//! "0 B", "999 B", "1.5 KiB", "12 MiB": at most three digits, in steps of 1024.
QString sizeText(qint64 bytes);

//! The other way round: "999", "1.5K", "12M", "3G", in steps of 1024; nothing when it is none of them.
std::optional<qint64> bytesFromText(const QString &text);

//! "2026-11-21 08:15" in local time; empty for an invalid time.
QString timeText(const QDateTime &time);

//! "0:07", "12:30", "2:05:00".
QString durationText(std::chrono::seconds duration);

//! "1.5 MiB/s"
QString rateText(qint64 bytesPerSecond);
//! @}

//! The identifier of the service's day text for --from and --to: a date ("2026-11-21"), a date with a time, or so many
//! hours, days or weeks ago ("12h", "3d", "2w"). Invalid when it is none of them.
QDateTime timeFromText(const QString &text);

} // namespace velldoc
