#pragma once

#include <QByteArray>
#include <QString>

namespace service {

//! \brief Reads a multipart/form-data body as it comes, piece by piece.
//!
//! Holds no more than the longest piece, and a part's headers. All functions throw HttpError 400 for a body that is not
//! what it says it is, above all one that ends before its closing boundary.
class MultipartParser
{
public:
    struct Part
    {
        QString name; //!< of the form field
        QString fileName; //!< empty when it has none
    };

    //! Gets the parts one after the other. What its functions throw passes through the parser.
    class Receiver
    {
    public:
        virtual ~Receiver() = default;
        virtual void beginPart(const Part &part) = 0;
        virtual void partContent(const char *data, qint64 length) = 0;
        virtual void endPart() = 0;
    };

    //! \throws HttpError 415 for a \a contentType that is not multipart/form-data with a boundary
    MultipartParser(const QByteArray &contentType, Receiver &receiver);

    void feed(const char *data, qint64 length);

    //! The body is over. \throws HttpError 400 without a closing boundary
    void finish() const;

private:
    enum class State {
        Preamble, //!< before the first boundary
        Headers,
        Content,
        Boundary, //!< right after one: another part or the end
        Epilogue, //!< after the last
    };

    bool readContent();
    bool readBoundary();
    bool readHeaders();

    Receiver &m_receiver;
    QByteArray m_delimiter;
    QByteArray m_buffer;
    State m_state = State::Preamble;
};

} // namespace service
