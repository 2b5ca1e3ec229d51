#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QTcpServer>

#include <optional>

//! A request that has passed through a FaultyProxy, and its response.
struct ProxiedRequest
{
    QByteArray verb;
    QByteArray target;
    int chunk = -1; //!< the number of the chunk in it; -1 for another request
    int status = 0; //!< of the response; 0 until it has arrived
    QByteArray answer; //!< the body of the response, as the service has sent it
    bool isAnswered = false; //!< the client has got the complete response

    //! Returns the number of stored chunks according to the response; 0 if the client has not got it.
    int acknowledgedChunks() const;
};

//! A disturbance of one request.
struct ProxyFault
{
    enum class Kind {
        Drop, //!< both connections are closed
        Stall, //!< nothing is passed on until the client disconnects
        Delay, //!< everything is delayed by `delayMs`
        HalfAnswer, //!< at BeforeAnswer: the response is valid HTTP, but has only half of the body
    };
    enum class Point {
        BeforeRequest, //!< the service has got nothing of it
        MidRequest, //!< half of the body has been passed on
        BeforeAnswer, //!< the service has processed the request
        MidAnswer, //!< the head and half of the body have been passed on
    };

    Kind kind = Kind::Drop;
    Point point = Point::BeforeRequest;
    int delayMs = 100;
};

//! \brief A proxy between a client and a service on loopback, which records requests and can disturb them.
//!
//! Runs on the thread that created it, when events are processed. It opens a connection to the service for each connection of the
//! client; if one is closed, it closes the other.
class FaultyProxy : public QObject
{
    Q_OBJECT

public:
    explicit FaultyProxy(quint16 servicePort);
    ~FaultyProxy() override;

    //! "http://127.0.0.1:PORT/"
    QString baseApi() const;

    //! Disturbs the next request with the chunk \a chunk.
    void strikeChunk(int chunk, const ProxyFault &fault);

    //! Disturbs the next request whose target begins with \a target.
    void strikeTarget(const QByteArray &target, const ProxyFault &fault);

    const QList<ProxiedRequest> &requests() const { return m_requests; }

    //! Returns the chunks that were sent, in order; one that was sent twice is there twice.
    QList<int> sentChunks() const;

    //! Returns the chunks that were sent although an earlier response had told the client that they are stored.
    QList<int> resentChunks() const;

Q_SIGNALS:
    //! A request is about to be passed on.
    void requestStarted(const ProxiedRequest &request);

    //! \a bytes bytes of the body of the request with \a chunk have been passed on.
    void chunkPassed(int chunk, qint64 bytes);

private:
    class Link;

    std::optional<ProxyFault> takeFault(const ProxiedRequest &request);

    QTcpServer m_server;
    const quint16 m_servicePort;
    QList<ProxiedRequest> m_requests;
    std::optional<ProxyFault> m_fault;
    int m_faultyChunk = -1;
    QByteArray m_faultyTarget;
};
