#pragma once

#include <service/http/BodyReader.h>

#include <QByteArray>
#include <QString>

#include <functional>

namespace service {

//! \brief Reads a multipart/form-data body part by part, straight from the connection.
//!
//! Holds no more than one block. All functions throw HttpError 400 for a body that is not what it says
//! it is, above all one that ends before its closing boundary.
class MultipartReader
{
public:
    struct Part
    {
        QString name; //!< of the form field
        QString fileName; //!< empty when it has none
    };
    using Sink = std::function<void(const char *, qint64)>;

    //! \throws HttpError 415 for a \a contentType that is not multipart/form-data with a boundary
    MultipartReader(BodyReader &body, const QByteArray &contentType);

    //! Goes to the next part, past what has not been read of this one; false after the last.
    bool nextPart(Part &part);

    //! Hands the content of the current part to \a sink, block by block.
    void readPart(const Sink &sink);

    //! The content of the current part. \throws HttpError 400 above \a limitBytes
    QByteArray readField(int limitBytes);

private:
    void fill();
    Part readHeaders();

    BodyReader &m_body;
    QByteArray m_delimiter;
    QByteArray m_buffer;
    bool m_isInPart = true; //!< the preamble counts as a part
};

} // namespace service
