#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QTcpServer>

#include <optional>

//! One request that came through a FaultyProxy, and its answer.
struct ProxiedRequest
{
    QByteArray verb;
    QByteArray target;
    int chunk = -1; //!< the number of the chunk that it carries; -1 for another request
    int status = 0; //!< of the service's answer; 0 while there is none
    QByteArray answer; //!< its body, as the service sent it
    bool isAnswered = false; //!< the client was given the answer whole

    //! How many chunks the client knows from this answer to be stored; 0 when it does not.
    int acknowledgedChunks() const;
};

//! What is done to one request, once.
struct ProxyFault
{
    enum class Kind {
        Drop, //!< both connections are closed
        Stall, //!< nothing is passed on any more until the client goes
        Delay, //!< everything waits for `delayMs`
        HalfAnswer, //!< at BeforeAnswer: the answer is valid HTTP, but its body is cut in half
    };
    enum class Point {
        BeforeRequest, //!< the service hears nothing of it
        MidRequest, //!< half of the body has been passed on
        BeforeAnswer, //!< the service has done the work
        MidAnswer, //!< the head and half of the body have been passed on
    };

    Kind kind = Kind::Drop;
    Point point = Point::BeforeRequest;
    int delayMs = 100;
};

//! \brief Stands between a client and a service on loopback, keeps what passes, and disturbs it when told to.
//!
//! Runs on the thread that made it, whenever that thread's events run. Each connection of the client gets one of
//! its own to the service; when either ends, so does the other.
class FaultyProxy : public QObject
{
    Q_OBJECT

public:
    explicit FaultyProxy(quint16 servicePort);
    ~FaultyProxy() override;

    //! "http://127.0.0.1:PORT/"
    QString baseApi() const;

    //! Disturbs the next request that carries chunk \a chunk.
    void strikeChunk(int chunk, const ProxyFault &fault);

    //! Disturbs the next request whose target begins with \a target.
    void strikeTarget(const QByteArray &target, const ProxyFault &fault);

    //! Whether requests() has the bodies of the answers, as at first; for days of them there is no room.
    void setKeepingAnswers(bool on) { m_isKeepingAnswers = on; }

    const QList<ProxiedRequest> &requests() const { return m_requests; }

    //! The chunks that were sent, in order; one that was sent twice stands there twice.
    QList<int> sentChunks() const;

    //! The chunks that were sent although an earlier answer had told the client that they are stored.
    QList<int> resentChunks() const;

Q_SIGNALS:
    //! A request is about to be passed on.
    void requestStarted(const ProxiedRequest &request);

    //! Of the request that carries \a chunk so many bytes of the body have been passed on.
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
    bool m_isKeepingAnswers = true;
};
