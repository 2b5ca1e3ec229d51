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

} // namespace service
