#pragma once

#include <VellPublicFun/vellpublicfun_export.h>

#include <QDateTime>
#include <QJsonArray>
#include <QMap>
#include <QString>
#include <QStringList>

#include <functional>

//! \brief Functions for MD5, dates and entity links. All are reentrant.
//!
//! \since 0.1
namespace VellPub {

//! Returns the MD5 of the content of the file at \a path as 32 lower-case hexadecimal digits; empty if the file cannot be read to
//! its end. Blocks while the file is read; needs 1 MiB of memory, whatever the size.
//!
//! A result that the other overload has stored, and that is still valid, is returned at once.
VELLPUBLICFUN_EXPORT QString getFileMd5(const QString &path);

//! \overload
//! Also reports progress and stores the result.
//!
//! The result is stored for the process with the path, the size and the times of the file, and is valid until one of them
//! changes. It is not stored if the file changes while it is read or has been changed immediately before.
//! \param progress called on this thread before each MiB with the number of bytes read. If it returns false, reading ends and the
//!        result is empty.
VELLPUBLICFUN_EXPORT QString getFileMd5(const QString &path,
                                        const std::function<bool(qint64 readBytes)> &progress);

//! Parses an ISO 8601 calendar date with a time, in extended or basic form ("2020-05-31T08:00:00.000Z", "2020-05-31T16:00+08:00",
//! "20200531T080000Z"). Fractions are truncated to milliseconds. A text without an offset is UTC, one without a time is midnight,
//! and 24:00 is the next midnight. Week dates, ordinal dates and years of more than four digits are not supported.
//! \return the time in UTC; invalid if \a text is empty or cannot be parsed.
//! \sa getQStringByDateTime()
VELLPUBLICFUN_EXPORT QDateTime getDateTimeByQString(const QString &text);

//! Returns \a dateTime as "yyyy-MM-ddTHH:mm:ss.zzzZ" in UTC; empty if it is invalid.
//! \sa getDateTimeByQString()
VELLPUBLICFUN_EXPORT QString getQStringByDateTime(const QDateTime &dateTime);

//! Converts entity links in the JSON form of the service, `[{"kind": "<entity kind>", "ids": ["…"]}]`, to a map of entity kinds to
//! identifiers. The lists of a kind that occurs twice are joined, in order; elements and identifiers of another JSON type are
//! ignored.
//! \sa linksEntityToJsonArray()
VELLPUBLICFUN_EXPORT QMap<QString, QStringList> jsonArrayToLinksEntity(const QJsonArray &links);

//! Converts a map of entity kinds to identifiers to the JSON form of the service, in the order of the map.
//! \sa jsonArrayToLinksEntity()
VELLPUBLICFUN_EXPORT QJsonArray linksEntityToJsonArray(const QMap<QString, QStringList> &links);

} // namespace VellPub
