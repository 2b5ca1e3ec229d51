#pragma once

#include <VellPublicFun/vellpublicfun_export.h>

#include <QDateTime>
#include <QJsonArray>
#include <QMap>
#include <QString>
#include <QStringList>

#include <functional>

//! Small services that every part of the client uses. All are reentrant.
namespace VellPub {

//! The MD5 of the file's content as 32 lower-case hexadecimal digits; empty when the file cannot be
//! read to its end. Blocks for the time it takes to read the file; needs 1 MiB of memory, whatever
//! the size.
//!
//! A result of the other overload that still holds is returned at once.
VELLPUBLICFUN_EXPORT QString getFileMd5(const QString &path);

//! As above, telling how far it is, and remembering the result.
//!
//! The result is kept for the process, with the path, the size and the times of the file, and holds until one of these
//! changes; a file that changes while it is read, or that has been changed immediately before, is not remembered.
//! \param progress called on this thread before each MiB with the bytes read so far. If it returns false, nothing
//!        more is read, and the result is empty.
VELLPUBLICFUN_EXPORT QString getFileMd5(const QString &path,
                                        const std::function<bool(qint64 readBytes)> &progress);

//! Reads an ISO 8601 calendar date with a time, in extended or basic form ("2020-05-31T08:00:00.000Z",
//! "2020-05-31T16:00+08:00", "20200531T080000Z"), to the millisecond; what is smaller is cut. A text
//! without an offset is UTC, one without a time is midnight, and 24:00 is the next midnight. Week dates, ordinal dates and
//! years of more than four digits are not read.
//! \return the time in UTC; an invalid one for a text that is empty or unreadable.
VELLPUBLICFUN_EXPORT QDateTime getDateTimeByQString(const QString &text);

//! The inverse: "yyyy-MM-ddTHH:mm:ss.zzzZ" in UTC; empty for an invalid \a dateTime.
VELLPUBLICFUN_EXPORT QString getQStringByDateTime(const QDateTime &dateTime);

//! Entity links as the service writes them, `[{"kind": "<entity kind>", "ids": ["…"]}]`, to a map of
//! entity kind to identifiers. A kind that occurs twice keeps both lists, in order; elements and
//! identifiers of another JSON type are skipped.
VELLPUBLICFUN_EXPORT QMap<QString, QStringList> jsonArrayToLinksEntity(const QJsonArray &links);

//! The inverse, kinds in map order.
VELLPUBLICFUN_EXPORT QJsonArray linksEntityToJsonArray(const QMap<QString, QStringList> &links);

} // namespace VellPub
