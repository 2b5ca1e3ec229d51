#pragma once

#include <QByteArray>
#include <QString>

namespace service {

//! \brief Parses a multipart/form-data body piece by piece, as it arrives.
//!
//! Stores at most the longest piece and the headers of a part. All functions throw HttpError 400 for an invalid body, also for one that
//! ends before its closing boundary.
class MultipartParser
{
public:
    struct Part
    {
        QString name; //!< name of the form field
        QString fileName; //!< empty if it has none
    };

    //! Receives the parts one after the other. Its functions may throw.
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

    //! The end of the body. \throws HttpError 400 if there was no closing boundary
    void finish() const;

private:
    enum class State {
        Preamble, //!< before the first boundary
        Headers,
        Content,
        Boundary, //!< after a boundary: another part or the end
        Epilogue, //!< after the last boundary
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
