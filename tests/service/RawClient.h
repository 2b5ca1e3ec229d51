#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QTcpSocket>

//! One response as it stood on the wire.
struct RawResponse
{
    int status = 0;
    QMap<QByteArray, QByteArray> headers; //!< names in lower case
    QByteArray body;
};

//! \brief A connection on which bytes are sent as they stand.
class RawClient
{
public:
    explicit RawClient(quint16 port);

    void send(const QByteArray &bytes);
    //! Sends and reads until the service has nothing more to say, which is when it closes or when nothing comes for
    //! \a quietMs.
    QByteArray exchange(const QByteArray &bytes, int quietMs = 300);
    //! Reads up to the end of the connection; false if it does not end within \a timeoutMs.
    bool readToEnd(QByteArray *bytes, int timeoutMs = 10000);
    //! Reads the next response; its status is 0 if none comes within \a timeoutMs.
    RawResponse next(bool hasBody = true, int timeoutMs = 10000);

    //! "VERB target HTTP/1.1" with a Host, \a headers (each with its line break) and \a body with its length.
    static QByteArray request(const QByteArray &verb, const QByteArray &target,
                              const QByteArray &headers = {}, const QByteArray &body = {});

    QTcpSocket socket;

private:
    QByteArray m_in;
};
