#pragma once

#include <QByteArray>

namespace service {

//! \brief What a Range header asks of a content.
struct ByteRange
{
    enum class Kind {
        Whole, //!< no range, or one that may be ignored
        Part, //!< the bytes given
        Unsatisfiable, //!< nothing of it exists: 416
    };

    Kind kind = Kind::Whole;
    qint64 offset = 0;
    qint64 length = 0;
};

//! Reads "bytes=a-b", "bytes=a-" and "bytes=-n". Several ranges, other units and nonsense give the whole, as
//! HTTP allows.
ByteRange parseRange(const QByteArray &header, qint64 size);

enum class TagComparison {
    Strong, //!< for what depends on every byte: If-Match, If-Range
    Weak, //!< for If-None-Match
};

//! Whether \a header, a list of entity tags or "*", names \a tag, which is a strong one without a comma.
bool namesTag(const QByteArray &header, const QByteArray &tag, TagComparison comparison);

} // namespace service
