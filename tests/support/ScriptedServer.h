#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QObject>
#include <QQueue>
#include <QString>
#include <QTcpServer>

#include <functional>

//! A request as it stood on the wire.
struct ScriptedRequest
{
    QByteArray verb;
    QByteArray target; //!< path and query, byte for byte
    QByteArray head; //!< request line and header fields, byte for byte, without the empty line
    QMap<QByteArray, QByteArray> headers; //!< names in lower case
    QByteArray body;
    int connection = 0; //!< which of the server's connections carried it, from 0

    //! The target with its percent-encoding undone, for comparing with what the caller meant.
    QString decodedTarget() const;
};

//! What the server answers to one request.
struct ScriptedReply
{
    enum class Ending {
        Complete, //!< the whole answer; the connection stays open
        Truncated, //!< all headers, half of the body, then the connection is closed
        Dropped, //!< the connection is closed without an answer
        Withheld, //!< nothing; the connection stays open
    };

    int status = 200;
    QByteArray body;
    Ending ending = Ending::Complete;
    int delayMs = 0;
    QMap<QByteArray, QByteArray> headers{};
    int pieces = 1; //!< the body goes out in so many pieces,
    int pieceDelayMs = 0; //!< with this pause before each

    static ScriptedReply json(const QByteArray &body, int status = 200);
    static ScriptedReply endingAs(Ending how);
};

//! \brief A real HTTP server on loopback that answers from a script and keeps every request.
//!
//! Runs on the thread that made it, so it answers whenever that thread's events run: nested event loops
//! of the code under test included.
//!
//! Each request takes the next reply of the queue; when the queue is empty the handler answers, and
//! without a handler 404.
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

    //! Makes connections accepted from now on take in \a bytes, at most, every \a ms.
    void readSlowly(qint64 bytes, int ms);

    //! How many connections have been accepted since the start.
    int connectionCount() const { return m_connectionCount; }

    //! Whether one connection has carried all of them.
    bool hasReusedItsConnection() const;

Q_SIGNALS:
    //! A whole request has arrived; its answer has not been sent yet.
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
