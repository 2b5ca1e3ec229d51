#pragma once

#include <QByteArray>

namespace service {

//! \brief The part of a content that a Range header requests.
struct ByteRange
{
    enum class Kind {
        Whole, //!< there is no range, or one that may be ignored
        Part, //!< the given bytes
        Unsatisfiable, //!< no byte of the range exists: 416
    };

    Kind kind = Kind::Whole;
    qint64 offset = 0;
    qint64 length = 0;
};

//! Parses "bytes=a-b", "bytes=a-" and "bytes=-n". Several ranges, other units and invalid values give Whole, as HTTP allows.
ByteRange parseRange(const QByteArray &header, qint64 size);

enum class TagComparison {
    Strong, //!< for If-Match and If-Range
    Weak, //!< for If-None-Match
};

//! Returns true if \a header, a list of entity tags or "*", contains \a tag, which is a strong tag without a comma.
bool namesTag(const QByteArray &header, const QByteArray &tag, TagComparison comparison);

} // namespace service
