#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QObject>
#include <QQueue>
#include <QString>
#include <QTcpServer>

#include <functional>

//! A request, byte for byte.
struct ScriptedRequest
{
    QByteArray verb;
    QByteArray target; //!< path and query, byte for byte
    QByteArray head; //!< request line and header fields, byte for byte, without the empty line
    QMap<QByteArray, QByteArray> headers; //!< names in lower case
    QByteArray body;
    int connection = 0; //!< the number of its connection, from 0

    //! Returns the percent-decoded target.
    QString decodedTarget() const;
};

//! The response to one request.
struct ScriptedReply
{
    enum class Ending {
        Complete, //!< the complete response; the connection stays open
        Truncated, //!< all headers, half of the body, then the connection is closed
        Dropped, //!< the connection is closed without a response
        Withheld, //!< no response; the connection stays open
    };

    int status = 200;
    QByteArray body;
    Ending ending = Ending::Complete;
    int delayMs = 0;
    QMap<QByteArray, QByteArray> headers{};
    int pieces = 1; //!< the body is sent in so many pieces,
    int pieceDelayMs = 0; //!< with this delay before each

    static ScriptedReply json(const QByteArray &body, int status = 200);
    static ScriptedReply endingAs(Ending how);
};

//! \brief A real HTTP server on loopback that responds from a script and stores every request.
//!
//! Runs on the thread that created it, and responds when its events are processed, also in nested event loops of the tested code.
//!
//! A request gets the next response of the queue. If the queue is empty, the handler is called, and without a handler the response is
//! 404.
class ScriptedServer : public QObject
{
    Q_OBJECT

public:
    using Handler = std::function<ScriptedReply(const ScriptedRequest &)>;

    ScriptedServer();
    ~ScriptedServer() override;

    //! "http://127.0.0.1:PORT/"
    QString baseApi() const;

    void enqueue(const ScriptedReply &reply);
    void setHandler(const Handler &handler);

    const QList<ScriptedRequest> &requests() const { return m_requests; }
    void clearRequests() { m_requests.clear(); }

    //! Limits connections that are accepted from now on to receiving \a bytes every \a ms.
    void readSlowly(qint64 bytes, int ms);

    //! Returns the number of connections that have been accepted since the start.
    int connectionCount() const { return m_connectionCount; }

    //! Returns true if all requests have used the same connection.
    bool hasReusedItsConnection() const;

Q_SIGNALS:
    //! A complete request has arrived; the response has not been sent yet.
    void requestReceived();

private:
    class Connection;

    ScriptedReply nextReply(const ScriptedRequest &request);

    QTcpServer m_server;
    QQueue<ScriptedReply> m_script;
    Handler m_handler;
    QList<ScriptedRequest> m_requests;
    int m_connectionCount = 0;
    qint64 m_slowBytes = 0;
    int m_slowMs = 0;
};
